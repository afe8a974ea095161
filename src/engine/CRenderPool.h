// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Real-time threads that share the tasks of one block with the render thread. Tasks are handed out by
// one atomic word; whoever comes takes the next, so a thread that has lost its core holds up nothing
// but a task it has begun, and the render thread does what nobody took. Waking the threads is the only
// call into the system.

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

namespace quib {

class CRenderPool {
public:
    // What a block wants done: `run(context, index)` for every index below `count`, on any thread.
    using Task = void (*)(void* context, int index) noexcept;

    // `threads` counts the render thread, so 1 means no thread of its own. Real-time scheduling is asked
    // for when `realTime`; offline renders leave the machine to others.
    explicit CRenderPool(int threads, bool realTime);
    ~CRenderPool();
    CRenderPool(const CRenderPool&) = delete;
    CRenderPool& operator=(const CRenderPool&) = delete;

    int Threads() const noexcept { return static_cast<int>(workers.size()) + 1; }

    // Render thread: runs all tasks and returns when the last one is done.
    void Run(Task run, void* context, int count) noexcept;

private:
    void Work(bool realTime) noexcept;
    void WakeWorkers() noexcept;
    void AwaitWork(std::uint32_t seen) noexcept;
    void AwaitLastTask() noexcept;
    // Takes tasks until none is left.
    void TakeTasks() noexcept;

    // Number of the next task to take; at or above `taskCount` when there is none.
    std::atomic<std::uint64_t> ticket{0};
    std::atomic<std::uint32_t> unfinished{0};
    std::atomic<bool> renderThreadSleeps{false};
    std::atomic<std::uint32_t> wake{0};
    std::atomic<int> sleepingWorkers{0};
    std::atomic<bool> stopping{false};

    // Written by the render thread before the ticket is released, read after one was taken.
    Task task = nullptr;
    void* taskContext = nullptr;

    std::vector<std::thread> workers;
};

}  // namespace quib
