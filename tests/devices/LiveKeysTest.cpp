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

    struct Track {
        std::shared_ptr<CInstrument> instrument;
        std::array<std::shared_ptr<CPlugin>, 2> plugins;
        bool away = false;
    };

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

    void ChangeSetting(CInstrument& instrument) {
        MidiInputSettings& midi = instrument.midi;
        const float on = Draw(2) == 0 ? 0.0F : 1.0F;
        const std::function<void()> changes[] = {
            [&] { instrument.arpeggiator.on.Set(on); },   [&] { midi.transpose.Set(Draw(49) - 24); },
            [&] { midi.keyFrom.Set(Draw(60)); },          [&] { midi.keyTo.Set(40 + Draw(88)); },
            [&] { midi.channel.Set(Draw(5)); },           [&] { midi.priority.Set(Draw(2)); },
            [&] { midi.limitLearning.Set(Draw(3) - 1); }, [&] { instrument.keyboardOn.Set(on); },
            [&] { instrument.strip.mute.Set(on); },       [&] { instrument.swing.Set(on / 2); }};
        changes[Draw(static_cast<int>(std::size(changes)))]();
    }
    void ChangeStructure(Track& track) {
        const std::function<void()> changes[] = {
            [&] { Put(track.instrument->plugin, track.plugins[static_cast<std::size_t>(Draw(2))]); },
            [&] { Put(track.instrument->plugin, nullptr); },
            [&] { track.away = !track.away, PublishTracks(); },
            [&] { Prepare(Draw(2) == 0 ? 64 : 100); },
            [&] { SetPattern(*track.instrument, 0, 3 + Draw(12), EveryStep(3, 50)); },
            [&] {
                const CPlugin::CExclusive changing(*track.plugins[0]);
                Render(1);
            }};
        changes[Draw(static_cast<int>(std::size(changes)))]();
    }
    void Transport(std::uint32_t id, bool mayPlay) {
        using EKind = EngineCommand::EKind;
        const EngineCommand orders[] = {{mayPlay ? EKind::kPlay : EKind::kPanic},
                                        {EKind::kStop},
                                        {EKind::kLocate, 0, Draw(30)},
                                        {EKind::kSelectPattern, id, Draw(2)},
                                        {EKind::kStartPattern, id, Draw(4)}};
        audio.settings.loopOn.Set(static_cast<float>(Draw(2)));
        audio.settings.songMode.Set(static_cast<float>(Draw(2)));
        audio.Post(orders[Draw(static_cast<int>(std::size(orders)))]);
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
            ChangeStructure(tracks[index]);
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
