// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/tutorial/Lessons.h"

#include <QApplication>
#include <QDir>
#include <QWidget>
#include <array>

#include "document/CSettings.h"
#include "document/FirstInstruments.h"
#include "document/SongMode.h"
#include "texts/Texts.h"

namespace quib {

namespace {

using State = TutorialState;

constexpr int kAddInstrument = 448;
constexpr int kPlay = 430;
constexpr int kAutomation = 432;
constexpr int kSongOrPattern = 433;
constexpr int kLevel = 470;
constexpr int kStepBoxes = 480;
constexpr int kPutIntoSong = 504;

int PointsOf(const CEventLanes& lanes) {
    std::size_t count = 0;
    for (int slot = 0; slot < CEventLanes::kSlotCount; ++slot) {
        for (const CEventLanes::Lane& lane : lanes.Lanes(slot)) count += lane.points->size();
    }
    return static_cast<int>(count);
}

int NotesOf(const CInstrument& instrument) {
    std::size_t count = 0;
    for (const auto& pattern : instrument.patterns) count += pattern.ForEdit()->Notes().size();
    return static_cast<int>(count);
}

bool IsExportOpen() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && window->inherits("quib::CExportDialog");
    });
}

constexpr std::array kHear = {
    TutorialStep{TextKey("Press the arrow on one of the pictures: an example plays."), kExampleCard,
                 [](const State& now, const State&) { return now.instruments > 0 && now.playing; }},
    TutorialStep{TextKey("Press Space: it stops. Space plays and stops everywhere in the program."), kPlay,
                 [](const State& now, const State&) { return !now.playing; }}};

constexpr std::array kBeat = {
    TutorialStep{TextKey("Press \"New beat\": a drum machine comes with two bars that play at once."), kNewBeatButton,
                 [](const State& now, const State&) { return now.instruments > 0 && now.notes > 0; }},
    TutorialStep{TextKey("Click two empty boxes of the row of steps: each becomes a hit. Another click takes it away."),
                 kStepBoxes, [](const State& now, const State& before) { return now.notes >= before.notes + 2; }}};

constexpr std::array kMelody = {
    TutorialStep{TextKey("Press Ctrl+I, write \"synth\" and press Enter: a second instrument, with its keyboard. The "
                         "keys from A on play it."),
                 kAddInstrument,
                 [](const State& now, const State& before) { return now.instruments > before.instruments; }},
    TutorialStep{TextKey("Click four boxes of its row of steps: a melody, which F2 lets you move in the piano roll."),
                 kStepBoxes, [](const State& now, const State&) { return now.notesOfCurrent >= 4; }},
    TutorialStep{TextKey("Press Space, if nothing plays yet: both play as a loop."), kPlay,
                 [](const State& now, const State&) { return now.playing; }}};

constexpr std::array kSong = {
    TutorialStep{TextKey("Press SONG: now the song plays, which is still empty."), kSongOrPattern,
                 [](const State& now, const State&) { return now.songMode; }},
    TutorialStep{TextKey("Let it play with Space and press \"Put the selected patterns into the song\". F6 shows the "
                         "song below the strips."),
                 kPutIntoSong, [](const State& now, const State&) { return now.songHasItems; }}};

constexpr std::array kAutomate = {
    TutorialStep{TextKey("Press A: what you move is recorded from now on."), kAutomation,
                 [](const State& now, const State&) { return now.automationArmed; }},
    TutorialStep{TextKey("While it plays, move the level of an instrument. F3 shows what was recorded."), kLevel,
                 [](const State& now, const State& before) { return now.automationPoints > before.automationPoints; }}};

constexpr std::array kExport = {
    TutorialStep{TextKey("Press Ctrl+E: the window that writes sound files opens."), kNoTarget,
                 [](const State& now, const State&) { return now.exportOpen; }},
    TutorialStep{TextKey("Press its button \"Export\": the song becomes a file that every player plays."), kNoTarget,
                 [](const State& now, const State& before) { return now.newestExport > before.newestExport; }}};

const std::array kLessons = {TutorialLesson{TextKey("Hear"), ELessonGround::kEmpty, kHear},
                             TutorialLesson{TextKey("Beat"), ELessonGround::kEmpty, kBeat},
                             TutorialLesson{TextKey("Melody"), ELessonGround::kBeat, kMelody},
                             TutorialLesson{TextKey("Song"), ELessonGround::kBeatWithoutSong, kSong},
                             TutorialLesson{TextKey("Automate"), ELessonGround::kBeat, kAutomate},
                             TutorialLesson{TextKey("Export"), ELessonGround::kSong, kExport}};

}  // namespace

TutorialState ReadTutorialState(CWorkstation& station) {
    State state;
    for (const auto& instrument : station.Stack().Instruments()) {
        ++state.instruments;
        state.notes += NotesOf(*instrument);
        state.automationPoints += PointsOf(*instrument->mixLanes.ForEdit());
    }
    if (const auto current = station.Selection().CurrentInstrument()) state.notesOfCurrent = NotesOf(*current);
    state.playing = station.Transport().IsPlaying();
    state.songMode = station.Audio().settings.songMode.IsOn();
    state.songHasItems = !station.Song().IsEmpty();
    state.automationArmed = station.Audio().recordAutomation.IsOn();
    state.exportOpen = IsExportOpen();
    const QString folder = station.Settings().ReadSettingString(QStringLiteral("Export"), QStringLiteral("Folder"));
    if (folder.isEmpty() || !state.exportOpen) return state;
    const QFileInfoList newest = QDir(folder).entryInfoList(QDir::Files, QDir::Time);
    if (!newest.isEmpty()) state.newestExport = newest.front().lastModified();
    return state;
}

std::span<const TutorialLesson> TutorialLessons() { return kLessons; }

bool PrepareGround(CWorkstation& station, ELessonGround ground, QString& error) {
    const bool songInTheWay = ground == ELessonGround::kBeatWithoutSong && !station.Song().IsEmpty();
    if (ground == ELessonGround::kEmpty || songInTheWay) station.Session().NewProject();
    if (ground == ELessonGround::kEmpty) return true;
    if (ReadTutorialState(station).notes == 0 && !AddBeat(station, error)) return false;
    if (ground == ELessonGround::kSong && station.Song().IsEmpty()) {
        station.Song().PutSelectedPatterns();
        SetSongMode(station, true);
    }
    return true;
}

}  // namespace quib
