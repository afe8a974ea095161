// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Numbers the render blocks, so that the editing thread can tell when the last block that might
// still read an unpublished object is over. One thread renders, one edits.

#include <atomic>
#include <cstdint>

namespace quib {

class CRenderClock {
public:
    // Render thread: around everything that reads published objects.
    void BeginBlock() noexcept { started.store(++block, std::memory_order_seq_cst); }
    void EndBlock() noexcept { finished.store(block, std::memory_order_release); }

    // Editing thread: the newest block that may have seen what was published until now. The order
    // "store the pointer, then read the stamp", both sequentially consistent with BeginBlock and the
    // render thread's pointer load, is what makes reclamation safe.
    std::uint64_t Stamp() const noexcept { return started.load(std::memory_order_seq_cst); }
    bool Passed(std::uint64_t stamp) const noexcept { return finished.load(std::memory_order_acquire) >= stamp; }

    // After a device thread has been joined: a block it left open counts as over. No thread renders.
    void CloseOpenBlock() noexcept { finished.store(block, std::memory_order_release); }

private:
    std::uint64_t block = 0;  // render thread only
    std::atomic<std::uint64_t> started{0};
    std::atomic<std::uint64_t> finished{0};
};

}  // namespace quib
