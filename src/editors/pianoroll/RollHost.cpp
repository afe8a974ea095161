// SPDX-License-Identifier: GPL-3.0-or-later
// What the piano roll asks of its window: publishing and undo, sound, the instrument's key range.
#include <algorithm>

#include "controls/CLabelCtrl.h"
#include "editors/pianoroll/CVelocityLaneCtrl.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "editors/pianoroll/RollBars.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr std::size_t kMostRemembered = 600;  // more than undo has steps

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

void CWinControlPianoRoll::ShowRowMenu(int key) {
    RowFocused(key);
    PopUpMenu(*this, [this, key](QMenu& menu) { FillRowMenu(menu, key); });
}

void CWinControlPianoRoll::RowFocused(int key) {
    roll->options.focusedKey = key;
    lane->Refresh();
}

}  // namespace quib
