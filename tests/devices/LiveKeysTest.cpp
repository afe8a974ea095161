// SPDX-License-Identifier: GPL-3.0-or-later
// No note without its end, whatever is done while keys are held.
#include <cstdlib>
#include <set>

#include "devices/CMidiFeed.h"
#include "engine/EngineFixture.h"
#include "platform/Clock.h"

namespace quib {
namespace {

class CLiveKeysTest : public CEngineTest {
protected:
    static constexpr std::size_t kInstruments = 3;
    static constexpr int kWindows = 2;    // sources: two MIDI inputs, then the windows
    static constexpr int kAuditions = 3;  // and the piano roll

    void SetUp() override {
        Prepare(64);
        for (Track& track : tracks) {
            CInstrument& made = AddInstrument("KeyCounter");
            track.instrument = audio.instruments.ForEdit()->back();
            track.plugins = {made.plugin.ForEdit()->plugin, LoadPlugin("KeyCounter", ESlotKind::kInstrument)};
            SetPattern(made, 0, 16, EveryStep(16, 50));
            SetPattern(made, 1, 5, {{0, 20, 51, 100}, {3, 1, 52, 90}});
            made.midi.channel.Set(kChannelOmni);
            Publish(made.playlist, Playlist{{0, 0, 2}, {8, 1, 1}});
        }
        audio.settings.loopEnd.Set(8);
    }
    int Draw(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
    static int Down(const CPlugin& plugin) { return static_cast<int>(std::lround(plugin.Output(0)[0] * 256.0F)); }
    void Render(int blocks) {
        for (int block = 0; block < blocks; ++block) audio.RenderBlock();
        for (EngineNotice notice; audio.Fetch(notice);) {}
        audio.Collect();
    }

    // --- Hands ------------------------------------------------------------------------------------

    using Key = std::array<int, 3>;  // source, channel or instrument, key or pedal
    void Move(const Key& key, int velocity) {
        const auto [source, channel, number] = key;
        if (source >= kWindows) {
            const auto kind = source == kWindows ? EngineCommand::EKind::kPlayNote : EngineCommand::EKind::kAudition;
            const std::uint32_t id = tracks[static_cast<std::size_t>(channel) % kInstruments].instrument->Id();
            audio.Post({kind, id, number, static_cast<float>(velocity)});
        } else {
            const int status = (number == kPedalKey ? 0xb0 : velocity > 0 ? 0x90 : 0x80) | channel;
            const int data = number == kPedalKey ? kSustainPedal : number;
            feeds[static_cast<std::size_t>(source)].Add({static_cast<std::uint8_t>(status),
                                                         static_cast<std::uint8_t>(data),
                                                         static_cast<std::uint8_t>(velocity), Nanoseconds()});
        }
        if (velocity > 0) pressed.insert(key);
        if (velocity == 0) pressed.erase(key);
    }
    void Press() {
        const int source = Draw(4);
        const bool pedal = source < kWindows && Draw(8) == 0;
        Move({source, Draw(3), pedal ? kPedalKey : 36 + Draw(48)}, 1 + Draw(127));
    }
    void Lift() {
        if (!pressed.empty()) Move(*std::next(pressed.begin(), Draw(static_cast<int>(pressed.size()))), 0);
    }
    void LiftAll() {
        while (!pressed.empty()) Move(*pressed.begin(), 0);
    }
    void Unplug(int source) {
        feeds[static_cast<std::size_t>(source)].ReleaseAll(Nanoseconds());
        std::erase_if(pressed, [source](const Key& key) { return key[0] == source; });
    }

    // --- Everything else --------------------------------------------------------------------------

    void ChangeSetting(CInstrument& instrument) {
        MidiInputSettings& midi = instrument.midi;
        switch (Draw(10)) {
            case 0:
                return instrument.arpeggiator.on.Set(static_cast<float>(Draw(2)));
            case 1:
                return midi.transpose.Set(Draw(49) - 24);
            case 2:
                return midi.keyFrom.Set(Draw(60));
            case 3:
                return midi.keyTo.Set(40 + Draw(88));
            case 4:
                return midi.channel.Set(Draw(5));
            case 5:
                return midi.priority.Set(Draw(2));
            case 6:
                return midi.limitLearning.Set(Draw(3) - 1);
            case 7:
                return instrument.keyboardOn.Set(static_cast<float>(Draw(2)));
            case 8:
                return instrument.strip.mute.Set(static_cast<float>(Draw(2)));
            default:
                return instrument.swing.Set(static_cast<float>(Draw(100)) / 100);
        }
    }
    void ChangeStructure(std::size_t index) {
        Track& track = tracks[index];
        switch (Draw(6)) {
            case 0:
                return Put(track.instrument->plugin, track.plugins[static_cast<std::size_t>(Draw(2))]);
            case 1:
                return Put(track.instrument->plugin, nullptr);
            case 2:
                track.away = !track.away;
                return PublishTracks();
            case 3:
                return Prepare(Draw(2) == 0 ? 64 : 100);
            case 4:
                return SetPattern(*track.instrument, 0, 3 + Draw(12), EveryStep(3, 50));
            default: {
                const CPlugin::CExclusive changing(*track.plugins[0]);
                return Render(1);
            }
        }
    }
    void Transport(std::uint32_t instrument, bool mayPlay) {
        using EKind = EngineCommand::EKind;
        switch (Draw(7)) {
            case 0:
                return Command(mayPlay ? EKind::kPlay : EKind::kPanic);
            case 1:
                return Command(EKind::kStop);
            case 2:
                return Command(EKind::kLocate, Draw(30));
            case 3:
                return Command(EKind::kSelectPattern, Draw(2), instrument);
            case 4:
                return Command(EKind::kStartPattern, Draw(4), instrument);
            case 5:
                return audio.settings.loopOn.Set(static_cast<float>(Draw(2)));
            default:
                return audio.settings.songMode.Set(static_cast<float>(Draw(2)));
        }
    }
    void PublishTracks() {
        InstrumentList list;
        for (const Track& track : tracks) {
            if (!track.away) audio.PrepareInstrument(*list.emplace_back(track.instrument));
        }
        audio.PublishInstruments(std::move(list));
    }
    void Step(bool mayPlay) {
        const auto index = static_cast<std::size_t>(Draw(kInstruments));
        const int kind = Draw(100);
        if (kind < 40) {
            Press();
        } else if (kind < 65) {
            Lift();
        } else if (kind < 80) {
            ChangeSetting(*tracks[index].instrument);
        } else if (kind < 90) {
            Transport(tracks[index].instrument->Id(), mayPlay);
        } else if (kind < 98) {
            ChangeStructure(index);
        } else {
            Unplug(Draw(2));
        }
        if (Draw(3) > 0) Render(1 + Draw(20) / 19 * 90);
    }
    // In all plug-ins, wherever they are by now.
    int AllDown() {
        int down = 0;
        // Where they are, before coming back ends what they had.
        for (const Track& track : tracks) {
            const auto& plugin = track.instrument->plugin.ForEdit()->plugin;
            if (!track.away && plugin) down += Down(*plugin);
        }
        for (Track& track : tracks) track.away = false;
        PublishTracks();
        for (const std::size_t which : {0U, 1U}) {
            for (const Track& track : tracks) Put(track.instrument->plugin, track.plugins[which]);
            Render(1);
            for (const Track& track : tracks) down += Down(*track.plugins[which]);
        }
        return down;
    }

    struct Track {
        std::shared_ptr<CInstrument> instrument;
        std::array<std::shared_ptr<CPlugin>, 2> plugins;
        bool away = false;
    };
    std::array<Track, kInstruments> tracks;
    std::array<CMidiFeed, 2> feeds{CMidiFeed(audio.MidiInputQueue()), CMidiFeed(audio.DeviceMidiQueue())};
    std::set<Key> pressed;
    std::mt19937 random{11};
};

// Hands that go up end every note; Stop ends them under the hands, and the second Stop what is left.
TEST_F(CLiveKeysTest, RandomSessionsLeaveNoNoteWithoutItsEnd) {
    constexpr int kSteps = 500;
    const int sessions = std::getenv("QUIB_THOROUGH") != nullptr ? 1000 : 100;
    for (int session = 0; session < sessions; ++session) {
        const bool byHand = session % 2 == 0;
        for (int step = 0; step < kSteps; ++step) Step(!byHand);
        Render(1);  // what was played before was not played after the stop
        if (byHand) LiftAll();
        if (!byHand) Command(EngineCommand::EKind::kStop);
        Render(1);
        ASSERT_EQ(AllDown(), 0) << "session " << session << (byHand ? ", hands up" : ", stopped");
        for (const Track& track : tracks) ASSERT_TRUE(!byHand || track.instrument->play.liveKeys.Items().empty());
        LiftAll();
        Command(EngineCommand::EKind::kStop);
        Render(1);
    }
}

TEST_F(CLiveKeysTest, AReleaseGoesWhereItsKeyWentAndAReleaseAfterLearningNowhere) {
    tracks[1].away = tracks[2].away = true;
    PublishTracks();
    CInstrument& instrument = *tracks[0].instrument;
    const CPlugin& plugin = *tracks[0].plugins[0];
    const std::function<void()> changes[] = {
        [&] { instrument.arpeggiator.on.Set(1); }, [&] { instrument.midi.transpose.Set(5); },
        [&] { instrument.midi.keyTo.Set(50); },    [&] { instrument.midi.channel.Set(kChannelOff); },
        [&] { instrument.midi.channel.Set(9); },   [&] { instrument.midi.limitLearning.Set(0); },
        [&] { instrument.keyboardOn.Set(0); }};
    for (const auto& change : changes) {
        instrument.arpeggiator.on.Set(0);
        instrument.keyboardOn.Set(1);
        instrument.midi.transpose.Set(0);
        instrument.midi.keyFrom.Set(0);
        instrument.midi.keyTo.Set(127);
        instrument.midi.channel.Set(kChannelOmni);
        instrument.midi.limitLearning.Set(-1);
        Move({0, 3, 60}, 100);
        Render(1);
        ASSERT_EQ(Down(plugin), 1);
        change();
        Move({0, 3, 60}, 0);
        Render(2);
        EXPECT_EQ(Down(plugin), 0);
        EXPECT_TRUE(instrument.play.heldKeys.Items().empty());
    }
    EXPECT_EQ(instrument.midi.keyFrom.Get(), 0) << "a key that goes up was learned";
}

TEST_F(CLiveKeysTest, AHeldChordOutlivesStopOnlyForAnArpeggiatorAndNothingOutlivesThePanic) {
    CInstrument& instrument = *tracks[0].instrument;
    instrument.keyboardOn.Set(1);
    for (const float arpeggiated : {0.0F, 1.0F}) {
        instrument.arpeggiator.on.Set(arpeggiated);
        Move({0, 0, 60}, 100);
        PlayPatterns();
        Render(1);
        Command(EngineCommand::EKind::kStop);
        Render(1);
        EXPECT_EQ(instrument.play.heldKeys.Items().size(), arpeggiated > 0 ? 1U : 0U);
        Command(EngineCommand::EKind::kStop);
        Render(1);
        EXPECT_TRUE(instrument.play.heldKeys.Items().empty());
        EXPECT_EQ(AllDown(), 0);
    }
}

}  // namespace
}  // namespace quib
