// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Clock.h"

#include <ctime>

namespace quib {

namespace {
std::uint64_t Read(clockid_t clock) noexcept {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(time.tv_nsec);
}
}  // namespace

std::uint64_t Nanoseconds() noexcept { return Read(CLOCK_MONOTONIC); }
std::uint32_t Milliseconds() noexcept { return ToMilliseconds(Nanoseconds()); }
std::uint64_t ThreadCpuNanoseconds() noexcept { return Read(CLOCK_THREAD_CPUTIME_ID); }
std::uint64_t ProcessCpuNanoseconds() noexcept { return Read(CLOCK_PROCESS_CPUTIME_ID); }

}  // namespace quib
