// SPDX-License-Identifier: GPL-3.0-or-later

#include "NotePatterns.h"
#include "Testing.h"
#include "model/edits/Chord.h"
#include "model/edits/NoteClip.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/NoteShaping.h"
#include "model/edits/PatternEdits.h"

namespace quib {
namespace {

std::string BytesOf(const Note& note) { return {reinterpret_cast<const char*>(&note), sizeof note}; }

// Everything that an undo has to bring back.
std::string BytesOf(const NoteState& state) {
    std::string bytes = std::to_string(state.pattern->StepCount()) + ' ';
    for (const Note& note : state.Notes()) bytes += BytesOf(note);
    for (const std::uint32_t note : state.selection) bytes += ' ' + std::to_string(note);
    return bytes;
}

bool IsWithinLimits(const Note& note) {
    return note.position >= 0 && note.position <= kFarthestStart && note.length > 0 && note.key >= 0 &&
           note.key <= 127 && note.velocity >= 0 && note.velocity <= 127;
}

NoteSelection Selected(const NoteState& state) { return state.selection; }
NoteSelection NoNote(const NoteState&) { return {}; }

struct Edit {
    const char* name;
    std::function<NoteSelection(const NoteState&)> meant;  // which notes it may change
    std::function<NoteState(const NoteState&)> run;
};

class CNoteEditsProperty : public testing::Test {
protected:
    int Draw(int from, int to) { return from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1)); }
    float Steps(float most) { return most * static_cast<float>(Draw(-1000, 1000)) / 1000.0F; }
    double Grid() { return std::vector<double>{0, 0.25, 1, 4.0 / 3, 4}[static_cast<std::size_t>(Draw(0, 4))]; }
    Note AnyNote() { return {Steps(40), Steps(4), Draw(-20, 150), Draw(-20, 150)}; }
    EChordType AnyChord() { return static_cast<EChordType>(Draw(0, kChordTypeCount - 1)); }

    VelocityStroke AnyStroke() { return {Steps(30), Draw(0, 127), Steps(30), 90}; }
    QuantiseSettings AnyQuantise() { return {Grid(), Steps(1.5F), Draw(0, 1) == 1}; }
    HumaniseSettings AnyHumanise() { return {Steps(2), Draw(0, 99), 7U}; }

    // Selects some notes, odd ones too; rarely none, so that edits mean all.
    NoteState SelectSome(const NoteState& from) {
        NoteSelection some;
        const int chance = Draw(0, 4);
        for (std::uint32_t note = 0; note < from.Notes().size(); ++note) {
            if (Draw(1, 4) <= chance) some.push_back(note);
        }
        return Select(from, some);
    }

    std::mt19937 random{20260};
    NoteClip clip;
    using S = const NoteState&;
    const std::vector<Edit> edits{
        {"add", NoNote, [&](S s) { return AddNote(s, AnyNote()); }},
        {"remove", Selected, [&](S s) { return s.Notes().size() > 40 ? RemoveSelected(s) : s; }},
        {"move", Selected, [&](S s) { return MoveNotes(s, Steps(50), Draw(-60, 60)); }},
        {"copies", NoNote, [&](S s) { return MoveCopies(s, Steps(50), Draw(-60, 60)); }},
        {"transpose", SelectedOrAll, [&](S s) { return TransposeNotes(s, Draw(-12, 12)); }},
        {"resize", Selected, [&](S s) { return ResizeNotes(s, Steps(4), Steps(1)); }},
        {"length", Selected, [&](S s) { return SetNoteLength(s, Steps(4)); }},
        {"velocity", Selected, [&](S s) { return SetVelocity(s, Draw(-50, 200)); }},
        {"shift velocity", Selected, [&](S s) { return ShiftVelocity(s, Draw(-200, 200)); }},
        {"ramp", Selected, [&](S s) { return RampVelocity(s, Draw(-50, 200), Draw(-50, 200)); }},
        {"paint", SelectedOrAll, [&](S s) { return PaintVelocity(s, AnyStroke()); }},
        {"quantise", SelectedOrAll, [&](S s) { return QuantiseNotes(s, AnyQuantise()); }},
        {"humanise", SelectedOrAll, [&](S s) { return HumaniseNotes(s, AnyHumanise()); }},
        {"duplicate", NoNote, [&](S s) { return DuplicateNotes(s, Grid()); }},
        {"join", Selected, [&](S s) { return JoinNotes(s); }},
        {"split", SelectedOrAll, [&](S s) { return SplitNotes(s, std::vector(2, Steps(20))); }},
        {"legato", SelectedOrAll, [&](S s) { return LegatoNotes(s); }},
        {"reverse", SelectedOrAll, [&](S s) { return ReverseNotes(s); }},
        {"invert", SelectedOrAll, [&](S s) { return InvertNotes(s); }},
        {"strum", SelectedOrAll, [&](S s) { return StrumNotes(s, Steps(0.5F)); }},
        {"copy, paste", NoNote, [&](S s) { return clip = CopyNotes(s, Grid()), PasteNotes(s, clip, Steps(50)); }},
        {"paste", NoNote, [&](S s) { return PasteNotes(s, clip, clip.origin); }},
        {"length", NoNote, [&](S s) { return SetStepCount(s, Draw(-2, 40)); }},
        {"double", [](S s) { return NotesStartingIn(*s.pattern, static_cast<float>(s.pattern->LoopLength()), 2e6F); },
         [](S s) { return s.pattern->LoopLength() < 64 ? DoublePattern(s) : HalvePattern(s); }},
        {"shift", SelectedOrAll, [&](S s) { return ShiftWrapped(s, Steps(40)); }},
        {"fill", NoNote, [&](S s) { return FillRow(s, Draw(-2, 130), {.first = Steps(4), .every = Steps(8)}); }},
        {"step", NoNote, [&](S s) { return SetStep(s, Draw(-5, 40), AnyNote()); }},
        {"chord", NoNote, [&](S s) { return StampChord(s, AnyNote(), AnyChord()); }},
    };
};

