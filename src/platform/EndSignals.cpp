// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/EndSignals.h"

#include <atomic>
#include <csignal>

namespace quib {

namespace {

std::atomic<bool> wanted{false};  // a handler can reach nothing else
static_assert(std::atomic<bool>::is_always_lock_free);

void OnEndSignal(int /*signal*/) { wanted.store(true); }

}  // namespace

void CatchEndSignals() noexcept {
    struct sigaction action {};
    action.sa_handler = OnEndSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction present {};
        // Who was started with nohup wants to outlive its terminal.
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN) continue;
        sigaction(signal, &action, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN);
}

bool EndWanted() noexcept { return wanted.load(); }

}  // namespace quib
