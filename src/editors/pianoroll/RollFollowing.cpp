// SPDX-License-Identifier: GPL-3.0-or-later
// What the piano roll's window shows of the selection, of changes of the project, and of playing.
#include <algorithm>
#include <utility>

#include "controls/CScrollCtrl.h"
#include "editors/automation/CEventCtrl.h"
#include "editors/grid/PlayheadPictures.h"
#include "editors/pianoroll/CRollLaneBar.h"
#include "editors/pianoroll/CRollStatusBar.h"
#include "editors/pianoroll/CRollToolBar.h"
#include "editors/pianoroll/CVelocityLaneCtrl.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kMiddleKey = 60;
constexpr int kClosedHat = 42;
}  // namespace

QString CWinControlPianoRoll::Title() const {
    const auto instrument = Instrument();
    const QString name = instrument ? QString::fromStdString(instrument->title) : QString();
    return QStringLiteral("%1 - %2   %3").arg(name, Text("Piano roll"), Text("Pattern %1").arg(Pattern() + 1));
}

void CWinControlPianoRoll::ShowSelection() {
    const auto next = Instrument();
    const bool another = next != shown;
    shown = next;
    pattern = Pattern();
    if (another) {
        ghosts = {};
        const auto plugin = shown ? shown->plugin.ForEdit()->plugin : nullptr;
        roll->view.SetDrums(plugin && plugin->Identity().isDrumMachine);
        ShowKeyNames();
    }
    ShowMeter();
    ShowInput();
    lanes.Look(shown, pattern);
    ShowPattern();
    ShowGhosts();
    ShowRows();
    if (another) CentreKeys();
    for (CControl* const bar : {static_cast<CControl*>(tools), static_cast<CControl*>(laneBar)}) bar->Refresh();
    LayoutAndRefresh();
}

// The keys in use in the middle; without notes the middle of the keyboard, or of a drum machine its kick and snare.
void CWinControlPianoRoll::CentreKeys() {
    int lowest = 127;
    int highest = 0;
    for (const Note& note : roll->State().Notes()) {
        lowest = std::clamp(note.key, 0, lowest);
        highest = std::clamp(note.key, highest, 127);
    }
    PianoRollView& view = roll->view;
    const int usual = view.IsDrums() ? kClosedHat : kMiddleKey;
    const int middle = lowest <= highest ? (lowest + highest) / 2 : usual;
    view.ScrollKeysTo(0);
    view.ScrollKeysTo(view.YOfRow(view.Rows().RowOf(middle)) - view.Height() / 2);
}

void CWinControlPianoRoll::ShowChange(const Change& change) {
    switch (change.kind) {
        case EChange::kLanes:
            if (lanes.IsPublishing()) return;
            lanes.ShowPoints(*curve);
            return laneBar->ShowLanes();
        case EChange::kPattern:
            if (publishing) return;
            if (change.index < 0 || change.index == pattern) ShowPattern();
            if (!ghosts.IsEmpty()) ShowGhosts();
            return;
        case EChange::kInstrument:
        case EChange::kValue:
            return ShowInput();
        case EChange::kSlot:
            lanes.Look(shown, pattern);
            ShowLane();
            ShowKeyNames();
            return ShowRows();
        default:
            return;
    }
}

void CWinControlPianoRoll::ShowPattern() {
    roll->Edit().Settle();
    const auto notes =
        shown ? shown->patterns[static_cast<std::size_t>(pattern)].ForEdit() : std::make_shared<const CPattern>();
    gesture.reset();
    roll->options.recordedFrom = Document().NoteRecording().FirstRecorded(notes);
    roll->Show({notes, SelectionOf(notes)});
    roll->enabled = shown != nullptr;
    laneBar->ShowCount();
    ShowLane();
    UpdateScrollBars();
}

void CWinControlPianoRoll::ShowMeter() {
    const EngineSettings& engine = Document().Audio().settings;
    roll->view.time.meter = {engine.stepsPerBeat.Get(), engine.beatsPerBar.Get(), engine.beatUnit.Get(),
                             engine.timebase.Get()};
}

