// SPDX-License-Identifier: GPL-3.0-or-later
// Everything that a user may edit, edited while the engine renders. What goes wrong between the threads
// is reported by ThreadSanitizer and AddressSanitizer; the tests themselves look at what is left over.

#include "EngineFixture.h"

namespace quib {
namespace {

#if defined(QUIB_SANITIZED)
constexpr int kEdits = 8'000;
constexpr int kFewestBlocks = 300;
constexpr int kComparedBlocks = 300;
#else
constexpr int kEdits = 150'000;
constexpr int kFewestBlocks = 1'000;
constexpr int kComparedBlocks = 1'500;
#endif
constexpr int kThreads = 3;
constexpr std::size_t kMostInstruments = 12;

class CEditStressTest : public CEngineTest {
public:
    using Edit = void (CEditStressTest::*)();

    int Draw(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
    float DrawWithin(float low, float high) { return low + (high - low) * static_cast<float>(Draw(1001)) / 1000.0F; }
    bool Chance(int oneOf) { return Draw(oneOf) == 0; }

    CInstrument& AnyInstrument() {
        const InstrumentList& list = *audio.instruments.ForEdit();
        return *list[static_cast<std::size_t>(Draw(static_cast<int>(list.size())))];
    }
    std::shared_ptr<CPlugin> Load(const std::string& name, ESlotKind kind) {
        auto plugin = LoadPlugin(name, kind);
        loaded.push_back(plugin);
        return plugin;
    }
    std::shared_ptr<CInstrument> MakeInstrument() {
        auto instrument = std::make_shared<CInstrument>();
        Put(instrument->plugin, Load(Chance(6) ? "Trouble" : "NoteProbe", ESlotKind::kInstrument));
        Put(instrument->inserts[0], Load("Gain", ESlotKind::kEffect));
        Put(instrument->inserts[1], Load("Mono", ESlotKind::kEffect));
        instrument->midi.channel.Set(kChannelOmni);
        audio.PrepareInstrument(*instrument);
        return instrument;
    }
    PointList Points(float low, float high) {
        PointList points;
        for (int count = Draw(6); count > 0; --count) points.push_back({DrawWithin(0, 16), DrawWithin(low, high)});
        return points;
    }
    void EditNotes() {
        std::vector<Note> notes;
        for (int count = Draw(40); count > 0; --count)
            notes.push_back({DrawWithin(-1, 20), DrawWithin(0, 9), Draw(130) - 1, Draw(128)});
        auto& pattern = AnyInstrument().patterns[static_cast<std::size_t>(Draw(3))];
        Publish(pattern, CPattern(Draw(20), std::move(notes), Draw(4)));
    }
    void EditPoints() {
        CInstrument& instrument = AnyInstrument();
        const int slot = Chance(3) ? CEventLanes::kSongSlot : Draw(3);
        const int mixLane = Draw(kMixLaneCount);
        const LaneDescription& range = MixParameters()[static_cast<std::size_t>(mixLane)];
        Publish(instrument.mixLanes,
                instrument.mixLanes.ForEdit()->With(slot, mixLane, Points(range.minimum, range.maximum)));
        Publish(instrument.midiLanes, instrument.midiLanes.ForEdit()->With(slot, Draw(kMidiLaneCount), Points(0, 127)));
        for (CPublished<PluginSlot>* const place : {&instrument.plugin, &instrument.inserts[0]}) {
            if (const auto& plugin = place->ForEdit()->plugin)
                Publish(plugin->lanes, plugin->lanes.ForEdit()->With(slot, Draw(4), Points(0, 1)));
        }
        Publish(audio.masterLanes,
                audio.masterLanes.ForEdit()->With(CEventLanes::kSongSlot, Draw(kMasterLaneCount), Points(0, 300)));
    }
    void EditPlaylist() {
        Playlist playlist;
        for (int count = Draw(8); count > 0; --count) playlist.push_back({Draw(17), Draw(64) - 1, Draw(2)});
        Publish(AnyInstrument().playlist, std::move(playlist));
    }
    void EditBalls() {
        BallSoundList sounds(static_cast<std::size_t>(Draw(4)));
        for (BallSound& sound : sounds) {
            sound.rate = Draw(4);
            sound.channelSelector = Draw(3);
            sound.controllerX = 1;
            sound.horizontal.push_back({static_cast<EBallTarget>(Draw(4)), Draw(26), 0, DrawWithin(0, 128), 0});
            sound.vertical.push_back({static_cast<EBallTarget>(Draw(4)), Draw(26), DrawWithin(0, 128), 0, 0});
        }
        Publish(AnyInstrument().ballSounds, std::move(sounds));
    }
    void EditInstruments() {
        InstrumentList list = *audio.instruments.ForEdit();
        const auto place = list.begin() + Draw(static_cast<int>(list.size()));
        switch (Draw(4)) {
            case 0:  // away, but kept by undo
                if (list.size() > 3) {
                    removed.push_back(*place);
                    list.erase(place);
                }
                break;
            case 1:
                if (removed.empty()) {
                    if (Chance(20) && list.size() < kMostInstruments) list.push_back(MakeInstrument());
                    break;
                }
                audio.PrepareInstrument(*removed.back());
                list.insert(place, std::move(removed.back()));
                removed.pop_back();
                break;
            case 2:
                std::shuffle(list.begin(), list.end(), random);
                break;
            default:
                if (Chance(20)) removed.clear();  // the history ends: closes the plug-ins for good
                break;
        }
        audio.PublishInstruments(std::move(list));
    }
    void EditPlugins() {
        CInstrument& instrument = AnyInstrument();
        const auto swap = [this](CPublished<PluginSlot>& a, CPublished<PluginSlot>& b) {
            const auto first = a.ForEdit();
            a.Publish(b.ForEdit(), audio.graveyard);
            b.Publish(first, audio.graveyard);
        };
        const auto plugin = instrument.plugin.ForEdit()->plugin;
        switch (Draw(8)) {
            case 0:
                return swap(instrument.inserts[0], instrument.inserts[1]);
            case 1:
                return swap(audio.masterInserts[0], audio.masterInserts[1]);
            case 2:
                return swap(audio.sharedEffects[static_cast<std::size_t>(Draw(kSendCount))],
                            audio.sharedEffects[static_cast<std::size_t>(Draw(kSendCount))]);
            case 3:
                if (Chance(20)) Put(instrument.plugin, Load("NoteProbe", ESlotKind::kInstrument));
                return;
            case 4:
                if (Chance(20)) Put(instrument.inserts[0], Chance(3) ? nullptr : Load("Gain", ESlotKind::kEffect));
                return;
            case 5:
                return plugin->Prepare();
            case 6: {
                plugin->SelectProgram(Draw(3));
                const CPlugin::CExclusive exclusive(*plugin);
                plugin->SetParameter(0, DrawWithin(0, 0.4F));
                return;
            }
            default:
                plugin->SetParameter(Draw(4), DrawWithin(0, 0.4F));
                plugin->IdleEditor();
                plugin->TakeFaultReport();
                return;
        }
    }
    void EditValues() {
        CInstrument& instrument = AnyInstrument();
        SetMixValue(instrument.strip, Draw(kMixParameterCount), DrawWithin(-1, 127));
        instrument.swing.Set(DrawWithin(0, 1));
        instrument.patternUsed[static_cast<std::size_t>(Draw(3))].Set(Draw(2));
        SelectStepNumberMode(instrument, static_cast<EStepNumberMode>(Draw(4)));
        instrument.midi.priority.Set(Draw(2));
        instrument.midi.limitLearning.Set(Draw(3) - 1);
        instrument.keyboardOn.Set(static_cast<float>(Draw(2)));
        for (CValue* const value :
             {&instrument.arpeggiator.mode, &instrument.arpeggiator.ext, &instrument.arpeggiator.extMode})
            value->Set(DrawWithin(0, 3));
        instrument.arpeggiator.on.Set(static_cast<float>(Draw(2)));
        audio.settings.songMode.Set(static_cast<float>(Draw(2)));
        audio.settings.loopOn.Set(static_cast<float>(Draw(2)));
        audio.settings.loopEnd.Set(Draw(32));
        audio.settings.synchroOn.Set(static_cast<float>(Draw(2)));
        audio.settings.tempo.Set(DrawWithin(60, 1000));
        audio.settings.crossfader.Set(DrawWithin(0, 127));
        audio.settings.masterInsertOn[0].Set(static_cast<float>(Draw(2)));
        audio.recordAutomation.Set(static_cast<float>(Draw(2)));
    }
    void EditEqualizer() {
        CInstrument& instrument = AnyInstrument();
        const int band = Draw(kEqBandCount);
        instrument.strip.eqFreq[static_cast<std::size_t>(band)].Set(DrawWithin(0, 1));
        instrument.strip.eqGain[static_cast<std::size_t>(band)].Set(DrawWithin(-1, 1));
        UpdateEqualizer(instrument, band, audio.Format().sampleRate);
    }
    void Drive() {
        const auto kind = Chance(4) ? EngineCommand::EKind::kPlay : static_cast<EngineCommand::EKind>(Draw(8));
        audio.Post({kind, AnyInstrument().Id(), Draw(20) - 1, DrawWithin(0, 127), DrawWithin(0, 127)});
    }
    void Watch() {
        const PlayPicture& picture = audio.Picture();
        ASSERT_LE(picture.instrumentCount, kMostInstruments);
        for (EngineNotice notice; audio.Fetch(notice);) {}
        audio.Scope().Show(true);
        audio.Scope().Arm();
        audio.Scope().Fetch();
        ASSERT_TRUE(std::isfinite(audio.masterPeak[0].Get()) && std::isfinite(audio.CpuLoad()));
        audio.Collect();
    }
    // Another block size and rate, while the device still calls.
    void ChangeFormat() {
        if (Chance(100)) Prepare(64 + Draw(100), kThreads, Chance(2) ? 44100.0 : 48000.0);
    }

    void FillSlots() {
        InstrumentList list;
        for (int count = 0; count < 6; ++count) list.push_back(MakeInstrument());
        audio.PublishInstruments(std::move(list));
        for (auto& insert : audio.masterInserts) Put(insert, Load("Gain", ESlotKind::kEffect));
        for (auto& effect : audio.sharedEffects) Put(effect, Load("Gain", ESlotKind::kEffect));
    }
    void EmptySlots() {
        audio.PublishInstruments({});
        removed.clear();
        for (auto& insert : audio.masterInserts) Put(insert, nullptr);
        for (auto& effect : audio.sharedEffects) Put(effect, nullptr);
        audio.Collect();
    }

    std::mt19937 random{7};
    InstrumentList removed;
    std::vector<std::weak_ptr<CPlugin>> loaded;
};

TEST_F(CEditStressTest, AUserEditsEverythingDuringPlaybackAndNothingIsLeftPending) {
    Prepare(128, kThreads);
    FillSlots();
    constexpr Edit edits[] = {
        &CEditStressTest::EditNotes,  &CEditStressTest::EditPoints,      &CEditStressTest::EditPlaylist,
        &CEditStressTest::EditBalls,  &CEditStressTest::EditInstruments, &CEditStressTest::EditPlugins,
        &CEditStressTest::EditValues, &CEditStressTest::EditEqualizer,   &CEditStressTest::Drive,
        &CEditStressTest::Watch,      &CEditStressTest::ChangeFormat};
    std::atomic<bool> stop{false};
    std::atomic<int> blocks{0};
    std::thread device([&] {
        while (!stop.load(std::memory_order_relaxed))
            blocks.fetch_add(static_cast<int>(audio.RenderBlock()), std::memory_order_relaxed);
    });
    // Brings MIDI in, and now and then calls like a second device that starts while the first one ends.
    std::thread keyboard([&] {
        for (unsigned count = 0; !stop.load(std::memory_order_relaxed); ++count) {
            const auto data = static_cast<std::uint8_t>(count % 128);
            for (const int status : {0x90, 0xb0, 0xe0, 0xd0, 0xc0, 0x80})
                audio.ReceiveMidi({static_cast<std::uint8_t>(status), data, 100, count});
            if (data == 0) audio.RenderBlock();
            std::this_thread::yield();
        }
    });
    for (int edit = 0; edit < kEdits || blocks.load(std::memory_order_relaxed) < kFewestBlocks; ++edit)
        (this->*edits[Draw(std::size(edits))])();
    stop = true;
    device.join();
    keyboard.join();

    EXPECT_GT(loaded.size(), 25U) << "plug-ins came and went";
    EmptySlots();
    EXPECT_EQ(audio.graveyard.Pending(), 0U);
    EXPECT_TRUE(std::all_of(loaded.begin(), loaded.end(), [](const auto& plugin) { return plugin.expired(); }));
    ASSERT_TRUE(audio.RenderBlock());
    EXPECT_TRUE(std::all_of(audio.Master(0), audio.Master(0) + audio.Format().blockSize,
                            [](float sample) { return std::isfinite(sample); }));
}

class CCancellingEditsTest : public CEditStressTest {
public:
    void SetUp() override {
        random.seed(11);
        Prepare(128, 2);
        FillSlots();
        int index = 0;
        for (const auto& instrument : *audio.instruments.ForEdit()) {
            SetPattern(*instrument, 0, 5 + index, EveryStep(5 + index, 40 + index));
            PluginOf(*instrument).SetParameter(0, 0.0F);
            instrument->strip.eqOn.Set(1.0F);
            instrument->strip.eqGain[1].Set(0.7F);
            instrument->strip.insertOn[0].Set(1.0F);
            instrument->strip.sendOn[0].Set(1.0F);
            instrument->strip.sendLevel[0].Set(100.0F);
            instrument->inserts[0].ForEdit()->plugin->SetParameter(0, 0.4F);
            instrument->keyboardOn.Set(1.0F);
            instrument->arpeggiator.on.Set(1.0F);
            instrument->arpeggiator.mode.Set(static_cast<float>(EArpeggiatorOrder::kRandom));
            Publish(instrument->mixLanes, CEventLanes().With(0, 1, {{0.0F, -1.0F}, {4.0F, 1.0F}}));
            audio.PrepareInstrument(*instrument);
            ++index;
        }
        audio.sharedEffects[0].ForEdit()->plugin->SetParameter(0, 0.3F);
        for (const int key : {50, 54, 57}) audio.ReceiveMidi({0x90, static_cast<std::uint8_t>(key), 100, 0});
    }

