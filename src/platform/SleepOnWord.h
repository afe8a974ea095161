// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Sleeping until another thread has changed a word, by one call into the system each and nothing else:
// unlike std::atomic's own waiting it neither yields nor keeps a table. For the pool of render threads, which
// wakes several at once; to wait for a while, or for descriptors as well, there is CWakeEvent.

#include <atomic>
#include <cstdint>

namespace quib {

// Returns when the word holds another value than `value`, after a wake-up, or for no reason.
void SleepWhile(const std::atomic<std::uint32_t>& word, std::uint32_t value) noexcept;

void WakeOneSleeper(const std::atomic<std::uint32_t>& word) noexcept;
void WakeAllSleepers(const std::atomic<std::uint32_t>& word) noexcept;

}  // namespace quib
