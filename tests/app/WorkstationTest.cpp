// SPDX-License-Identifier: GPL-3.0-or-later
// Every change of the workstation on a real project: what it does, that undo takes it back and redo brings
// it again, and that a session comes back from its file.
#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QThread>
#include <future>

#include "app/AppFixture.h"
#include "document/CAutomationTake.h"
#include "platform/CFileBytes.h"

namespace quib {
namespace {

class WorkstationTest : public AppTest {
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
        WriteProject(writer, workstation->Session().GatherState());
        return {{writer.Bytes().data(), writer.Bytes().size()}};
    }

    // Runs an edit and checks that it is one step of that name, that undo restores the project to the last
    // bit, and that redo makes it again.
    void ExpectUndoable(const char* name, const std::function<void()>& edit) {
        SCOPED_TRACE(name);
        const Content before = Image();
        const int steps = workstation->Changes().Steps().index();
        edit();
        const Content after = Image();
        EXPECT_NE(before, after) << "the edit changed nothing";
        EXPECT_EQ(workstation->Changes().Steps().index(), steps + 1);
        EXPECT_EQ(UndoText(), name);
        workstation->Changes().Steps().undo();
        EXPECT_EQ(Image(), before);
        workstation->Changes().Steps().redo();
        EXPECT_EQ(Image(), after);
    }

