// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CRenderPool.h"

#include <algorithm>

#include "model/plugin/CPlugin.h"
#include "platform/FloatingPointMode.h"
#include "platform/SleepOnWord.h"
#include "platform/SpinPause.h"
#include "platform/ThreadPriority.h"

namespace quib {

namespace {

// The ticket holds how many tasks there are above how many were taken, so that taking one tells in
// the same step whether it exists.
constexpr unsigned kCountShift = 32;
constexpr std::uint64_t kTakenMask = 0xffffffffU;

// About 20 microseconds: longer than the gap between two blocks of an offline render, short beside a
// live block.
constexpr int kSpins = 600;

}  // namespace

CRenderPool::CRenderPool(int threads, bool realTime) {
    for (int index = 1; index < threads; ++index) {
        workers.emplace_back([this, realTime] { Work(realTime); });
    }
}

CRenderPool::~CRenderPool() {
    stopping.store(true, std::memory_order_relaxed);
    WakeWorkers();
    for (std::thread& worker : workers) worker.join();
}

void CRenderPool::Run(Task run, void* context, int count) noexcept {
    if (count <= 0) return;
    if (workers.empty() || count == 1) {
        for (int index = 0; index < count; ++index) run(context, index);
        return;
    }
    task = run;
    taskContext = context;
    unfinished.store(static_cast<std::uint32_t>(count), std::memory_order_relaxed);
    ticket.store(static_cast<std::uint64_t>(count) << kCountShift, std::memory_order_release);
    WakeWorkers();
    TakeTasks();
    AwaitLastTask();
}

// Both sides of a sleep write first and read the other's word after it, all sequentially consistent: either
// the sleeper is seen and woken, or it sees the new value and does not go to sleep.
void CRenderPool::WakeWorkers() noexcept {
    wake.fetch_add(1, std::memory_order_seq_cst);
    if (sleepingWorkers.load(std::memory_order_seq_cst) != 0) WakeAllSleepers(wake);
}

void CRenderPool::AwaitWork(std::uint32_t seen) noexcept {
    for (int spin = 0; spin < kSpins && wake.load(std::memory_order_acquire) == seen; ++spin) SpinPause();
    sleepingWorkers.fetch_add(1, std::memory_order_seq_cst);
    while (wake.load(std::memory_order_seq_cst) == seen) SleepWhile(wake, seen);
    sleepingWorkers.fetch_sub(1, std::memory_order_relaxed);
}

void CRenderPool::AwaitLastTask() noexcept {
    for (int spin = 0; spin < kSpins && unfinished.load(std::memory_order_acquire) != 0; ++spin) SpinPause();
    if (unfinished.load(std::memory_order_acquire) == 0) return;
    renderThreadSleeps.store(true, std::memory_order_seq_cst);
    for (;;) {
        const std::uint32_t left = unfinished.load(std::memory_order_seq_cst);
        if (left == 0) break;
        SleepWhile(unfinished, left);
    }
    renderThreadSleeps.store(false, std::memory_order_relaxed);
}

void CRenderPool::TakeTasks() noexcept {
    for (;;) {
        const std::uint64_t taken = ticket.fetch_add(1, std::memory_order_acq_rel);
        const std::uint64_t index = taken & kTakenMask;
        if (index >= taken >> kCountShift) return;
        task(taskContext, static_cast<int>(index));
        if (unfinished.fetch_sub(1, std::memory_order_seq_cst) != 1) continue;
        if (renderThreadSleeps.load(std::memory_order_seq_cst)) WakeOneSleeper(unfinished);
    }
}

void CRenderPool::Work(bool realTime) noexcept {
    const CRenderThreadScope renderThread;
    if (realTime) SetRealTimePriority();
    std::uint32_t seen = 0;
    while (!stopping.load(std::memory_order_relaxed)) {
        SetFlushToZero();
        TakeTasks();
        AwaitWork(seen);
        seen = wake.load(std::memory_order_acquire);
    }
}

}  // namespace quib
