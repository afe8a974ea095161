// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CPianoRollKeys.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "controls/VirtualKeys.h"
#include "editors/base/WindowKeys.h"
#include "editors/pianoroll/PatternCommands.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/NoteShaping.h"
#include "model/edits/NoteSnap.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kOctave = 12;
constexpr int kVelocityKey = 4;  // a press of + or -
constexpr int kHeardTicks = 6;   // of 40 ms: how long a key that arrows reach is heard

struct LetterEdit {
    WindowKey key;
    void (CPianoRollKeys::*run)();
};
constexpr std::array kLetterEdits = {
    LetterEdit{{Qt::CTRL | Qt::Key_G, TextKey("Quantise")}, &CPianoRollKeys::Quantise},
    LetterEdit{{Qt::CTRL | Qt::Key_H, TextKey("Humanise")}, &CPianoRollKeys::Humanise},
    LetterEdit{{Qt::CTRL | Qt::Key_D, TextKey("Duplicate")}, &CPianoRollKeys::Duplicate},
    LetterEdit{{Qt::CTRL | Qt::Key_J, TextKey("Join")}, &CPianoRollKeys::Join},
    LetterEdit{{Qt::CTRL | Qt::Key_K, TextKey("Split")}, &CPianoRollKeys::Split},
};
constexpr std::array kOtherKeys = {
    WindowKey{Qt::Key_Up, TextKey("Moves the selected notes, else the cursor"), WindowKey::EKind::kArrows},
    WindowKey{Qt::CTRL | Qt::Key_Up, TextKey("The same by a bar or an octave"), WindowKey::EKind::kArrows},
    WindowKey{Qt::SHIFT | Qt::Key_Up, TextKey("The same by the smallest step"), WindowKey::EKind::kLevel},
    WindowKey{Qt::ALT | Qt::Key_Up, TextKey("Length of the selected notes"), WindowKey::EKind::kLevel},
    WindowKey{Qt::Key_Tab, TextKey("Next note")},
    WindowKey{Qt::SHIFT | Qt::Key_Tab, TextKey("Previous note")},
    WindowKey{Qt::Key_Return, TextKey("Adds a note at the cursor, which goes on")},
    WindowKey{Qt::Key_Delete, TextKey("Delete notes")},
    WindowKey{Qt::Key_Plus, TextKey("Louder: the note under the mouse, else the selected ones")},
    WindowKey{Qt::Key_Minus, TextKey("Softer: the note under the mouse, else the selected ones")},
};
}  // namespace

WindowKeys PianoRollKeys() {
    WindowKeys keys(kOtherKeys.begin(), kOtherKeys.end());
    for (const LetterEdit& edit : kLetterEdits) keys.push_back(edit.key);
    return keys;
}

CPianoRollKeys::CPianoRollKeys(CPianoRollEdit& edited, PianoRollView& shown, PianoRollOptions& settings,
                               IPianoRollSurface& drawn)
    : edit(edited), view(shown), options(settings), surface(drawn) {}

void CPianoRollKeys::MouseAt(int x, int y) noexcept {
    mouseX = x;
    mouseY = y;
}

std::optional<EditCursor> CPianoRollKeys::ShownCursor() const noexcept {
    return cursorShown ? std::optional(cursor) : std::nullopt;
}

float CPianoRollKeys::Raster() const noexcept {
    const double raster = view.time.SnapSteps();
    return raster > 0 ? static_cast<float>(raster) : 1;
}

float CPianoRollKeys::NewLength() const noexcept {
    return options.length > 0 && !view.IsDrums() ? options.length : Raster();
}

bool CPianoRollKeys::KeyDown(int key, CPianoRollGestures& mouse) {
    if (mouse.IsBusy()) return false;
    if (mouse.IsControlHeld() && mouse.IsShiftHeld() && EditPattern(key)) return true;
    switch (key) {
        case virtualKey::kLeft:
        case virtualKey::kRight:
        case virtualKey::kUp:
        case virtualKey::kDown:
            return Arrow(key, mouse);
        case virtualKey::kDelete:
            DeleteSelected();
            return true;
        case virtualKey::kReturn:
            AddAtCursor();
            return true;
        case virtualKey::kTab:
            if (mouse.IsControlHeld()) return false;
            Walk(mouse.IsShiftHeld());
            return true;
        case virtualKey::kPlus:
        case virtualKey::kMinus:
            mouse.ChangeVelocityAt(mouseX, mouseY, key == virtualKey::kPlus ? kVelocityKey : -kVelocityKey);
            return true;
        default:
            return mouse.IsControlHeld() && EditByLetter(key);
    }
}

