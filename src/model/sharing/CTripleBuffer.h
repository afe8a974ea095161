// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Hands the newest complete picture from one writing thread to one reading thread. Neither waits;
// pictures that nobody fetched are overwritten.

#include <array>
#include <atomic>

namespace quib {

template <class T>
class CTripleBuffer {
public:
    // Writing thread: the picture to fill, then its hand-over. The slot holds an older picture.
    T& Writable() noexcept { return slots[writing]; }
    void Commit() noexcept { writing = middle.exchange(writing | kFresh, std::memory_order_acq_rel) & kIndex; }

    // Reading thread: takes the newest picture if there is one; says whether there was.
    bool Update() noexcept {
        if ((middle.load(std::memory_order_relaxed) & kFresh) == 0) return false;
        reading = middle.exchange(reading, std::memory_order_acq_rel) & kIndex;
        return true;
    }
    const T& Latest() const noexcept { return slots[reading]; }

private:
    static constexpr unsigned kIndex = 3;
    static constexpr unsigned kFresh = 4;

    std::array<T, 3> slots{};
    unsigned writing = 0;             // writing thread only
    unsigned reading = 1;             // reading thread only
    std::atomic<unsigned> middle{2};  // index of the third slot, with kFresh when it is new
};

}  // namespace quib
