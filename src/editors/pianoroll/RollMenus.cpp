// SPDX-License-Identifier: GPL-3.0-or-later
// The edit commands of the piano roll's window and its menus.
#include <QMenu>
#include <algorithm>

#include "controls/CLabelCtrl.h"
#include "editors/automation/CEventCtrl.h"
#include "editors/base/PatternClipboard.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "editors/pianoroll/PatternCommands.h"
#include "model/edits/Chord.h"
#include "model/edits/NoteClip.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/PatternEdits.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr float kStrum = 0.125F;  // steps between the notes of a chord

void CopySelected(const NoteState& state) {
    std::vector<Note> taken;
    for (const std::uint32_t index : SelectedOrAll(state)) taken.push_back(state.Notes()[index]);
    CopyNotesToClipboard(CPattern(state.pattern->StepCount(), std::move(taken)));
}

}  // namespace

// --- Commands --------------------------------------------------------------------------------------------

// What may be pasted is looked at when it is: asking the clipboard may wait for another program.
bool CWinControlPianoRoll::CanEdit(EEdit command) const {
    const NoteState& state = roll->State();
    if (!shown) return false;
    if (IsCurveKeyed()) return curve->CanEdit(command);
    if (command == EEdit::kPaste) return true;
    if (command == EEdit::kSelectAll) return !state.Notes().empty();
    return !state.selection.empty();
}

void CWinControlPianoRoll::Edit(EEdit command) {
    if (IsCurveKeyed()) return curve->DoEdit(command);
    roll->Edit().Settle();
    const NoteState state = roll->State();
    switch (command) {
        case EEdit::kCut:
            CopySelected(state);
            return Apply(RemoveSelected(state), TextKey("Cut notes"));
        case EEdit::kCopy:
            return CopySelected(state);
        case EEdit::kPaste:
            return Paste();
        case EEdit::kDelete:
            return Apply(RemoveSelected(state), TextKey("Delete notes"));
        case EEdit::kSelectAll:
            return roll->Edit().Select(SelectAll(state));
    }
}

// At the playhead; else where the notes came from, as far as that is to be seen.
void CWinControlPianoRoll::Paste() {
    const std::optional<PatternClip> found = PatternOfClipboard();
    if (!found) return TellNothingToPaste(Document());
    const CTimeGrid& time = roll->view.time;
    const NoteClip clip =
        CopyNotes({found->set.patterns[static_cast<std::size_t>(found->pattern)], {}}, time.meter.StepsPerBeat());
    const auto origin = static_cast<double>(clip.origin);
    const double playing = roll->Playhead();
    const double first = std::max(0.0, time.FirstStep());
    const bool visible = origin >= first && origin < time.EndStep();
    const double place = playing >= 0 ? playing : visible ? origin : first;
    Apply(PasteNotes(roll->State(), clip, time.SnapDown(place)), TextKey("Paste notes"));
}

void CWinControlPianoRoll::Apply(const NoteState& next, const char* name) {
    roll->Edit().Settle();
    roll->Edit().Apply(next, name);
}

// --- Menus -----------------------------------------------------------------------------------------------

void CWinControlPianoRoll::AddMenuItem(QMenu& menu, const char* text, const char* key, std::function<void()> run) {
    QAction* const action = menu.addAction(Text(text), std::move(run));
    if (key != nullptr) action->setShortcut(QKeySequence(QLatin1String(key)));
}

