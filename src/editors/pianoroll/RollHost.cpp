// SPDX-License-Identifier: GPL-3.0-or-later
// What the piano roll asks of its window: publishing and undo, sound, the instrument's key range, menus.
#include <QMenu>
#include <algorithm>

#include "controls/CLabelCtrl.h"
#include "editors/pianoroll/CVelocityLaneCtrl.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "editors/pianoroll/RollBars.h"
#include "model/edits/Chord.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/PatternEdits.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr std::size_t kMostRemembered = 600;  // more than undo has steps
constexpr float kStrum = 0.125F;              // steps between the notes of a chord

}  // namespace

// --- Notes -----------------------------------------------------------------------------------------------

void CWinControlPianoRoll::Preview(const NoteState& state) {
    if (!shown) return;
    if (!gesture) gesture = std::make_unique<CGesture>(Document().Changes());
    publishing = true;
    gesture->Publish(PatternPlace(shown, pattern), state.pattern);
    publishing = false;
    RememberSelection(state);
}

void CWinControlPianoRoll::Finish(const char* name) {
    if (!gesture) return;
    gesture->Finish(Text(name));
    gesture.reset();
    laneBar->ShowCount();
}

void CWinControlPianoRoll::Cancel() {
    publishing = true;
    gesture.reset();
    publishing = false;
}

void CWinControlPianoRoll::SelectionChanged(const NoteState& state) {
    RememberSelection(state);
    laneBar->ShowCount();
}

// The pattern has it already; files keep the number beside the notes, too.
void CWinControlPianoRoll::SetLength(int steps) {
    if (!shown || !gesture) return;
    CIntegerValue& number = shown->stepNumber;
    const auto set = [instrument = shown, &number](int value) { number.Set(value); };
    gesture->Note(
        &number, [set, before = number.Get()] { set(before); }, [set, steps] { set(steps); });
}

// Undo brings back the very pattern of before, and with it what was selected in it.
NoteSelection CWinControlPianoRoll::SelectionOf(const std::shared_ptr<const CPattern>& notes) {
    const auto known = selections.find(notes.get());
    if (known == selections.end() || known->second.notes.lock() != notes) return {};
    return known->second.selection;
}

void CWinControlPianoRoll::RememberSelection(const NoteState& state) {
    selections[state.pattern.get()] = {state.pattern, state.selection};
    if (selections.size() > kMostRemembered) {
        std::erase_if(selections, [](const auto& entry) { return entry.second.notes.expired(); });
    }
}

// --- Sound and key range -----------------------------------------------------------------------------------

void CWinControlPianoRoll::Audition(int key, int velocity, bool on) {
    if (!shown) return;
    Document().Audio().Post({EngineCommand::EKind::kAudition, shown->Id(), key, on ? static_cast<float>(velocity) : 0});
}

int CWinControlPianoRoll::ArmedLimit() const { return shown ? shown->midi.limitLearning.Get() : -1; }

void CWinControlPianoRoll::ArmLimit(int limit) {
    if (shown) shown->midi.limitLearning.Set(limit);
    status->ShowInput();
}

bool CWinControlPianoRoll::TakeKey(int key) {
    const int limit = ArmedLimit();
    if (limit < 0) return false;
    CIntegerValue& changed = limit == 0 ? shown->midi.keyFrom : shown->midi.keyTo;
    const int before = changed.Get();
    changed.Set(key);
    ArmLimit(-1);
    ShowInput();
    Document().Changes().ValueEdited(Part(shown, changed), before, key, Text("Key range"));
    return true;
}

void CWinControlPianoRoll::SetKeyLimit(bool upper, int key, bool done) {
    if (!shown) return;
    CIntegerValue& changed = upper ? shown->midi.keyTo : shown->midi.keyFrom;
    if (!std::exchange(limitDragged, true)) limitBefore = changed.Get();
    changed.Set(key);
    ShowInput();
    if (!done) return;
    limitDragged = false;
    Document().Changes().ValueEdited(Part(shown, changed), limitBefore, key, Text("Key range"));
}

// --- Window --------------------------------------------------------------------------------------------------

void CWinControlPianoRoll::ShowMenu(int /*x*/, int /*y*/) {
    PopUpMenu(*this, [this](QMenu& menu) { FillEditMenu(menu); });
}

