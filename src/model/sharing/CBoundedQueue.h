// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A queue of small messages from one thread to one other. Neither end waits or allocates: when
// `limit` messages wait, further ones are dropped and counted.

#include <readerwriterqueue/readerwriterqueue.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace quib {

template <class T>
class CBoundedQueue {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    explicit CBoundedQueue(std::size_t messageLimit) : limit(messageLimit), queue(messageLimit) {}

    // Writing thread. False when the message was dropped.
    bool TryPush(const T& message) noexcept {
        if (queue.size_approx() < limit && queue.try_enqueue(message)) return true;
        dropped.fetch_add(1, std::memory_order_relaxed);
        return false;
    }

    // Reading thread. False when nothing waits.
    bool TryPop(T& message) noexcept { return queue.try_dequeue(message); }

    // Any thread: how many messages were dropped since the start.
    std::uint64_t Dropped() const noexcept { return dropped.load(std::memory_order_relaxed); }

private:
    std::size_t limit;
    moodycamel::ReaderWriterQueue<T> queue;
    std::atomic<std::uint64_t> dropped{0};
};

}  // namespace quib