bool CPianoRollKeys::EditPattern(int key) {
    const PatternCommand* const command = PatternCommandOfKey(key);
    if (command == nullptr) return false;
    edit.Apply(command->edit(edit.State()), command->text);
    return true;
}

// A letter is the same to Qt and to controls.
bool CPianoRollKeys::EditByLetter(int key) {
    const auto found = std::ranges::find_if(
        kLetterEdits, [key](const LetterEdit& row) { return static_cast<int>(row.key.key.key()) == key; });
    if (found == kLetterEdits.end()) return false;
    (this->*found->run)();
    return true;
}

// A step for each of the keys that were held on.
void CPianoRollKeys::KeyUp(int key, const CPianoRollGestures& mouse) {
    if (!mouse.IsBusy() && key >= virtualKey::kLeft && key <= virtualKey::kDown) edit.Settle();
}

// --- Arrows -------------------------------------------------------------------------------------------

bool CPianoRollKeys::Arrow(int key, const CPianoRollGestures& mouse) {
    const bool level = key == virtualKey::kLeft || key == virtualKey::kRight;
    const int sign = key == virtualKey::kRight || key == virtualKey::kUp ? 1 : -1;
    float steps = Raster();
    if (mouse.IsControlHeld()) steps = static_cast<float>(view.time.meter.StepsPerBar());
    if (mouse.IsShiftHeld()) {
        const auto tick = static_cast<float>(view.time.meter.StepsPerTick());
        steps = tick > 0 ? tick : steps;
    }
    const int keys = level ? 0 : sign * (mouse.IsControlHeld() ? kOctave : 1);
    steps = level ? steps * static_cast<float>(sign) : 0;
    if (edit.State().selection.empty()) {
        MoveCursor(steps, keys);
    } else if (mouse.IsAltHeld()) {
        Lengthen(steps);
    } else {
        Nudge(steps, keys);
    }
    return true;
}

void CPianoRollKeys::MoveCursor(float steps, int keys) {
    if (!cursorShown) {
        cursorShown = true;
        cursor.step = std::max(cursor.step, SnapUp(static_cast<float>(view.time.FirstStep()), view.time.SnapSteps()));
    } else {
        cursor.step = std::clamp(cursor.step + steps, 0.0F, kFarthestStart);
        int row = view.Rows().RowOf(cursor.key);
        if (keys != 0 && row >= 0) row = std::clamp(row + keys, 0, view.Rows().Count() - 1);
        cursor.key = view.Rows().KeyOf(row);
    }
    if (view.Reveal({cursor.step, Raster(), cursor.key, 0})) surface.ViewMoved();
    if (keys != 0) Audition(cursor.key, options.velocity);
    surface.MarksChanged();
}

void CPianoRollKeys::Nudge(float steps, int keys) {
    const std::uint32_t first = edit.State().selection.front();
    const int before = edit.State().Notes()[first].key;
    edit.Accumulate(MoveNotes(edit.State(), steps, keys), "Move notes");
    const Note note = edit.State().Notes()[edit.State().selection.front()];
    if (note.key != before) Audition(note.key, note.velocity);
    if (view.Reveal(note)) surface.ViewMoved();
    surface.ShowNote(&note);
}

void CPianoRollKeys::Lengthen(float steps) {
    if (steps == 0) return;
    edit.Accumulate(ResizeNotes(edit.State(), steps, std::min(std::abs(steps), Raster())), "Resize notes");
    surface.ShowNote(&edit.State().Notes()[edit.State().selection.front()]);
}

void CPianoRollKeys::Audition(int key, int velocity) {
    Silence();
    if (!options.audition || velocity <= 0) return;
    sounding = key;
    heardTicks = kHeardTicks;
    edit.host.Audition(key, velocity, true);
}

void CPianoRollKeys::Tick() {
    if (sounding >= 0 && --heardTicks <= 0) Silence();
}

void CPianoRollKeys::Silence() {
    if (sounding >= 0) edit.host.Audition(sounding, 0, false);
    sounding = -1;
}

