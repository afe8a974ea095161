// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/devices/CMidiFeed.h"

#include <fstream>
#include <random>

#include "DeviceFixture.h"
#include "platform/Clock.h"

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

class CMidiFloodTest : public CDeviceTest {
protected:
    static constexpr int kMessagesPerSecond = 100'000;

    static std::size_t ResidentKilobytes() {
        std::ifstream status("/proc/self/status");
        for (std::string word; status >> word;) {
            if (word == "VmRSS:") {
                std::size_t size = 0;
                status >> size;
                return size;
            }
        }
        return 0;
    }

    // Notes, bends and controllers of a player with far too many hands; ends with every key up.
    void Flood(CMidiFeed& feed, double seconds) {
        const std::uint64_t start = Nanoseconds();
        const auto total = static_cast<std::uint64_t>(seconds * kMessagesPerSecond);
        for (std::uint64_t sent = 0; sent < total;) {
            const std::uint64_t due = (Nanoseconds() - start) * kMessagesPerSecond / 1'000'000'000;
            for (; sent < std::min(due, total); ++sent) {
                const auto key = static_cast<std::uint8_t>(sent / 4 % 100);
                const MidiMessage kinds[] = {{0x90, key, 100}, {0xe0, 0, key}, {0xb0, 1, key}, {0x80, key, 0}};
                MidiMessage message = kinds[sent % 4];
                message.time = Milliseconds();
                feed.Add(message);
            }
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
        while (!feed.Flush(Milliseconds())) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
};

TEST_F(CMidiFloodTest, AFloodTakesNoMemoryAndLeavesNoKeyDown) {
    const double seconds = std::getenv("QUIB_SOAK") != nullptr ? 60.0 : 3.0;  // NOLINT(concurrency-mt-unsafe)
    const CInstrument& instrument = AddInstrument("KeyCounter");
    AddInstrument("KeyCounter");
    for (const auto& each : *audio.instruments.ForEdit()) {
        each->midi.channel.Set(kChannelOmni);
        each->midi.pitchBend.Set(1.0F);
        each->midi.modulationWheel.Set(1.0F);
    }
    // Blocks so long that a queue cannot hold what comes in during one.
    ASSERT_TRUE(output.OpenOutput(Settings("Silent", 8192)));
    PlayPatterns();
    std::atomic<bool> done{false};
    std::size_t before = 0;
    std::thread player([&] {
        CMidiFeed feed(audio.MidiInputQueue());
        Flood(feed, 0.5);
        before = ResidentKilobytes();
        Flood(feed, seconds);
        done = true;
    });
    const auto turn = [&] {
        Turn();
        for (EngineNotice notice; audio.Fetch(notice);) continue;
    };
    while (!done) turn();
    player.join();
    EXPECT_LT(ResidentKilobytes(), before + 1024);
    EXPECT_GT(audio.DroppedMidi(), 0U) << "the flood was none";
    // What still waits, and one block more.
    ASSERT_TRUE(PlayOn(4 * 8192.0 / 48000));
    output.CloseOutput();
    const CPlugin& plugin = *instrument.plugin.ForEdit()->plugin;
    EXPECT_EQ(plugin.Output(0)[8191], 0.0F) << "keys down, of 256";
    EXPECT_EQ(plugin.Output(1)[8191], 0.5F) << "no key was ever struck";
}

}  // namespace
}  // namespace quib