    // A new object of the same content follows another one.
    template <class T>
    void ThereAndBack(CPublished<T>& place, T other) {
        const T before = *place.ForEdit();
        Publish(place, std::move(other));
        Publish(place, before);
    }
    void EditThereAndBack() {
        const InstrumentList list = *audio.instruments.ForEdit();
        CInstrument& instrument = AnyInstrument();
        ThereAndBack(instrument.patterns[0], CPattern(3, EveryStep(3, 70)));
        ThereAndBack(instrument.mixLanes, CEventLanes().With(0, 0, {{0.0F, 0.0F}}));
        ThereAndBack(instrument.playlist, Playlist{{1, 0, 1}});
        ThereAndBack(instrument.ballSounds, BallSoundList(2));
        ThereAndBack(instrument.plugin, PluginSlot{});
        ThereAndBack(instrument.inserts[0], PluginSlot{});
        ThereAndBack(audio.sharedEffects[0], PluginSlot{});
        InstrumentList shuffled(list.begin() + 2, list.end());
        audio.PublishInstruments(shuffled);
        for (const auto& returning : list) audio.PrepareInstrument(*returning);
        audio.PublishInstruments(list);

        const float level = instrument.strip.level.Get();
        instrument.strip.level.Set(0.0F);
        instrument.strip.level.Set(level);
        const float gain = instrument.strip.eqGain[1].Get();
        for (const float value : {-1.0F, gain}) {
            instrument.strip.eqGain[1].Set(value);
            UpdateEqualizer(instrument, 1, audio.Format().sampleRate);
        }
        CPlugin& insert = *instrument.inserts[0].ForEdit()->plugin;
        {
            const CPlugin::CExclusive exclusive(insert);
            insert.SetParameter(0, 1.0F);
            insert.SetParameter(0, 0.4F);
        }
        insert.Prepare();
        if (Chance(10)) Prepare(128, 1 + Draw(4));
    }