// --- Walking and adding -------------------------------------------------------------------------------

void CPianoRollKeys::Walk(bool back) {
    edit.Settle();
    NoteSelection order;
    for (const std::uint32_t index : edit.State().pattern->NotesByStart()) {
        if (IsPlayable(edit.State().Notes()[index])) order.push_back(index);
    }
    if (order.empty()) return;
    const NoteSelection& selection = edit.State().selection;
    std::size_t next = back ? order.size() - 1 : 0;
    if (!selection.empty()) {
        const auto place = std::find(order.begin(), order.end(), back ? selection.front() : selection.back());
        const std::size_t now = place == order.end() ? 0 : static_cast<std::size_t>(place - order.begin());
        next = (now + (back ? order.size() - 1 : 1)) % order.size();
    }
    edit.Select(Select(edit.State(), {order[next]}));
    const Note note = edit.State().Notes()[order[next]];
    cursor = {note.position, note.key};
    Audition(note.key, note.velocity);
    if (view.Reveal(note)) surface.ViewMoved();
    surface.ShowNote(&note);
}

void CPianoRollKeys::AddAtCursor() {
    edit.Settle();
    if (!edit.Index().IsCellCovered(cursor.step, view.time.SnapSteps(), cursor.key)) {
        edit.Apply(AddNote(edit.State(), {cursor.step, NewLength(), cursor.key, options.velocity}), "Add note");
        Audition(cursor.key, options.velocity);
    }
    edit.SelectNone();
    cursorShown = true;
    MoveCursor(Raster(), 0);
}

void CPianoRollKeys::EnterStep(int key, int velocity) {
    if (velocity > 0) {
        // A gesture of the mouse goes on.
        if (edit.IsOpen() && edit.Pending() == nullptr) return;
        if (entered.empty()) edit.Settle();
        entered.insert(key);
        edit.SelectNone();
        if (!cursorShown) MoveCursor(0, 0);
        if (cursor.step >= static_cast<float>(edit.State().pattern->LoopLength())) MoveCursor(-cursor.step, 0);
        const Note note{cursor.step, NewLength(), key, velocity};
        if (!edit.Index().IsCellCovered(cursor.step, view.time.SnapSteps(), key))
            edit.Accumulate(AddNote(edit.State(), note), "Step entry");
        if (view.Reveal(note)) surface.ViewMoved();
    } else if (entered.erase(key) > 0 && entered.empty()) {
        edit.Settle();
        MoveCursor(Raster(), 0);
    }
}

void CPianoRollKeys::EndSteps() {
    if (entered.empty()) return;
    entered.clear();
    edit.Settle();
}

// --- Edits --------------------------------------------------------------------------------------------

void CPianoRollKeys::Quantise() {
    const QuantiseSettings settings{view.time.SnapSteps(), options.quantiseStrength, false};
    edit.Apply(QuantiseNotes(edit.State(), settings), "Quantise");
}

void CPianoRollKeys::Humanise() {
    edit.Apply(HumaniseNotes(edit.State(), options.humanise), "Humanise");
    ++options.humanise.seed;
}

void CPianoRollKeys::Duplicate() {
    edit.Apply(DuplicateNotes(edit.State(), static_cast<double>(Raster())), "Duplicate notes");
    if (edit.State().selection.empty()) return;
    if (view.Reveal(edit.State().Notes()[edit.State().selection.front()])) surface.ViewMoved();
}

void CPianoRollKeys::Join() { edit.Apply(JoinNotes(edit.State()), "Join notes"); }

void CPianoRollKeys::Split() {
    const NoteState& now = edit.State();
    const float place = view.time.SnapNearest(view.StepAt(mouseX));
    std::vector<float> places;
    for (const std::uint32_t index : SelectedOrAll(now)) {
        const Note& note = now.Notes()[index];
        if (place > note.position && place < note.position + note.length) places = {place};
    }
    if (places.empty() && !now.selection.empty()) {
        const Note& note = now.Notes()[now.selection.front()];
        places = {note.position + note.length / 2};
    }
    edit.Apply(SplitNotes(now, places), "Split notes");
}

void CPianoRollKeys::DeleteSelected() { edit.Apply(RemoveSelected(edit.State()), "Delete notes"); }

}  // namespace quib
