// SPDX-License-Identifier: GPL-3.0-or-later
// Every change of the workstation on a real project: what it does, that undo takes it back and redo brings
// it again, and that a session comes back from its file.
#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QThread>

#include "document/CAutomationTake.h"
#include "document/CGesture.h"
#include "document/DocumentFixture.h"
#include "model/edits/LaneShapes.h"
#include "platform/CFileBytes.h"

namespace quib {
namespace {

class WorkstationTest : public DocumentTest {
protected:
    // The project as its file would have it, short enough to be printed.
    struct Content {
        std::string bytes;

        bool operator==(const Content&) const = default;
        friend void PrintTo(const Content& content, std::ostream* out) {
            *out << content.bytes.size() << " bytes, hash " << std::hash<std::string>()(content.bytes);
        }
    };
    Content Image() {
        CRecordWriter writer;
        WriteProject(writer, Session().GatherState());
        return {{writer.Bytes().data(), writer.Bytes().size()}};
    }

    // Runs an edit and checks that it is one step of that name, that undo restores the project to the last
    // bit, and that redo makes it again.
    void ExpectUndoable(const char* name, const std::function<void()>& edit) {
        SCOPED_TRACE(name);
        const Content before = Image();
        const int steps = Steps().index();
        edit();
        const Content after = Image();
        EXPECT_NE(before, after) << "the edit changed nothing";
        EXPECT_EQ(Steps().index(), steps + 1);
        EXPECT_EQ(UndoText(), name);
        Steps().undo();
        EXPECT_EQ(Image(), before);
        Steps().redo();
        EXPECT_EQ(Image(), after);
    }

