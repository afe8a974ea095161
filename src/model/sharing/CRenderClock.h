// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Numbers the render blocks, so that the editing thread can tell when the last block that might
// still read an unpublished object is over. One thread renders, one edits; the debug build checks that
// blocks neither overlap nor end on another thread.

#include <atomic>
#include <cassert>
#include <cstdint>
#include <thread>

namespace quib {

class CRenderClock {
public:
    // Render thread: around everything that reads published objects.
    void BeginBlock() noexcept {
        assert(Exchange(std::this_thread::get_id()) == std::thread::id() && "one thread renders at a time");
        started.store(++block, std::memory_order_seq_cst);
    }
    void EndBlock() noexcept {
        assert(Exchange(std::thread::id()) == std::this_thread::get_id() && "a block ends where it began");
        finished.store(block, std::memory_order_release);
    }

    // Editing thread: the newest block that may have seen what was published until now. The order
    // "store the pointer, then read the stamp", both sequentially consistent with BeginBlock and the
    // render thread's pointer load, is what makes reclamation safe.
    std::uint64_t Stamp() const noexcept { return started.load(std::memory_order_seq_cst); }
    bool Passed(std::uint64_t stamp) const noexcept { return finished.load(std::memory_order_acquire) >= stamp; }

    // After a device thread has been joined: a block it left open counts as over. No thread renders.
    void CloseOpenBlock() noexcept {
        Exchange(std::thread::id());
        finished.store(block, std::memory_order_release);
    }

private:
    // Whose block is open from now on; returns whose it was.
    std::thread::id Exchange(std::thread::id thread) noexcept {
        return openOn.exchange(thread, std::memory_order_relaxed);
    }

    std::uint64_t block = 0;  // render thread only
    std::atomic<std::uint64_t> started{0};
    std::atomic<std::uint64_t> finished{0};
    std::atomic<std::thread::id> openOn;
};

}  // namespace quib
