// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/EndSignals.h"

#include <atomic>
#include <csignal>
#include <cstdint>

#include "platform/Clock.h"

namespace quib {

namespace {

constexpr std::uint64_t kSameWish = 300'000'000;  // nanoseconds

std::atomic<std::uint64_t> wantedSince{0};  // a handler can reach nothing else
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

// Whoever ends a group of processes often sends the signal twice at once.
void OnEndSignal(int signal) {
    std::uint64_t first = 0;
    if (wantedSince.compare_exchange_strong(first, Nanoseconds()) || Nanoseconds() - first < kSameWish) return;
    std::signal(signal, SIG_DFL);
    (void)std::raise(signal);
}

}  // namespace

void CatchEndSignals() noexcept {
    struct sigaction action {};
    action.sa_handler = OnEndSignal;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction present {};
        // Who was started with nohup wants to outlive its terminal.
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN) continue;
        sigaction(signal, &action, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN);
}

bool EndWanted() noexcept { return wantedSince.load() != 0; }

}  // namespace quib
