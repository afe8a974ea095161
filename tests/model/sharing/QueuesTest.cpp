// SPDX-License-Identifier: GPL-3.0-or-later
// The two channels between threads that carry no ownership: bounded queue and triple buffer.

#include "Testing.h"
#include "model/sharing/CBoundedQueue.h"
#include "model/sharing/CTripleBuffer.h"

namespace quib {
namespace {

#if defined(__SANITIZE_THREAD__)
constexpr std::uint64_t kMessages = 1'000'000;
#else
constexpr std::uint64_t kMessages = 10'000'000;
#endif

TEST(CBoundedQueueTest, TheLimitIsExactWhereverTheQueueHasGotTo) {
    for (const std::size_t limit : {1U, 3U, 100U, 1024U, 4096U}) {
        CBoundedQueue<int> queue(limit);
        int next = 0;
        int expected = 0;
        int popped = 0;
        // Each round leaves the queue at another place of its memory.
        for (std::size_t round = 0; round < 2 * std::min<std::size_t>(limit, 100) + 3; ++round) {
            while (queue.TryPush(next)) ++next;
            ASSERT_EQ(static_cast<std::size_t>(next - expected), limit) << "round " << round;
            ASSERT_EQ(queue.Dropped(), round + 1);
            const std::size_t taken = limit / 3 + 1 + round % 2 * (limit / 2);
            for (std::size_t index = 0; index < taken && queue.TryPop(popped); ++index) {
                ASSERT_EQ(popped, expected++);
            }
        }
    }
}

TEST(CBoundedQueueTest, MessagesArriveInOrderAndEveryMissingOneWasCounted) {
    struct Message {
        std::uint64_t number;
        std::uint64_t complement;
    };
    CBoundedQueue<Message> queue(64);
    std::uint64_t dropped = 0;
    std::thread writer([&] {
        for (std::uint64_t number = 1; number <= kMessages; ++number) queue.TryPush({number, ~number});
        dropped = queue.Dropped();
        while (!queue.TryPush({0, ~std::uint64_t{0}})) std::this_thread::yield();
    });
    std::uint64_t received = 0;
    std::uint64_t previous = 0;
    bool ordered = true;
    for (Message message{}; ordered;) {
        if (!queue.TryPop(message)) {
            std::this_thread::yield();
            continue;
        }
        if (message.number == 0) break;
        ordered = message.number > previous && message.complement == ~message.number;
        previous = message.number;
        ++received;
    }
    writer.join();
    ASSERT_TRUE(ordered) << "after " << previous;
    EXPECT_GT(received, 0U);
    EXPECT_EQ(dropped, kMessages - received);
}

TEST(CTripleBufferTest, TheReaderGetsWholePicturesEachNewerThanTheLast) {
    struct Picture {
        std::array<std::uint64_t, 100> fields{};
    };
    CTripleBuffer<Picture> buffer;
    EXPECT_FALSE(buffer.Update()) << "nothing was committed yet";
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (std::uint64_t number = 1; number <= kMessages / 4; ++number) {
            buffer.Writable().fields.fill(number);
            buffer.Commit();
        }
        done = true;
    });
    std::uint64_t previous = 0;
    std::uint64_t fetched = 0;
    bool whole = true;
    bool newer = true;
    while (whole && newer) {
        const bool last = done;
        if (!buffer.Update()) {
            if (last) break;
            continue;
        }
        const auto& fields = buffer.Latest().fields;
        whole = std::all_of(fields.begin(), fields.end(), [&](std::uint64_t field) { return field == fields[0]; });
        newer = fields[0] > previous;
        previous = fields[0];
        ++fetched;
    }
    writer.join();
    EXPECT_TRUE(whole) << "picture " << previous;
    EXPECT_TRUE(newer) << "picture " << previous;
    EXPECT_EQ(previous, kMessages / 4) << "the last picture is never lost";
    EXPECT_GT(fetched, 0U);
}

}  // namespace
}  // namespace quib