    std::vector<float> Play(bool edited) {
        std::vector<float> samples;
        PlayPatterns();
        for (int block = 0; block < kComparedBlocks; ++block) {
            if (edited) EditThereAndBack();
            EXPECT_TRUE(audio.RenderBlock());
            samples.insert(samples.end(), audio.Master(0), audio.Master(0) + 128);
            samples.insert(samples.end(), audio.Master(1), audio.Master(1) + 128);
            audio.Collect();
        }
        return samples;
    }
};

// Two engines, one after the other, in one process: the second takes the place of the first.
class CPlainRun : public CCancellingEditsTest {
public:
    explicit CPlainRun(bool withEdits) : edited(withEdits) {}
    std::vector<float> Run() {
        SetUp();
        return Play(edited);
    }

private:
    void TestBody() override {}
    bool edited;
};

TEST(CancellingEdits, EditsThatCancelOutLeaveEverySampleAsItIs) {
    const std::vector<float> plain = CPlainRun(false).Run();
    const std::vector<float> edited = CPlainRun(true).Run();
    ASSERT_EQ(plain.size(), edited.size());
    const auto difference = std::mismatch(plain.begin(), plain.end(), edited.begin());
    EXPECT_EQ(difference.first, plain.end()) << "first difference at " << difference.first - plain.begin();
    EXPECT_GT(*std::max_element(plain.begin(), plain.end()), 0.01F);
}

}  // namespace
}  // namespace quib
