// SPDX-License-Identifier: GPL-3.0-or-later
// MIDI input under a flood.

#include "SoakReport.h"
#include "devices/CMidiFeed.h"
#include "devices/DeviceFixture.h"
#include "engine/EngineNotices.h"
#include "platform/Clock.h"

namespace quib {
namespace {

class CMidiSoakTest : public CDeviceTest {
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
                message.time = Nanoseconds();
                feed.Add(message);
            }
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
        while (!feed.Flush(Nanoseconds())) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
};

TEST_F(CMidiSoakTest, AFloodTakesNoMemoryAndLeavesNoKeyDown) {
    const double seconds = IsLong() ? 60.0 : 2.0;
    const CInstrument& instrument = AddInstrument("KeyCounter");
    AddInstrument("KeyCounter");
    for (const auto& each : *audio.instruments.ForEdit()) each->midi.channel.Set(kChannelOmni);
    // Of the longer blocks a queue cannot hold what comes in during one.
    for (const int block : {256, 8192}) {
        ASSERT_TRUE(output.OpenOutput(Settings("Silent", block)));
        PlayPatterns();
        const std::uint64_t droppedBefore = audio.DroppedMidi();
        std::atomic<bool> done{false};
        std::size_t before = 0;
        std::thread player([&] {
            CMidiFeed feed(audio.MidiInputQueue());
            Flood(feed, 0.5);
            before = ResidentKilobytes();
            Flood(feed, seconds);
            done = true;
        });
        while (!done) {
            Turn();
            FollowNotices(audio);
        }
        player.join();
        const std::size_t after = ResidentKilobytes();
        const std::uint64_t dropped = audio.DroppedMidi() - droppedBefore;
        EXPECT_LT(after, before + 1024);
        if (block == 8192) {
            EXPECT_GT(dropped, 0U) << "the flood was none";
        }
        // What still waits, and one block more.
        ASSERT_TRUE(PlayOn(4 * 8192.0 / 48000));
        output.CloseOutput();
        const auto last = static_cast<std::size_t>(block - 1);
        const CPlugin& plugin = *instrument.plugin.ForEdit()->plugin;
        EXPECT_EQ(plugin.Output(0)[last], 0.0F) << "keys down, of 256";
        EXPECT_EQ(plugin.Output(1)[last], 0.5F) << "no key was ever struck";
        Report("MIDI flood",
               fmt::format("{} messages/s for {} s, blocks of {}: resident {} kB before, {} kB after; {} dropped",
                           kMessagesPerSecond, seconds, block, before, after, dropped));
    }
}

}  // namespace
}  // namespace quib