void CWinControlPianoRoll::ShowInput() {
    if (shown) {
        roll->options.swing = shown->swing.Get();
        roll->options.lowerLimit = shown->midi.keyFrom.Get();
        roll->options.upperLimit = shown->midi.keyTo.Get();
    }
    roll->OptionsChanged();
    status->ShowInput();
}

void CWinControlPianoRoll::ShowRows() {
    const CPattern& notes = *roll->State().pattern;
    CKeyRows rows;
    if (folded) {
        rows = roll->view.IsDrums() || roll->options.scale.type == EScaleType::kChromatic
                   ? CKeyRows::FoldToUsed(notes)
                   : CKeyRows::FoldToScale(roll->options.scale, notes);
    } else if (roll->view.IsDrums() && namedKeys.any()) {
        rows = CKeyRows(namedKeys | UsedKeys(notes));
    }
    const ERowOrder order = roll->view.IsDrums() ? rowOrder : ERowOrder::kByKey;
    roll->view.SetRows(CRowOrder(rows, order, roll->options.rowNames, UsedKeys(notes)));
    OptionsChanged();
}

void CWinControlPianoRoll::ShowKeyNames() {
    const auto plugin = shown ? shown->plugin.ForEdit()->plugin : nullptr;
    namedKeys.reset();
    for (int key = 0; key <= kHighestKey; ++key) {
        std::string& name = roll->options.rowNames[static_cast<std::size_t>(key)];
        name = plugin ? plugin->KeyName(key) : std::string();
        namedKeys.set(static_cast<std::size_t>(key), !name.empty());
    }
}

void CWinControlPianoRoll::ShowGhosts() {
    auto& list = roll->options.ghosts;
    list.clear();
    const auto add = [&list](const CInstrument& owner, int number) {
        list.push_back(std::make_shared<const CNoteIndex>(owner.patterns[static_cast<std::size_t>(number)].ForEdit()));
    };
    for (const int number : ghosts.patterns) {
        if (shown && number != pattern) add(*shown, number);
    }
    for (const std::uint32_t id : ghosts.instruments) {
        const auto other = Document().Stack().InstrumentById(id);
        if (other) add(*other, std::clamp(other->patternSelected.Get(), 0, kPatternCount - 1));
    }
    roll->OptionsChanged();
}

void CWinControlPianoRoll::ShowPlaying(const PlayPicture& picture) {
    const CPlayhead::Picture now = PatternPlayhead(picture, Document().Audio().settings, shown.get(), pattern);
    playhead.Set(now, Nanoseconds());
    ShowPlayhead();
    ShowSounding(picture);
    const std::size_t recordedFrom = Document().NoteRecording().FirstRecorded(roll->State().pattern);
    // A take that ends leaves its notes as they are.
    if (recordedFrom > std::exchange(roll->options.recordedFrom, recordedFrom)) roll->Refresh();
    const bool isWritten = lanes.Chosen() && Document().AutomationRecording().IsWriting(*lanes.Chosen());
    if (isWritten != std::exchange(curve->recording, isWritten)) curve->Refresh();
    if (now.playing != frames.isActive()) now.playing ? frames.start() : frames.stop();
    if (shown && shown->swing.Get() != roll->options.swing) ShowInput();
}

// The keys that are held, and the notes that the playhead passes.
void CWinControlPianoRoll::ShowSounding(const PlayPicture& picture) {
    KeySet& sounding = roll->options.sounding;
    sounding.reset();
    const InstrumentPicture* const entry = shown ? picture.Find(shown->Id()) : nullptr;
    const std::uint32_t held = entry != nullptr ? std::min<std::uint32_t>(entry->heldKeyCount, entry->kShownKeys) : 0;
    for (std::uint32_t index = 0; index < held; ++index) sounding.set(entry->heldKeys[index] & 127U);
    const auto place = static_cast<float>(roll->Playhead());
    if (place < 0) return;
    roll->Edit().Index().VisitRange(place, place, 0, [&](std::uint32_t, const Note& note) {
        if (note.position <= place && note.velocity > 0) sounding.set(static_cast<std::size_t>(note.key));
    });
}

void CWinControlPianoRoll::ShowPlayhead() {
    const double place = playhead.At(Nanoseconds());
    roll->SetPlayhead(place);
    curve->SetPlayhead(place);
}

}  // namespace quib