    void Move(CValue& value, float next, const char* name) {
        const float before = value.Get();
        value.Set(next);
        workstation->Changes().ValueEdited(EnginePart(value), before, next, QLatin1String(name));
    }
};

TEST_F(WorkstationTest, EveryEditIsAStepThatGoesBackAndForth) {
    AddSynth();
    AddSynth();
    const std::uint32_t id = At(0)->Id();
    QString error;
    const SlotPlace insert{SlotPlace::EKind::kInsert, id, 0};
    ExpectUndoable("Add instrument", [&] { AddSynth(); });
    At(2)->title = "third";
    ExpectUndoable("Move instrument", [&] { Stack().MoveInstrument(2, 0); });
    ExpectUndoable("Rename instrument", [&] { Stack().RenameInstrument(0, "Lead"); });
    ExpectUndoable("Change icon", [&] { Stack().SetIcon(0, 7); });
    ExpectUndoable("Colour strip", [&] { Stack().SetStripColour(0, QColor(1, 2, 3)); });
    ExpectUndoable("Collapse strip", [&] { Stack().SetCollapsed(0, true); });
    ExpectUndoable("Draw", [&] { Contents().SetPattern(id, 0, SomePattern(60), "Draw"); });
    ExpectUndoable("Copy pattern", [&] { Contents().CopyPattern(Stack().IndexOf(id), 0, 3); });
    ExpectUndoable("Select pattern", [&] { Contents().SelectPattern(0, 5); });
    ExpectUndoable("Song", [&] {
        Contents().SetPlaylist(id, std::make_shared<const Playlist>(Playlist{{0, 0, 1}, {3, 32, 0}}), "Song");
    });
    ExpectUndoable("Song length", [&] { Contents().SetPlaylistSteps(64); });
    const auto points = std::make_shared<const CEventLanes>(CEventLanes().With(CEventLanes::kSongSlot, 0, {{2, 0.5F}}));
    ExpectUndoable("Points", [&] { Contents().SetLanes(id, ELanes::kMix, points, "Points"); });
    ExpectUndoable("Master points", [&] { Contents().SetMasterLanes(points, "Master points"); });
    ExpectUndoable("Ball", [&] { Contents().SetBallSounds(id, std::make_shared<const BallSoundList>(1), "Ball"); });
    ExpectUndoable("Pattern order", [&] { Contents().SetStepNumberMode(0, EStepNumberMode::kRandom); });
    ExpectUndoable("Level", [&] { Move(At(0)->strip.level, 12, "Level"); });
    ExpectUndoable("Tempo", [&] { Move(workstation->Audio().settings.tempo, 99, "Tempo"); });
    ExpectUndoable("Load plug-in",
                   [&] { EXPECT_TRUE(Places().LoadPlugin(insert, "QUIB reverb", error)) << error.toStdString(); });
    ExpectUndoable("Plug-in parameter", [&] {
        const auto plugin = Places().Slot(insert)->plugin;
        const float before = plugin->Parameter(0);
        plugin->SetParameter(0, before > 0.5F ? 0.1F : 0.9F);
        Places().ParameterEdited(plugin, 0, before, before > 0.5F ? 0.1F : 0.9F);
    });
    ExpectUndoable("Select program", [&] { Places().SelectProgram(Places().Slot(insert)->plugin, 2); });
    ExpectUndoable("Clear plug-in", [&] { Places().ClearPlugin(insert); });
    ExpectUndoable("Add preset", [&] { workstation->Presets().AddPreset(0); });
    ExpectUndoable("Paste to preset", [&] {
        At(0)->strip.pan.Set(0.25F);
        workstation->Presets().PastePreset(0, 0);
        At(0)->strip.pan.Set(0);
    });
    ExpectUndoable("Remove preset", [&] { workstation->Presets().RemovePreset(0, 0); });
    ExpectUndoable("Preset MIDI assignment", [&] { workstation->Presets().SetPresetMidi(3, 36, 1); });
    ExpectUndoable("Duplicate instrument", [&] { Stack().DuplicateInstrument(0); });
    Contents().SetLanes(At(0)->Id(), ELanes::kPlugin, points, "Points");
    ExpectUndoable("Reset instrument", [&] { Stack().ResetInstrument(0); });
    EXPECT_EQ(PluginAt(0).lanes.ForEdit()->Find(CEventLanes::kSongSlot, 0), nullptr);
    ExpectUndoable("Number of steps", [&] { Contents().SetSteps(0, 4, 48); });
    ExpectUndoable("Load plug-in", [&] {
        EXPECT_TRUE(Places().LoadPlugin({SlotPlace::EKind::kInsert, At(0)->Id(), 1}, "QUIB chorus", error));
        EXPECT_TRUE(At(0)->strip.insertOn[1].IsOn());
    });
    ExpectUndoable("Remove instrument", [&] { Stack().RemoveInstrument(0); });
    while (Steps().canUndo()) Steps().undo();
    EXPECT_TRUE(Stack().Instruments().empty());
}

TEST_F(WorkstationTest, UndoOfARemovalBringsTheSamePluginBackInItsStateAndReadyForTheDeviceOfNow) {
    const int index = AddSynth();
    CPlugin* const plugin = &PluginAt(index);
    plugin->SetParameter(1, 0.125F);
    Stack().RemoveInstrument(index);
    workstation->Tick();
    EXPECT_TRUE(Stack().Instruments().empty());
    workstation->Audio().Prepare({48000.0, 256, 1, false});
    Steps().undo();
    ASSERT_EQ(&PluginAt(index), plugin);
    EXPECT_NEAR(plugin->Parameter(1), 0.125F, 1e-3F);
    EXPECT_TRUE(plugin->IsPrepared());
    EXPECT_EQ(At(index)->preparedRate, 48000.0);
}

TEST_F(WorkstationTest, WheelTurnsOfOneValueAreOneStep) {
    AddSynth();
    CValue& level = At(0)->strip.level;
    const int steps = Steps().index();
    const float start = level.Get();
    for (int turn = 1; turn <= 5; ++turn) Move(level, 50.0F + static_cast<float>(turn), "Level");
    EXPECT_EQ(Steps().index(), steps + 1);
    Move(At(0)->strip.pan, 0.5F, "Pan");
    EXPECT_EQ(Steps().index(), steps + 2) << "another value is another step";
    QThread::msleep(650);
    Move(At(0)->strip.pan, 0.75F, "Pan");
    EXPECT_EQ(Steps().index(), steps + 3) << "a later gesture is a step of its own";
    while (Steps().index() > steps) Steps().undo();
    EXPECT_EQ(level.Get(), start);
    EXPECT_EQ(At(0)->strip.pan.Get(), 0.0F);
}

TEST_F(WorkstationTest, TheEqualiserSoundsLikeItsControlsAfterEditAndUndo) {
    AddSynth();
    CInstrument& instrument = *At(0);
    for (EqBandUpdate old; instrument.eqPending.TryPop(old);) {}
    const auto newest = [&] {
        EqBandUpdate update;
        bool any = false;
        while (instrument.eqPending.TryPop(update)) any = true;
        EXPECT_TRUE(any) << "the engine was not told";
        return EqResponseDecibels(update, EqFrequencyHertz(instrument.strip.eqFreq[1].Get()), 44100.0);
    };
    const EqBandSettings before{instrument.strip.eqFreq[1].Get(), instrument.strip.eqQ[1].Get(), 0};
    instrument.strip.eqGain[1].Set(0.5F);
    Stack().EqualizerEdited(At(0), 1, before);
    EXPECT_NEAR(newest(), 10.0, 0.1);
    Steps().undo();
    EXPECT_NEAR(newest(), 0.0, 0.1);
}

TEST_F(WorkstationTest, SoloIsExclusiveOrAddsUp) {
    for (int i = 0; i < 3; ++i) AddSynth();
    const auto heard = [this] {
        std::string mask;
        for (const auto& entry : Stack().Instruments()) mask += entry->strip.soloMuted.IsOn() ? '-' : 'x';
        return mask;
    };
    Stack().ToggleSolo(0);
    EXPECT_EQ(heard(), "x--");
    Stack().ToggleSolo(2);
    EXPECT_EQ(heard(), "--x");
    settings.SetOn("SoloCumulMode", true);
    Stack().ToggleSolo(1);
    EXPECT_EQ(heard(), "-xx");
    Stack().MoveInstrument(2, 0);
    EXPECT_EQ(heard(), "x-x");
    Stack().RemoveInstrument(0);
    EXPECT_EQ(heard(), "-x");
    Stack().RemoveInstrument(1);
    EXPECT_EQ(heard(), "x") << "nothing is silent for an instrument that is gone";
    Steps().undo();
    Stack().ToggleSolo(1);
    EXPECT_EQ(heard(), "xx");
}

TEST_F(WorkstationTest, LevelIsOffOnLoadingWhenTheUserWantsIt) {
    settings.SetOn("LevelOffWhenLoadingInst", true);
    EXPECT_EQ(At(AddSynth())->strip.level.Get(), 0.0F);
}

TEST_F(WorkstationTest, WrongPluginsAndFilesAreToldOnceAndChangeNothing) {
    AddSynth();
    Steps().setClean();
    QString error;
    EXPECT_EQ(Stack().AddInstrument("QUIB reverb", error), -1);
    EXPECT_EQ(told, "QUIB: This plugin is not a synth category !");
    EXPECT_TRUE(error.isEmpty()) << "it would be told twice";
    EXPECT_EQ(Stack().AddInstrument("Nowhere", error), -1);
    EXPECT_FALSE(error.isEmpty());
    QFile bad(File("bad.prg"));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("nothing of the kind");
    bad.close();
    QStringList errors;
    const auto refused = [&](bool loaded) {
        EXPECT_FALSE(loaded);
        errors.append(std::exchange(error, QString()));
    };
    error.clear();
    refused(Session().LoadProject(bad.fileName(), error));
    refused(Stack().LoadInstrument(0, bad.fileName(), error));
    refused(Contents().LoadPattern(0, bad.fileName(), error));
    refused(Places().LoadBank(Place(0), bad.fileName(), error));
    refused(Places().LoadProgram(Place(0), bad.fileName(), error));
    EXPECT_TRUE(errors[1].contains(bad.fileName() + ": not an instrument file")) << errors[1].toStdString();
    EXPECT_EQ(errors.filter("No Compatible File !").size(), 2);
    EXPECT_FALSE(errors.contains(QString())) << "one of them said nothing";
    EXPECT_EQ(Stack().Instruments().size(), 1U);
    EXPECT_FALSE(Session().IsModified());
}

TEST_F(WorkstationTest, BanksGoToFilesAndBackWithUndo) {
    AddSynth();
    QString error;
    ASSERT_TRUE(Places().SaveBank(Place(0), File("a.fxb"), error)) << error.toStdString();
    ASSERT_TRUE(Places().SaveProgram(Place(0), File("a.fxp"), error));
    const StateImage original = PluginAt(0).SaveBank();
    for (const bool bank : {true, false}) {
        PluginAt(0).SetParameter(0, 0.9F);
        PluginAt(0).SetParameter(1, 0.1F);
        const StateImage changed = PluginAt(0).SaveBank();
        ASSERT_NE(changed, original);
        const bool loaded = bank ? Places().LoadBank(Place(0), File("a.fxb"), error)
                                 : Places().LoadProgram(Place(0), File("a.fxp"), error);
        ASSERT_TRUE(loaded) << error.toStdString();
        EXPECT_EQ(PluginAt(0).SaveBank(), original);
        Steps().undo();
        EXPECT_EQ(PluginAt(0).SaveBank(), changed);
        Steps().redo();
        EXPECT_EQ(PluginAt(0).SaveBank(), original);
    }
}

TEST_F(WorkstationTest, ARecalledPresetChangesEverythingAndUndoTakesItBack) {
    AddSynth();
    workstation->Presets().AddPreset(0);
    const Content before = Image();
    At(0)->strip.level.Set(5);
    PluginAt(0).SetParameter(0, 0.77F);
    Contents().SetPattern(At(0)->Id(), 2, SomePattern(50), "Draw");
    const Content changed = Image();
    workstation->Presets().RecallPreset(0, 0);
    for (int i = 0; i < 4; ++i) workstation->Tick();
    EXPECT_EQ(Image(), before);
    Steps().undo();
    for (int i = 0; i < 4; ++i) workstation->Tick();
    EXPECT_EQ(Image(), changed);

    QSignalSpy notices(workstation.get(), &CWorkstation::Notice);
    for (int click = 0; click < 2; ++click) {
        EXPECT_FALSE(workstation->Presets().RecallPresets(0));
        EXPECT_FALSE(workstation->Presets().RecallPresets(0, CPresets::EOrigin::kMidi));
    }
    EXPECT_EQ(notices.size(), 2) << "told to whoever clicks, and not at every note";
    EXPECT_EQ(Image(), changed) << "presets are off";
    settings.SetOn("PresetOn", true);
    EXPECT_TRUE(workstation->Presets().RecallPresets(0));
    for (int i = 0; i < 4; ++i) workstation->Tick();
    EXPECT_EQ(workstation->Presets().SelectedPreset().Get(), 1) << "numbers are shown from 1";
    EXPECT_EQ(workstation->Presets().Recalled(At(0)->Id()), 1);
    EXPECT_EQ(UndoText(), "Select preset");
    Steps().undo();
    EXPECT_EQ(workstation->Presets().SelectedPreset().Get(), 0);
    EXPECT_EQ(workstation->Presets().Recalled(At(0)->Id()), 0);
}

TEST_F(WorkstationTest, AProjectGoesOnHoldingTheKeysThatItCameWith) {
    workstation->Audio().Prepare({44100.0, 256, 1, false});
    QString error;
    ASSERT_TRUE(Session().LoadProject(QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg"), error));
    std::vector<std::vector<std::int32_t>> loaded;
    for (const auto& instrument : Stack().Instruments()) loaded.push_back(Stack().HeldKeysOf(*instrument));
    ASSERT_TRUE(std::any_of(loaded.begin(), loaded.end(), [](const auto& keys) { return !keys.empty(); }));
    for (int block = 0; block < 4; ++block) workstation->Audio().RenderBlock();
    workstation->Tick();
    for (std::size_t index = 0; index < loaded.size(); ++index) {
        EXPECT_EQ(Stack().HeldKeysOf(*At(static_cast<int>(index))), loaded[index]) << index;
    }
}

TEST_F(WorkstationTest, APresetPressesTheKeysThatItHolds) {
    AddSynth();
    CAudio& audio = workstation->Audio();
    audio.Prepare({44100.0, 256, 1, false});
    At(0)->keyboardOn.Set(1.0F);
    const auto heldAfter = [&](const std::function<void()>& action) {
        action();
        for (int block = 0; block < 4; ++block) audio.RenderBlock();
        auto keys = Stack().HeldKeysOf(*At(0));
        std::sort(keys.begin(), keys.end());
        return keys;
    };
    using Keys = std::vector<std::int32_t>;
    CTransportControl& transport = workstation->Transport();
    heldAfter([&] { transport.PlayKey(At(0)->Id(), 60, 100); });
    workstation->Presets().AddPreset(0);
    const Keys users = heldAfter([&] {
        transport.PlayKey(At(0)->Id(), 60, 0);
        transport.PlayKey(At(0)->Id(), 64, 100);
    });
    ASSERT_EQ(users, (Keys{64}));
    workstation->Presets().AddPreset(0);
    EXPECT_EQ(heldAfter([&] { workstation->Presets().RecallPreset(0, 0); }), (Keys{60, 64}));
    EXPECT_EQ(heldAfter([&] { workstation->Presets().RecallPreset(0, 1); }), (Keys{64})) << "the user's stays";
}

TEST_F(WorkstationTest, LoadedInstrumentsFollowTheSettingOfTheirLevelAndTitlesStayWhole) {
    AddSynth();
    QString error;
    ASSERT_TRUE(Stack().SaveInstrument(0, File("lead.ist"), error));
    settings.SetOn(QStringLiteral("LevelOffWhenLoadingInst"), true);
    ASSERT_TRUE(Stack().LoadInstrument(0, File("lead.ist"), error)) << error.toStdString();
    EXPECT_EQ(At(0)->strip.level.Get(), 0);
    Stack().RenameInstrument(0, "Lead; soft\n");
    EXPECT_EQ(At(0)->title, "Lead soft");
}

TEST_F(WorkstationTest, AGestureIsHeardAtEachMoveAndIsOneStepOrNone) {
    AddSynth();
    AddSynth();
    const auto instrument = At(1);
    const Content before = Image();
    CChanges& changes = workstation->Changes();
    const int steps = changes.Steps().index();
    std::vector<Change> heard;
    const auto listening =
        QObject::connect(&changes, &CChanges::Changed, [&](const Change& change) { heard.push_back(change); });
    const auto drag = [&](CGesture& gesture) {
        for (int move = 1; move <= 60; ++move) {
            gesture.Publish(PatternPlace(instrument, 2), SomePattern(20 + move));
            gesture.Set(Part(instrument, instrument->swing), static_cast<float>(move) / 100);
            EXPECT_EQ(instrument->patterns[2].ForRender().Notes()[0].key, 20 + move) << "not heard at once";
        }
    };
    {
        CGesture abandoned(changes);
        drag(abandoned);
        EXPECT_NE(Image(), before);
    }
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(changes.Steps().index(), steps);
    heard.clear();
    ExpectUndoable("Drag", [&] {
        CGesture gesture(changes);
        drag(gesture);
        EXPECT_EQ(heard.size(), 60U);
        EXPECT_TRUE(std::all_of(heard.begin(), heard.end(), [&](const Change& change) {
            return change.kind == EChange::kPattern && change.instrument == instrument->Id() && change.index == 2;
        }));
        gesture.Finish("Drag");
        gesture.Cancel();
    });
    QObject::disconnect(listening);
    CGesture empty(changes);
    empty.Finish("Nothing");
    EXPECT_EQ(UndoText(), "Drag");
    for (int nudge = 0; nudge < 5; ++nudge) {
        CGesture gesture(changes);
        gesture.Publish(PatternPlace(instrument, 2), SomePattern(90 + nudge));
        gesture.Finish("Nudge", instrument.get());
    }
    EXPECT_EQ(changes.Steps().index(), steps + 2) << "held arrows are one step";
    changes.Steps().undo();
    EXPECT_EQ(instrument->patterns[2].ForEdit()->Notes()[0].key, 80);
}

TEST_F(WorkstationTest, PassesOfAMidiLaneAreMergedAndOneStep) {
    AddSynth();
    CAutomationTake take;
    const CInstrument& instrument = *At(0);
    const PlayPicture stopped;
    const auto pass = [&](const PointList& points) {
        for (const Point& point : points) {
            take.Take(At(0), {4, kModulationWheelLane}, point);
            take.Tick(stopped, false, workstation->Audio().graveyard);
        }
    };
    const auto lane = [&] {
        const PointList* const points = instrument.midiLanes.ForEdit()->Find(4, kModulationWheelLane);
        return points != nullptr ? *points : PointList();
    };
    const auto expect = [&](const PointList& wanted) {
        ASSERT_EQ(lane().size(), wanted.size());
        for (std::size_t index = 0; index < wanted.size(); ++index) {
            EXPECT_EQ(lane()[index].x, wanted[index].x);
            EXPECT_NEAR(lane()[index].y, wanted[index].y, 127 * kRecordingTolerance);
        }
    };
    // What is not after the last one is dropped.
    pass({{1, 10}, {2, 20}, {3, 80}, {3, 90}, {2.9F, 70}});
    expect({{1, 10}, {2, 20}, {3, 80}});
    pass({{1.5F, 60}, {2.25F, 60}});
    expect({{1, 10}, {1.5F, 15}, {1.5F, 60}, {2.25F, 60}, {2.25F, 35}, {3, 80}});
    const int steps = Steps().index();
    CGesture gesture(workstation->Changes());
    take.AddTo(gesture);
    gesture.Finish("Record automation");
    const PointList recorded = lane();
    EXPECT_EQ(Steps().index(), steps + 1);
    Steps().undo();
    EXPECT_TRUE(lane().empty());
    Steps().redo();
    EXPECT_EQ(lane(), recorded);
}

TEST_F(WorkstationTest, PlaysRecordsAndEditsOnTheSilentOutput) {
    QString error;
    ASSERT_TRUE(workstation->OpenOutput("Silent")) << told.toStdString();
    workstation->Audio().settings.songMode.Set(0);
    AddSynth();
    Contents().SetPattern(At(0)->Id(), 0, SomePattern(60), "Draw");
    ASSERT_TRUE(workstation->Recording().Start(File("take.wav")))
        << workstation->Recording().ProgressText().toStdString();
    workstation->Transport().Play();
    const auto wait = [&](const std::function<bool()>& isTrue) {
        for (int i = 0; i < 500 && !isTrue(); ++i) {
            workstation->Tick();
            QThread::msleep(10);
        }
        return isTrue();
    };
    EXPECT_TRUE(wait(
        [&] { return workstation->Transport().IsPlaying() && workstation->Audio().masterPeak[0].Get() > 0.001F; }));
    Stack().RemoveInstrument(0);
    Steps().undo();
    EXPECT_TRUE(wait([&] { return workstation->Recording().Seconds() > 0.5; }));
    workstation->Recording().Stop();
    workstation->Transport().Stop();
    EXPECT_TRUE(wait([&] { return !workstation->Recording().IsRecording() && !workstation->Transport().IsPlaying(); }));
    EXPECT_GT(QFileInfo(File("take.wav")).size(), 60000);
    EXPECT_FALSE(workstation->Recording().Start(File("nowhere/take.wav")));
    EXPECT_EQ(workstation->Recording().ProgressText(), "Error !");
}

}  // namespace
}  // namespace quib
