// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FatalEnd.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace quib {

namespace {

constexpr std::array<int, 5> kSignals = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

std::atomic<void (*)(int) noexcept> handler{nullptr};
std::atomic<pid_t> process{0};
std::array<struct sigaction, kSignals.size()> earlier{};

// A process that a plug-in has forked is no concern of ours.
void Call(int signal) noexcept {
    const auto call = handler.exchange(nullptr);
    if (call != nullptr && getpid() == process.load()) call(signal);
}

// The instruction runs again and meets what was there before.
void OnSignal(int signal) {
    Call(signal);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        if (kSignals[i] == signal) sigaction(signal, &earlier[i], nullptr);
    }
    if (signal == SIGABRT) (void)std::raise(signal);
}

void Write(const char* text) noexcept { (void)!::write(STDERR_FILENO, text, std::strlen(text)); }

}  // namespace

void CatchFatalEnd(void (*atEnd)(int signal) noexcept) noexcept {
    const bool first = process.exchange(getpid()) == 0;
    handler = atEnd;
    if (!first) return;
    struct sigaction action {};
    action.sa_handler = OnSignal;
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &action, &earlier[i]);
    std::atexit([] { Call(0); });
}

void TellAtEnd(const char* const* parts) noexcept {
    Write(program_invocation_short_name);
    Write(": ");
    for (; *parts != nullptr; ++parts) Write(*parts);
    Write("\n");
}

void EndAtOnce(int code) noexcept { _exit(code); }

}  // namespace quib
