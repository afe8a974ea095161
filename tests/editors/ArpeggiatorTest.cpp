// SPDX-License-Identifier: GPL-3.0-or-later
// What the arpeggiator's window shows and writes is what the engine plays.
#include <random>

#include "editors/arpeggiator/ArpeggiatorPreview.h"
#include "engine/EngineFixture.h"

namespace quib {
namespace {

class ArpeggiatorTest : public CEngineTest {
protected:
    // Short steps, so that many go by quickly.
    ArpeggiatorTest() {
        Prepare(512);
        audio.settings.tempo.Set(300);
        audio.settings.stepsPerBeat.Set(16);
    }
    static constexpr int kSteps = 32;
    static constexpr double kStepFrames = 551;  // whole samples

    int Draw(int below) { return static_cast<int>(dice() % static_cast<unsigned>(below)); }
    void Shuffle(ArpeggiatorSettings& settings) {
        settings.on.Set(1);
        settings.mode.Set(static_cast<float>(Draw(4)));
        settings.hole.Set(static_cast<float>(Draw(4)));
        settings.ext.Set(static_cast<float>(Draw(4)));
        settings.extMode.Set(static_cast<float>(Draw(4)));
        settings.interval.Set(static_cast<float>(Draw(25) - 6));
        settings.gateTime.Set(static_cast<float>(Draw(5)));
        settings.tempo.Set(static_cast<float>(Draw(3)));
        settings.velocity.Set(static_cast<float>(Draw(8)) / 4);
    }
    std::vector<std::uint8_t> SomeKeys() {
        std::vector<std::uint8_t> keys(static_cast<std::size_t>(1 + Draw(5)));
        for (std::uint8_t& key : keys) key = static_cast<std::uint8_t>(30 + Draw(70));
        return keys;
    }

    std::mt19937 dice{11};
};

TEST_F(ArpeggiatorTest, TheEngineEndsEachNoteAndPlaysWhatIsShownForAThousandRandomSettings) {
    for (int session = 0; session < 1'000; ++session) {
        CInstrument& instrument = AddInstrument();
        SetPattern(instrument, 0, 16, {});
        Shuffle(instrument.arpeggiator);
        const auto keys = SomeKeys();
        for (const std::uint8_t key : keys) instrument.play.heldKeys.Add(key);
        const auto seed = static_cast<std::uint32_t>(session + 1);
        const std::vector<Note> shown = PreviewArpeggiator(instrument.arpeggiator, keys, kSteps, seed);
        audio.Seed(seed);
        position = 0;
        PlayPatterns();
        const auto heard = Listen(instrument, static_cast<std::int64_t>((kSteps - 0.5) * kStepFrames));
        std::size_t at = 0;
        for (const HeardNote& note : heard) {
            if (!note.on || static_cast<double>(note.frame) >= kSteps * kStepFrames - 1) continue;
            ASSERT_LT(at, shown.size()) << session;
            EXPECT_EQ(note.key, shown[at].key) << session;
            EXPECT_NEAR(static_cast<double>(note.frame), static_cast<double>(shown[at].position) * kStepFrames, 1.5);
            const double end = static_cast<double>(shown[at].position + shown[at].length) * kStepFrames;
            const bool ends = std::any_of(heard.begin(), heard.end(), [&](const HeardNote& other) {
                return !other.on && other.key == note.key && std::abs(static_cast<double>(other.frame) - end) < 3;
            });
            EXPECT_TRUE(ends || end > (kSteps - 1) * kStepFrames) << session << " at " << note.frame;
            ++at;
        }
        EXPECT_EQ(at, shown.size()) << session;
        Command(EngineCommand::EKind::kStop);
        audio.RenderBlock();
        audio.PublishInstruments({});
    }
}

TEST_F(ArpeggiatorTest, NothingHangsWhateverIsSwitchedWhileKeysMove) {
    for (int session = 0; session < 60; ++session) {
        CInstrument& instrument = AddInstrument();
        instrument.midi.channel.Set(kChannelOmni);
        instrument.keyboardOn.Set(1);
        Shuffle(instrument.arpeggiator);
        std::array<int, 128> down{};
        std::set<int> pressed;
        const auto hear = [&](std::int64_t frames) {
            for (const HeardNote& note : Listen(instrument, frames)) {
                if (note.key < 0) continue;
                down[static_cast<std::size_t>(note.key)] = note.on ? 1 : 0;
            }
        };
        const auto send = [&](int key, bool on) {
            audio.ReceiveMidi({static_cast<std::uint8_t>(on ? 0x90 : 0x80), static_cast<std::uint8_t>(key), 100, 0});
        };
        PlayPatterns();
        for (int move = 0; move < 40; ++move) {
            const int key = 40 + Draw(24);
            switch (Draw(4)) {
                case 0:
                    instrument.arpeggiator.on.Set(static_cast<float>(Draw(2)));
                    break;
                case 1:
                    instrument.arpeggiator.latch.Set(static_cast<float>(Draw(2)));
                    break;
                default:
                    // One message a block: the probe adds up what falls on one frame.
                    if (pressed.erase(key) > 0) {
                        send(key, false);
                    } else {
                        send(key, pressed.insert(key).second);
                    }
            }
            hear(600);
        }
        for (const int key : pressed) {
            send(key, false);
            hear(600);
        }
        instrument.arpeggiator.on.Set(0);
        hear(4 * static_cast<int>(kStepFrames));
        EXPECT_EQ(std::count(down.begin(), down.end(), 1), 0) << session;
        Command(EngineCommand::EKind::kStop);
        audio.RenderBlock();
        audio.PublishInstruments({});
    }
}

TEST_F(ArpeggiatorTest, LatchedKeysPlayOnUntilAnotherChordOrUntilItIsSwitchedOff) {
    CInstrument& instrument = AddInstrument();
    instrument.midi.channel.Set(kChannelOmni);
    instrument.keyboardOn.Set(1);
    instrument.arpeggiator.on.Set(1);
    instrument.arpeggiator.latch.Set(1);
    const auto play = [&](std::vector<int> keys) {
        for (const std::uint8_t status : {std::uint8_t{0x90}, std::uint8_t{0x80}}) {
            for (const int key : keys) audio.ReceiveMidi({status, static_cast<std::uint8_t>(key), 100, 0});
            audio.RenderBlock();
        }
    };
    const auto held = [&] { return instrument.play.heldKeys.Items(); };
    play({60, 64});
    EXPECT_EQ(held(), (std::vector<std::int32_t>{60, 64}));
    play({67});
    EXPECT_EQ(held(), (std::vector<std::int32_t>{67})) << "another chord takes its place";
    audio.ReceiveMidi({0x90, 72, 100, 0});
    audio.RenderBlock();
    instrument.arpeggiator.latch.Set(0);
    audio.RenderBlock();
    EXPECT_EQ(held(), (std::vector<std::int32_t>{72})) << "what is still down stays";
}

}  // namespace
}  // namespace quib
