// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SleepOnWord.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <climits>

namespace quib {

namespace {

static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t));

void Call(const std::atomic<std::uint32_t>& word, int operation, std::uint32_t value) noexcept {
    syscall(SYS_futex, &word, operation, value, nullptr, nullptr, 0);
}

}  // namespace

void SleepWhile(const std::atomic<std::uint32_t>& word, std::uint32_t value) noexcept {
    Call(word, FUTEX_WAIT_PRIVATE, value);
}
void WakeOneSleeper(const std::atomic<std::uint32_t>& word) noexcept { Call(word, FUTEX_WAKE_PRIVATE, 1); }
void WakeAllSleepers(const std::atomic<std::uint32_t>& word) noexcept { Call(word, FUTEX_WAKE_PRIVATE, INT_MAX); }

}  // namespace quib