// The notes that were not meant are there with their bits in their order; whatever else is there fits.
testing::AssertionResult IsSound(const NoteState& before, const NoteState& after, const NoteSelection& meant) {
    const std::vector<Note>& notes = after.Notes();
    std::size_t place = 0;
    for (std::uint32_t index = 0; index < before.Notes().size(); ++index) {
        if (std::binary_search(meant.begin(), meant.end(), index)) continue;
        const std::string wanted = BytesOf(before.Notes()[index]);
        while (place < notes.size() && BytesOf(notes[place]) != wanted) ++place;
        if (place++ == notes.size()) return testing::AssertionFailure() << "lost note " << index;
    }
    std::vector<std::string> old;
    for (const Note& note : before.Notes()) old.push_back(BytesOf(note));
    std::sort(old.begin(), old.end());
    for (const Note& note : notes) {
        if (!IsWithinLimits(note) && !std::binary_search(old.begin(), old.end(), BytesOf(note)))
            return testing::AssertionFailure() << "note out of limits at " << note.position << ", " << note.length;
    }
    if (Select(after, after.selection).selection != after.selection)
        return testing::AssertionFailure() << "selection out of order or beyond the notes";
    if (before.pattern != after.pattern && BytesOf({before.pattern, {}}) == BytesOf({after.pattern, {}}))
        return testing::AssertionFailure() << "a new pattern without a change";
    return testing::AssertionSuccess();
}

TEST_F(CNoteEditsProperty, TenThousandRandomEditsKeepWhatIsNotMeantAndComeBackByteForByte) {
    constexpr std::size_t kMostNotes = 150;
    std::vector<NoteState> history{StateOf(RandomNotes(random, 60, 32.0F), {}, 32)};
    std::vector<std::string> bytes{BytesOf(history[0])};
    std::size_t changes = 0;
    while (history.size() <= 10000) {
        const bool full = history.back().Notes().size() > kMostNotes;
        const NoteState from = full || Draw(0, 2) == 0 ? SelectSome(history.back()) : history.back();
        const Edit& edit = edits[full ? 1 : static_cast<std::size_t>(Draw(0, static_cast<int>(edits.size()) - 1))];
        const NoteState after = edit.run(from);
        ASSERT_TRUE(IsSound(from, after, edit.meant(from))) << edit.name << " at " << history.size();
        changes += after.pattern != from.pattern ? 1U : 0U;
        history.push_back(after);
        bytes.push_back(BytesOf(after));
    }
    EXPECT_GT(changes, 5000U);
    for (std::size_t i = history.size(); i-- > 0;) ASSERT_EQ(BytesOf(history[i]), bytes[i]) << "undo to " << i;
    for (std::size_t i = 0; i < history.size(); ++i) ASSERT_EQ(BytesOf(history[i]), bytes[i]) << "redo to " << i;
}

}  // namespace
}  // namespace quib
