// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Monotonic time. Safe on render threads: no lock, no kernel entry on the platforms supported.

#include <cstdint>

namespace quib {

// Milliseconds of the monotonic clock; wraps after 49 days, so compare by subtraction.
std::uint32_t Milliseconds() noexcept;

// Nanoseconds of the monotonic clock, and the same moment in milliseconds.
std::uint64_t Nanoseconds() noexcept;
constexpr std::uint32_t ToMilliseconds(std::uint64_t nanoseconds) noexcept {
    return static_cast<std::uint32_t>(nanoseconds / 1'000'000U);
}

// Nanoseconds of processor time that the calling thread, or the whole process, has used.
// Enters the kernel: not for render threads.
std::uint64_t ThreadCpuNanoseconds() noexcept;
std::uint64_t ProcessCpuNanoseconds() noexcept;

}  // namespace quib
