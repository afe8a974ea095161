// SPDX-License-Identifier: GPL-3.0-or-later
#include "Testing.h"
#include "devices/CMidiFeed.h"

namespace quib {
namespace {

using Bytes = std::vector<unsigned char>;

std::vector<MidiMessage> PopAll(CBoundedQueue<MidiMessage>& queue) {
    std::vector<MidiMessage> messages;
    for (MidiMessage message; queue.TryPop(message);) messages.push_back(message);
    return messages;
}

// Notes that sound after these messages, by channel and key.
std::bitset<2048> Sounding(const std::vector<MidiMessage>& messages, std::bitset<2048> sounding = {}) {
    for (const MidiMessage& message : messages) {
        const std::size_t key = static_cast<std::size_t>(message.status & 15) * 128 + message.data1;
        if (message.status >> 4 == 9) sounding.set(key, message.data2 > 0);
        if (message.status >> 4 == 8) sounding.reset(key);
    }
    return sounding;
}

TEST(CMidiFeedTest, ChannelMessagesPassAndEverythingElseIsDropped) {
    CBoundedQueue<MidiMessage> queue{64};
    CMidiFeed feed(queue);
    const Bytes heard[] = {{0x93, 60, 100}, {0xb0, 1, 64}, {0xc5, 7}, {0xd0, 33}, {0xe2, 100, 64}, {0x83, 60, 5}};
    const Bytes ignored[] = {{0xf8}, {0xf0, 1, 2, 0xf7}, {0x90, 60}, {0x90}, {}, {0xff}, {0x12, 60, 100}};
    for (const Bytes& bytes : heard) feed.Add(bytes.data(), bytes.size(), 1234);
    for (const Bytes& bytes : ignored) feed.Add(bytes.data(), bytes.size(), 1234);
    const std::vector<MidiMessage> messages = PopAll(queue);
    ASSERT_EQ(messages.size(), std::size(heard));
    for (std::size_t index = 0; index < messages.size(); ++index) {
        EXPECT_EQ(messages[index].status, heard[index][0]);
        EXPECT_EQ(messages[index].data1, heard[index][1]);
        EXPECT_EQ(messages[index].time, 1234U);
    }
    EXPECT_EQ(messages[4].data2, 64);
    EXPECT_EQ(messages[5].data2, 0);
}

TEST(CMidiFeedTest, WhateverTheQueueDropsNoNoteHangs) {
    CBoundedQueue<MidiMessage> queue{16};
    CMidiFeed feed(queue);
    std::mt19937 random(7);
    std::bitset<2048> sounding;
    for (int step = 0; step < 200'000; ++step) {
        const auto key = static_cast<std::uint8_t>(random() % 24);
        const auto channel = static_cast<std::uint8_t>(random() % 2);
        const bool on = random() % 2 == 0;
        const int form = random() % 2 == 0 ? 0x80 : 0x90;
        feed.Add(
            {static_cast<std::uint8_t>((on ? 0x90 : form) | channel), key, static_cast<std::uint8_t>(on ? 90 : 0)});
        MidiMessage message;
        if (random() % 3 == 0 && queue.TryPop(message)) sounding = Sounding({message}, sounding);
    }
    EXPECT_GT(queue.Dropped(), 1000U);
    feed.ReleaseAll(0);
    for (int turn = 0; turn < 10; ++turn) {
        sounding = Sounding(PopAll(queue), sounding);
        feed.Flush(0);
    }
    EXPECT_EQ(sounding.count(), 0U);
    EXPECT_TRUE(feed.Flush(0));
}

}  // namespace
}  // namespace quib