void CWinControlPianoRoll::FillEditMenu(QMenu& menu) {
    const NoteState state = roll->State();
    CPianoRollKeys& keys = roll->Keys();
    const auto add = [&menu](const char* text, const char* key, std::function<void()> run) {
        QAction* const action = menu.addAction(Text(text), std::move(run));
        if (key != nullptr) action->setShortcut(QKeySequence(QLatin1String(key)));
    };
    const auto apply = [&](const char* text, auto edit) {
        add(text, nullptr, [this, text, edit] { Apply(edit(roll->State()), text); });
    };
    add(TextKey("Cut"), "Ctrl+X", [this] { Edit(EEdit::kCut); });
    add(TextKey("Copy"), "Ctrl+C", [this] { Edit(EEdit::kCopy); });
    add(TextKey("Paste"), "Ctrl+V", [this] { Edit(EEdit::kPaste); });
    add(TextKey("Delete"), "Del", [this] { Edit(EEdit::kDelete); });
    menu.addSeparator();
    add(TextKey("Quantise"), "Ctrl+G", [&keys] { keys.Quantise(); });
    add(TextKey("Humanise"), "Ctrl+H", [&keys] { keys.Humanise(); });
    add(TextKey("Duplicate"), "Ctrl+D", [&keys] { keys.Duplicate(); });
    add(TextKey("Join"), "Ctrl+J", [&keys] { keys.Join(); });
    add(TextKey("Split"), "Ctrl+K", [&keys] { keys.Split(); });
    apply(TextKey("Legato"), [](const NoteState& from) { return LegatoNotes(from); });
    apply(TextKey("Strum"), [](const NoteState& from) { return StrumNotes(from, kStrum); });
    apply(TextKey("Reverse"), [](const NoteState& from) { return ReverseNotes(from); });
    apply(TextKey("Invert"), [](const NoteState& from) { return InvertNotes(from); });
    apply(TextKey("Octave up"), [](const NoteState& from) { return TransposeNotes(from, 12); });
    apply(TextKey("Octave down"), [](const NoteState& from) { return TransposeNotes(from, -12); });
    QMenu* const chords = menu.addMenu(Text("Chord"));
    for (int type = 0; type < kChordTypeCount && !state.selection.empty(); ++type) {
        const auto chord = static_cast<EChordType>(type);
        const std::string_view symbol = ChordSymbol(chord);
        chords->addAction(QString::fromUtf8(symbol.data(), static_cast<qsizetype>(symbol.size())), [this, chord] {
            const NoteState now = roll->State();
            if (now.selection.empty()) return;
            Apply(StampChord(now, now.Notes()[now.selection.front()], chord), TextKey("Chord"));
        });
    }
    chords->setEnabled(!state.selection.empty());
    menu.addSeparator();
    QMenu* const whole = menu.addMenu(Text("Pattern"));
    const auto change = [&](const char* text, auto edit) {
        whole->addAction(Text(text), [this, text, edit] { Apply(edit(roll->State()), text); });
    };
    change(TextKey("Double pattern"), [](const NoteState& from) { return DoublePattern(from); });
    change(TextKey("Halve pattern"), [](const NoteState& from) { return HalvePattern(from); });
    change(TextKey("Shift left"), [](const NoteState& from) { return ShiftWrapped(from, -1); });
    change(TextKey("Shift right"), [](const NoteState& from) { return ShiftWrapped(from, 1); });
    change(TextKey("Clear pattern"), [](const NoteState& from) { return ClearNotes(from); });
    const int key = roll->view.IsDrums() && roll->options.focusedKey >= 0 ? roll->options.focusedKey
                    : state.selection.empty()                             ? -1
                                                                          : state.Notes()[state.selection.front()].key;
    if (key < 0) return;
    const auto steps = static_cast<float>(roll->view.time.meter.StepsPerBeat());
    QMenu* const rowMenu = menu.addMenu(Text("Row %1").arg(QLatin1String(NameOfKey(key).text)));
    const auto fill = [&](const char* text, auto edit) {
        rowMenu->addAction(Text(text), [this, text, edit] { Apply(edit(roll->State()), text); });
    };
    fill(TextKey("Fill every beat"),
         [key, steps](const NoteState& from) { return FillRow(from, key, EveryBeat(steps)); });
    fill(TextKey("Fill off-beats"),
         [key, steps](const NoteState& from) { return FillRow(from, key, OffBeats(steps)); });
    fill(TextKey("Clear row"), [key](const NoteState& from) { return ClearRow(from, key); });
}

void CWinControlPianoRoll::RowFocused(int key) {
    roll->options.focusedKey = key;
    lane->Refresh();
}

}  // namespace quib
