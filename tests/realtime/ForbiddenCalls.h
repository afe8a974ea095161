// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Counts what a render thread must not do: takes the place of the C library's allocation, lock and
// thread functions in the whole process and, where the kernel can, has every system call of a watched
// thread reported. Counts only between BeginWatch and EndWatch.

namespace quib {

struct ForbiddenCalls {
    long allocations = 0;
    long frees = 0;
    long locks = 0;        // mutexes, conditions, semaphores, guards of static objects
    long wakeUps = 0;      // futex calls
    long systemCalls = 0;  // all others
    long lastSystemCall = -1;
};

// Before threads that shall be watched are made: from now on, those that the process makes are. Returns
// false where the kernel does not report system calls; they are then not counted.
bool PrepareWatch();

// The calling thread is watched until EndWatch, and so is every thread made since PrepareWatch.
void BeginWatch();
// What was counted since BeginWatch.
ForbiddenCalls EndWatch();

// What the two source files of this share.
enum class Forbidden { Allocation, Free, Lock };
void NoteForbidden(Forbidden kind) noexcept;
bool IsWatched() noexcept;
bool ReportSystemCallsOfThisThread() noexcept;
void ReportSystemCalls(bool on) noexcept;
void TakeSystemCalls(ForbiddenCalls& into) noexcept;

}  // namespace quib
