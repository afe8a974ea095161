// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A queue of small messages from one thread to one other. Neither end waits or allocates: when
// `limit` messages wait, further ones are dropped and counted.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

namespace quib {

template <class T>
class CBoundedQueue {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    // `messageLimit`: at least 1.
    explicit CBoundedQueue(std::size_t messageLimit)
        : limit(messageLimit), messages(std::make_unique<T[]>(messageLimit)) {}

    // Writing thread. False when the message was dropped.
    bool TryPush(const T& message) noexcept {
        if (!HasRoom()) {
            CountDropped();
            return false;
        }
        const std::size_t place = written.load(std::memory_order_relaxed);
        messages[place % limit] = message;
        written.store(place + 1, std::memory_order_release);
        return true;
    }

    // Writing thread: whether the next push will be taken.
    bool HasRoom() const noexcept {
        return written.load(std::memory_order_relaxed) - read.load(std::memory_order_acquire) < limit;
    }
    // Writing thread: a message was given up without trying.
    void CountDropped() noexcept { dropped.fetch_add(1, std::memory_order_relaxed); }

    // Reading thread. False when nothing waits.
    bool TryPop(T& message) noexcept {
        const std::size_t place = read.load(std::memory_order_relaxed);
        if (place == written.load(std::memory_order_acquire)) return false;
        message = messages[place % limit];
        read.store(place + 1, std::memory_order_release);
        return true;
    }

    // Any thread: how many messages were dropped since the start.
    std::uint64_t Dropped() const noexcept { return dropped.load(std::memory_order_relaxed); }

private:
    static constexpr std::size_t kCacheLine = 64;

    std::size_t limit;
    std::unique_ptr<T[]> messages;
    // How many messages were ever written and read. Each end writes a cache line of its own.
    alignas(kCacheLine) std::atomic<std::size_t> written{0};
    std::atomic<std::uint64_t> dropped{0};
    alignas(kCacheLine) std::atomic<std::size_t> read{0};
};

}  // namespace quib