    void Move(CValue& value, float next, const char* name) {
        const float before = value.Get();
        value.Set(next);
        workstation->Changes().ValueEdited(EnginePart(value), before, next, QLatin1String(name));
    }
};

std::shared_ptr<const CPattern> SomePattern(int key) {
    return std::make_shared<const CPattern>(16, std::vector<Note>{{0, 1, key, 100}, {4, 1, key + 7, 90}});
}

TEST_F(WorkstationTest, EveryEditIsAStepThatGoesBackAndForth) {
    AddSynth();
    AddSynth();
    const std::uint32_t id = At(0)->Id();
    QString error;
    const SlotPlace insert{SlotPlace::EKind::kInsert, id, 0};
    ExpectUndoable("Add instrument", [&] { AddSynth(); });
    At(2)->title = "third";
    ExpectUndoable("Move instrument", [&] { workstation->Stack().MoveInstrument(2, 0); });
    ExpectUndoable("Rename instrument", [&] { workstation->Stack().RenameInstrument(0, "Lead"); });
    ExpectUndoable("Change icon", [&] { workstation->Stack().SetIcon(0, 7); });
    ExpectUndoable("Colour strip", [&] { workstation->Stack().SetStripColour(0, QColor(1, 2, 3)); });
    ExpectUndoable("Collapse strip", [&] { workstation->Stack().SetCollapsed(0, true); });
    ExpectUndoable("Draw", [&] { workstation->Contents().SetPattern(id, 0, SomePattern(60), "Draw"); });
    ExpectUndoable("Copy pattern",
                   [&] { workstation->Contents().CopyPattern(workstation->Stack().IndexOf(id), 0, 3); });
    ExpectUndoable("Select pattern", [&] { workstation->Contents().SelectPattern(0, 5); });
    ExpectUndoable("Song", [&] {
        workstation->Contents().SetPlaylist(id, std::make_shared<const Playlist>(Playlist{{0, 0, 1}, {3, 32, 0}}),
                                            "Song");
    });
    ExpectUndoable("Song length", [&] { workstation->Contents().SetPlaylistSteps(64); });
    ExpectUndoable("Points", [&] {
        workstation->Contents().SetLanes(
            id, ELanes::kMix, std::make_shared<const CEventLanes>(CEventLanes().With(0, 1, {{2, 0.5F}})), "Points");
    });
    ExpectUndoable("Master points", [&] {
        workstation->Contents().SetMasterLanes(
            std::make_shared<const CEventLanes>(CEventLanes().With(CEventLanes::kSongSlot, 0, {{2, 100}})),
            "Master points");
    });
    ExpectUndoable(
        "Ball", [&] { workstation->Contents().SetBallSounds(id, std::make_shared<const BallSoundList>(1), "Ball"); });
    ExpectUndoable("Pattern order", [&] { workstation->Contents().SetStepNumberMode(0, EStepNumberMode::kRandom); });
    ExpectUndoable("Level", [&] { Move(At(0)->strip.level, 12, "Level"); });
    ExpectUndoable("Tempo", [&] { Move(workstation->Audio().settings.tempo, 99, "Tempo"); });
    ExpectUndoable("Load plug-in", [&] {
        EXPECT_TRUE(workstation->Places().LoadPlugin(insert, "QUIB reverb", error)) << error.toStdString();
    });
    ExpectUndoable("Plug-in parameter", [&] {
        const auto plugin = workstation->Places().Slot(insert)->plugin;
        const float before = plugin->Parameter(0);
        plugin->SetParameter(0, before > 0.5F ? 0.1F : 0.9F);
        workstation->Places().ParameterEdited(plugin, 0, before, before > 0.5F ? 0.1F : 0.9F);
    });
    ExpectUndoable("Select program",
                   [&] { workstation->Places().SelectProgram(workstation->Places().Slot(insert)->plugin, 2); });
    ExpectUndoable("Clear plug-in", [&] { workstation->Places().ClearPlugin(insert); });
    ExpectUndoable("Add preset", [&] { workstation->Presets().AddPreset(0); });
    ExpectUndoable("Paste to preset", [&] {
        At(0)->strip.pan.Set(0.25F);
        workstation->Presets().PastePreset(0, 0);
        At(0)->strip.pan.Set(0);
    });
    ExpectUndoable("Remove preset", [&] { workstation->Presets().RemovePreset(0, 0); });
    ExpectUndoable("Preset MIDI assignment", [&] { workstation->Presets().SetPresetMidi(3, 36, 1); });
    ExpectUndoable("Duplicate instrument", [&] { workstation->Stack().DuplicateInstrument(0); });
    ExpectUndoable("Reset instrument", [&] { workstation->Stack().ResetInstrument(0); });
    ExpectUndoable("Remove instrument", [&] { workstation->Stack().RemoveInstrument(0); });
    while (workstation->Changes().Steps().canUndo()) workstation->Changes().Steps().undo();
    EXPECT_TRUE(workstation->Stack().Instruments().empty());
}

TEST_F(WorkstationTest, UndoOfARemovalBringsTheSamePluginBackInItsState) {
    const int index = AddSynth();
    CPlugin* const plugin = &PluginAt(index);
    plugin->SetParameter(1, 0.125F);
    workstation->Stack().RemoveInstrument(index);
    workstation->Tick();
    EXPECT_TRUE(workstation->Stack().Instruments().empty());
    workstation->Changes().Steps().undo();
    ASSERT_EQ(&PluginAt(index), plugin);
    EXPECT_NEAR(plugin->Parameter(1), 0.125F, 1e-3F);
    EXPECT_TRUE(plugin->IsPrepared());
}

TEST_F(WorkstationTest, APluginThatMissedAChangeOfTheDeviceIsMadeReadyWhenItReturns) {
    const int index = AddSynth();
    workstation->Stack().RemoveInstrument(index);
    workstation->Audio().Prepare({48000.0, 256, 1, false});
    workstation->Changes().Steps().undo();
    EXPECT_TRUE(PluginAt(index).IsPrepared());
    EXPECT_EQ(At(index)->preparedRate, 48000.0);
}

TEST_F(WorkstationTest, WheelTurnsOfOneValueAreOneStep) {
    AddSynth();
    CValue& level = At(0)->strip.level;
    const int steps = workstation->Changes().Steps().index();
    const float start = level.Get();
    for (int turn = 1; turn <= 5; ++turn) Move(level, 50.0F + static_cast<float>(turn), "Level");
    EXPECT_EQ(workstation->Changes().Steps().index(), steps + 1);
    Move(At(0)->strip.pan, 0.5F, "Pan");
    EXPECT_EQ(workstation->Changes().Steps().index(), steps + 2) << "another value is another step";
    QThread::msleep(650);
    Move(At(0)->strip.pan, 0.75F, "Pan");
    EXPECT_EQ(workstation->Changes().Steps().index(), steps + 3) << "a later gesture is a step of its own";
    while (workstation->Changes().Steps().index() > steps) workstation->Changes().Steps().undo();
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
    workstation->Stack().EqualizerEdited(At(0), 1, before);
    EXPECT_NEAR(newest(), 10.0, 0.1);
    workstation->Changes().Steps().undo();
    EXPECT_NEAR(newest(), 0.0, 0.1);
}

TEST_F(WorkstationTest, SoloIsExclusiveOrAddsUp) {
    for (int i = 0; i < 3; ++i) AddSynth();
    const auto heard = [this] {
        std::string mask;
        for (const auto& entry : workstation->Stack().Instruments()) mask += entry->strip.soloMuted.IsOn() ? '-' : 'x';
        return mask;
    };
    workstation->Stack().ToggleSolo(0);
    EXPECT_EQ(heard(), "x--");
    workstation->Stack().ToggleSolo(2);
    EXPECT_EQ(heard(), "--x");
    settings.SetOn("SoloCumulMode", true);
    workstation->Stack().ToggleSolo(1);
    EXPECT_EQ(heard(), "-xx");
    workstation->Stack().MoveInstrument(2, 0);
    EXPECT_EQ(heard(), "x-x");
    workstation->Stack().RemoveInstrument(0);
    EXPECT_EQ(heard(), "-x");
    workstation->Stack().RemoveInstrument(1);
    EXPECT_EQ(heard(), "x") << "nothing is silent for an instrument that is gone";
    workstation->Changes().Steps().undo();
    workstation->Stack().ToggleSolo(1);
    EXPECT_EQ(heard(), "xx");
}

TEST_F(WorkstationTest, LevelIsOffOnLoadingWhenTheUserWantsIt) {
    settings.SetOn("LevelOffWhenLoadingInst", true);
    EXPECT_EQ(At(AddSynth())->strip.level.Get(), 0.0F);
}

TEST_F(WorkstationTest, WrongPluginsAndFilesAreToldOnceAndChangeNothing) {
    AddSynth();
    workstation->Changes().Steps().setClean();
    QString error;
    EXPECT_EQ(workstation->Stack().AddInstrument("QUIB reverb", error), -1);
    EXPECT_EQ(told, "QUIB: This plugin is not a synth category !");
    EXPECT_TRUE(error.isEmpty()) << "it would be told twice";
    EXPECT_EQ(workstation->Stack().AddInstrument("Nowhere", error), -1);
    EXPECT_FALSE(error.isEmpty());
    QFile bad(File("bad.prg"));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("nothing of the kind");
    bad.close();
    for (const auto& load :
         {std::function<bool()>([&] { return workstation->Session().LoadProject(bad.fileName(), error); }),
          std::function<bool()>([&] { return workstation->Stack().LoadInstrument(0, bad.fileName(), error); }),
          std::function<bool()>([&] { return workstation->Contents().LoadPattern(0, bad.fileName(), error); }),
          std::function<bool()>([&] { return workstation->Places().LoadBank(Place(0), bad.fileName(), error); })}) {
        error.clear();
        EXPECT_FALSE(load());
        EXPECT_FALSE(error.isEmpty());
    }
    EXPECT_EQ(workstation->Stack().Instruments().size(), 1U);
    EXPECT_FALSE(workstation->Session().IsModified());
}

TEST_F(WorkstationTest, BanksGoToFilesAndBackWithUndo) {
    AddSynth();
    QString error;
    ASSERT_TRUE(workstation->Places().SaveBank(Place(0), File("a.fxb"), error)) << error.toStdString();
    ASSERT_TRUE(workstation->Places().SaveProgram(Place(0), File("a.fxp"), error));
    const StateImage original = PluginAt(0).SaveBank();
    for (const bool bank : {true, false}) {
        PluginAt(0).SetParameter(0, 0.9F);
        PluginAt(0).SetParameter(1, 0.1F);
        const StateImage changed = PluginAt(0).SaveBank();
        ASSERT_NE(changed, original);
        const bool loaded = bank ? workstation->Places().LoadBank(Place(0), File("a.fxb"), error)
                                 : workstation->Places().LoadProgram(Place(0), File("a.fxp"), error);
        ASSERT_TRUE(loaded) << error.toStdString();
        EXPECT_EQ(PluginAt(0).SaveBank(), original);
        workstation->Changes().Steps().undo();
        EXPECT_EQ(PluginAt(0).SaveBank(), changed);
        workstation->Changes().Steps().redo();
        EXPECT_EQ(PluginAt(0).SaveBank(), original);
    }
}

TEST_F(WorkstationTest, ARecalledPresetChangesEverythingAndUndoTakesItBack) {
    AddSynth();
    workstation->Presets().AddPreset(0);
    const Content before = Image();
    At(0)->strip.level.Set(5);
    PluginAt(0).SetParameter(0, 0.77F);
    workstation->Contents().SetPattern(At(0)->Id(), 2, SomePattern(50), "Draw");
    const Content changed = Image();
    workstation->Presets().RecallPreset(0, 0);
    for (int i = 0; i < 4; ++i) workstation->Tick();
    EXPECT_EQ(Image(), before);
    workstation->Changes().Steps().undo();
    for (int i = 0; i < 4; ++i) workstation->Tick();
    EXPECT_EQ(Image(), changed);

    workstation->Presets().RecallPresets(0);
    EXPECT_EQ(Image(), changed) << "presets are off";
    settings.SetOn("PresetOn", true);
    workstation->Presets().RecallPresets(0);
    for (int i = 0; i < 4; ++i) workstation->Tick();
    EXPECT_EQ(Image(), before);
    EXPECT_EQ(UndoText(), "Select preset");
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

TEST_F(WorkstationTest, WhatIsRecordedInOnePassIsOneStep) {
    AddSynth();
    CAutomationTake take;
    CInstrument& instrument = *At(0);
    auto& graveyard = workstation->Audio().graveyard;
    const PointList expected = {{1, 10}, {2, 20}, {3, 30}};
    for (std::size_t count = 1; count <= expected.size(); ++count) {
        take.WillRecord(At(0));
        const PointList points(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(count));
        instrument.midiLanes.Publish(
            std::make_shared<const CEventLanes>(instrument.midiLanes.ForEdit()->With(4, kModulationWheelLane, points)),
            graveyard);
    }
    const int steps = workstation->Changes().Steps().index();
    take.Finish("Record automation", workstation->Changes());
    EXPECT_EQ(workstation->Changes().Steps().index(), steps + 1);
    workstation->Changes().Steps().undo();
    EXPECT_EQ(instrument.midiLanes.ForEdit()->Find(4, kModulationWheelLane), nullptr);
    workstation->Changes().Steps().redo();
    ASSERT_NE(instrument.midiLanes.ForEdit()->Find(4, kModulationWheelLane), nullptr);
    EXPECT_EQ(*instrument.midiLanes.ForEdit()->Find(4, kModulationWheelLane), expected);
}

TEST_F(WorkstationTest, ASessionComesBackFromItsFile) {
    QString error;
    AddSynth();
    workstation->Stack().RenameInstrument(0, "Lead");
    workstation->Stack().SetStripColour(0, QColor(200, 100, 50));
    workstation->Stack().SetCollapsed(0, true);
    workstation->Contents().SetPattern(At(0)->Id(), 7, SomePattern(64), "Draw");
    workstation->Contents().SelectPattern(0, 7);
    workstation->Contents().SetPlaylistSteps(128);
    workstation->Session().Detector().gain = 3;
    workstation->Presets().SelectedPreset().Set(1);
    EXPECT_TRUE(workstation->Places().LoadPlugin({SlotPlace::EKind::kEffect, 0, 2}, "QUIB delay", error));
    EXPECT_TRUE(workstation->Places().LoadPlugin({SlotPlace::EKind::kMasterInsert, 0, 1}, "QUIB reverb", error));
    workstation->Audio().settings.tempo.Set(133.5F);
    PluginAt(0).SetParameter(2, 0.4F);
    QSignalSpy modified(&workstation->Changes(), &CChanges::ModifiedChanged);
    ASSERT_TRUE(workstation->Session().SaveProject(File("song.prg"), error)) << error.toStdString();
    EXPECT_FALSE(workstation->Session().IsModified());
    EXPECT_EQ(modified.size(), 1);
    EXPECT_EQ(workstation->Session().ProjectName(), "song");
    const Content saved = Image();

    workstation->Session().NewProject();
    EXPECT_TRUE(workstation->Stack().Instruments().empty());
    EXPECT_TRUE(workstation->Session().ProjectPath().isEmpty());
    EXPECT_EQ(workstation->Places().Slot({SlotPlace::EKind::kEffect, 0, 2})->plugin, nullptr);
    ASSERT_TRUE(workstation->Session().LoadProject(File("song.prg"), error)) << error.toStdString();
    EXPECT_TRUE(workstation->Session().Warnings().empty());
    EXPECT_EQ(Image(), saved);
    EXPECT_EQ(workstation->Stack().StripColour(0), QColor(200, 100, 50));
    EXPECT_TRUE(workstation->Stack().IsCollapsed(0));
    EXPECT_EQ(workstation->Selection().CurrentIndex(), 0);
    EXPECT_FALSE(workstation->Changes().Steps().canUndo());
}

TEST_F(WorkstationTest, InstrumentAndPatternFilesGoFromOneInstrumentToAnother) {
    QString error;
    AddSynth();
    workstation->Contents().SetPattern(At(0)->Id(), 1, SomePattern(40), "Draw");
    ASSERT_TRUE(workstation->Stack().SaveInstrument(0, File("a.ist"), error));
    ASSERT_TRUE(workstation->Contents().SavePattern(0, File("a.ptn"), error));
    ASSERT_EQ(workstation->Stack().AddInstrument(File("a.ist"), error), 1) << error.toStdString();
    EXPECT_EQ(At(1)->patterns[1].ForEdit()->Notes(), SomePattern(40)->Notes());
    AddSynth();
    ASSERT_TRUE(workstation->Contents().LoadPattern(2, File("a.ptn"), error));
    EXPECT_EQ(At(2)->patterns[1].ForEdit()->Notes(), SomePattern(40)->Notes());
    workstation->Changes().Steps().undo();
    EXPECT_TRUE(At(2)->patterns[1].ForEdit()->Notes().empty());
}

TEST_F(WorkstationTest, BackupsAreKeptWithTheirTimesTenAtMost) {
    AddSynth();
    for (int minute = 10; minute < 22; ++minute) {
        QFile old(folders.backups + QString("backup-20200101-0000%1.prg").arg(minute));
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    }
    workstation->Session().WriteBackup(true);
    workstation->Session().WriteBackup(true);
    workstation->Session().Saver().Finish();
    const QStringList kept = workstation->Session().TimedBackups();
    ASSERT_EQ(kept.size(), 10);
    EXPECT_FALSE(kept.front().contains("backup-2020")) << "the newest comes first";
    EXPECT_TRUE(kept.back().endsWith("000013.prg"));
    const Content now = Image();
    QString error;
    workstation->Session().NewProject();
    ASSERT_TRUE(workstation->Session().LoadSession(folders.backupProject, "/x/song.prg", true, error))
        << error.toStdString();
    EXPECT_EQ(Image(), now);
    EXPECT_TRUE(workstation->Session().IsModified());
    EXPECT_EQ(workstation->Session().ProjectPath(), "/x/song.prg");
}

TEST(AsyncSaveTest, ASlowDiskHoldsNobodyUpAndGetsTheNewestOnly) {
    std::promise<void> gate;
    std::shared_future<void> open = gate.get_future().share();
    std::vector<std::string> written;
    CAsyncSave saver([&, open](const std::filesystem::path&, const std::string& bytes, std::string& error) {
        open.wait();
        written.push_back(bytes);
        if (bytes == "bad") error = "disk full";
        return bytes != "bad";
    });
    std::vector<std::string> told;
    const auto tell = [&](const std::string& error) { told.push_back(error); };
    saver.Write("a", "1", tell);
    while (!saver.IsBusy()) std::this_thread::yield();
    for (const char* const bytes : {"2", "3", "4"}) saver.Write("b", bytes, tell);
    saver.Write("c", "bad", tell);
    saver.Poll();
    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(saver.IsBusy());
    gate.set_value();
    saver.Finish();
    EXPECT_EQ(written, (std::vector<std::string>{"1", "4", "bad"}));
    EXPECT_EQ(told, (std::vector<std::string>{"", "", "", "", "disk full"}));
}

TEST_F(WorkstationTest, AFailedSaveLeavesTheMarkOfUnsavedWork) {
    AddSynth();
    QString error;
    QFile blocking(File("file"));
    ASSERT_TRUE(blocking.open(QIODevice::WriteOnly));
    EXPECT_FALSE(workstation->Session().SaveProject(File("file/song.prg"), error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_TRUE(workstation->Session().IsModified());
    EXPECT_TRUE(workstation->Session().ProjectPath().isEmpty());
}

TEST_F(WorkstationTest, PlaysRecordsAndEditsOnTheSilentOutput) {
    QString error;
    ASSERT_TRUE(workstation->OpenOutput("Silent")) << told.toStdString();
    workstation->Audio().settings.songMode.Set(0);
    AddSynth();
    workstation->Contents().SetPattern(At(0)->Id(), 0, SomePattern(60), "Draw");
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
    workstation->Stack().RemoveInstrument(0);
    workstation->Changes().Steps().undo();
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