void CWinControlPianoRoll::FillEditMenu(QMenu& menu) {
    const NoteState state = roll->State();
    AddMenuItem(menu, TextKey("Cut"), "Ctrl+X", [this] { Edit(EEdit::kCut); });
    AddMenuItem(menu, TextKey("Copy"), "Ctrl+C", [this] { Edit(EEdit::kCopy); });
    AddMenuItem(menu, TextKey("Paste"), "Ctrl+V", [this] { Edit(EEdit::kPaste); });
    AddMenuItem(menu, TextKey("Delete"), "Del", [this] { Edit(EEdit::kDelete); });
    menu.addSeparator();
    FillShapes(menu);
    FillChords(*menu.addMenu(Text("Chord")));
    menu.addSeparator();
    QMenu* const whole = menu.addMenu(Text("Pattern"));
    for (const PatternCommand& command : PatternCommands()) {
        AddMenuItem(*whole, command.text, command.keyText,
                    [this, &command] { Apply(command.edit(roll->State()), command.text); });
    }
    const int key = roll->view.IsDrums() && roll->options.focusedKey >= 0 ? roll->options.focusedKey
                    : state.selection.empty()                             ? -1
                                                                          : state.Notes()[state.selection.front()].key;
    if (key >= 0) FillRowMenu(*menu.addMenu(Text("Row %1").arg(QLatin1String(NameOfKey(key).text))), key);
}

void CWinControlPianoRoll::FillShapes(QMenu& menu) {
    CPianoRollKeys& keys = roll->Keys();
    const auto add = [&](const char* text, const char* key, void (CPianoRollKeys::*edit)()) {
        AddMenuItem(menu, text, key, [&keys, edit] { (keys.*edit)(); });
    };
    add(TextKey("Quantise"), "Ctrl+G", &CPianoRollKeys::Quantise);
    // Undone and done again it is another seed's.
    QAction* const humanise =
        menu.addAction(Text("Humanise (seed %1)").arg(roll->options.humanise.seed), [&keys] { keys.Humanise(); });
    humanise->setShortcut(QKeySequence(QStringLiteral("Ctrl+H")));
    add(TextKey("Duplicate"), "Ctrl+D", &CPianoRollKeys::Duplicate);
    add(TextKey("Join"), "Ctrl+J", &CPianoRollKeys::Join);
    add(TextKey("Split"), "Ctrl+K", &CPianoRollKeys::Split);
    const auto apply = [&](const char* text, auto edit) {
        AddMenuItem(menu, text, nullptr, [this, text, edit] { Apply(edit(roll->State()), text); });
    };
    apply(TextKey("Legato"), [](const NoteState& from) { return LegatoNotes(from); });
    apply(TextKey("Strum"), [](const NoteState& from) { return StrumNotes(from, kStrum); });
    apply(TextKey("Reverse"), [](const NoteState& from) { return ReverseNotes(from); });
    apply(TextKey("Invert"), [](const NoteState& from) { return InvertNotes(from); });
    apply(TextKey("Octave up"), [](const NoteState& from) { return TransposeNotes(from, 12); });
    apply(TextKey("Octave down"), [](const NoteState& from) { return TransposeNotes(from, -12); });
}

void CWinControlPianoRoll::FillChords(QMenu& menu) {
    menu.setEnabled(!roll->State().selection.empty());
    for (int type = 0; type < kChordTypeCount; ++type) {
        const auto chord = static_cast<EChordType>(type);
        const std::string_view symbol = ChordSymbol(chord);
        menu.addAction(QString::fromUtf8(symbol.data(), static_cast<qsizetype>(symbol.size())), [this, chord] {
            const NoteState now = roll->State();
            if (now.selection.empty()) return;
            Apply(StampChord(now, now.Notes()[now.selection.front()], chord), TextKey("Chord"));
        });
    }
}

void CWinControlPianoRoll::FillRowMenu(QMenu& menu, int key) {
    const auto steps = static_cast<float>(roll->view.time.meter.StepsPerBeat());
    const auto fill = [&](const char* text, auto edit) {
        AddMenuItem(menu, text, nullptr, [this, text, edit] { Apply(edit(roll->State()), text); });
    };
    fill(TextKey("Fill every beat"),
         [key, steps](const NoteState& from) { return FillRow(from, key, EveryBeat(steps)); });
    fill(TextKey("Fill off-beats"),
         [key, steps](const NoteState& from) { return FillRow(from, key, OffBeats(steps)); });
    menu.addSeparator();
    fill(TextKey("Clear row"), [key](const NoteState& from) { return ClearRow(from, key); });
}

}  // namespace quib
