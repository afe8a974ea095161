// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Lets one thread at a time render a block, and none while the engine is held. Whoever may not render
// never waits; the editing thread waits for the block under way.

#include <atomic>
#include <thread>

namespace quib {

class CBlockGuard {
public:
    // Editing thread: refuses blocks until Release was called as often.
    void Hold() noexcept { holds.fetch_add(1, std::memory_order_seq_cst); }
    void Release() noexcept { holds.fetch_sub(1, std::memory_order_seq_cst); }

    // One block, on the thread that renders it.
    class CBlock {
    public:
        explicit CBlock(CBlockGuard& blockGuard) noexcept
            : guard(blockGuard), alone(!guard.rendering.exchange(true, std::memory_order_seq_cst)) {
            open = alone && guard.holds.load(std::memory_order_seq_cst) == 0;
        }
        ~CBlock() {
            if (alone) guard.rendering.store(false, std::memory_order_seq_cst);
        }
        CBlock(const CBlock&) = delete;
        CBlock& operator=(const CBlock&) = delete;

        // False while the engine is held, and for a second device while the first one ends.
        bool IsOpen() const noexcept { return open; }

    private:
        CBlockGuard& guard;
        bool alone;
        bool open;
    };

    // Keeps the render thread out while the engine is rebuilt; editing thread.
    class CRebuild {
    public:
        explicit CRebuild(CBlockGuard& blockGuard) noexcept : guard(blockGuard) {
            guard.Hold();
            while (guard.rendering.load(std::memory_order_seq_cst)) std::this_thread::yield();
        }
        ~CRebuild() { guard.Release(); }
        CRebuild(const CRebuild&) = delete;
        CRebuild& operator=(const CRebuild&) = delete;

    private:
        CBlockGuard& guard;
    };

private:
    std::atomic<int> holds{0};
    std::atomic<bool> rendering{false};
};

}  // namespace quib
