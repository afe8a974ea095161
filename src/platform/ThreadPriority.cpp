// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ThreadPriority.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>

namespace quib {

bool SetRealTimePriority() noexcept {
    sched_param parameters{};
    parameters.sched_priority = sched_get_priority_min(SCHED_FIFO) + 9;
    return pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters) == 0;
}

// The system takes 0 for the calling thread alone.
void SetBackgroundPriority() noexcept {
    constexpr int kBackground = 10;
    ::setpriority(PRIO_PROCESS, 0, kBackground);
}

int AvailableProcessors() noexcept {
    cpu_set_t set;
    if (sched_getaffinity(0, sizeof set, &set) != 0) return 1;
    const int count = CPU_COUNT(&set);
    return count > 0 ? count : 1;
}

}  // namespace quib
