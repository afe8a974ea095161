// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/NoteEdits.h"

#include <gtest/gtest.h>

#include "NotePatterns.h"
#include "model/edits/CKeyRows.h"
#include "model/edits/CNoteIndex.h"
#include "model/edits/Chord.h"
#include "model/edits/NoteClip.h"
#include "model/edits/NoteShaping.h"
#include "model/edits/NoteSnap.h"
#include "model/edits/PatternEdits.h"

namespace quib {

namespace {

using Notes = std::vector<Note>;

TEST(NoteEditsTest, ABlockStopsAsOneAtTheEdgesAndComingBackChangesNothing) {
    const NoteState chord = StateOf({{1, 1, 60, 90}, {2.5F, 0.0F, 126, 90}, {2.5F, 1, 50, 90}}, {0, 1});
    const NoteState corner = MoveNotes(chord, -9, 40);
    EXPECT_EQ(corner.Notes(), (Notes{{0, 1, 61, 90}, {1.5F, kShortestNote, 127, 90}, {2.5F, 1, 50, 90}}));
    EXPECT_EQ(MoveNotes(chord, 0, 0).pattern, chord.pattern) << "not even a note without length is mended";
    EXPECT_EQ(MoveCopies(StateOf({{0, 1, 0, 9}}, {0}), -1, -1).Notes().size(), 1U) << "no copy onto itself";
    EXPECT_EQ(TransposeNotes(chord, 12).pattern, chord.pattern) << "another interval is no octave";
    EXPECT_EQ(TransposeNotes(StateOf({{0, 1, 60, 9}, {1, 1, 200, 9}}), 12).Notes(),
              (Notes{{0, 1, 72, 9}, {1, 1, 200, 9}}))
        << "what cannot be heard is not meant by all";
}

TEST(NoteEditsTest, LengthsAndVelocitiesAreLimitedEachForItself) {
    const NoteState notes = StateOf({{0, 4, 60, 0}, {2, 0.125F, 60, 64}, {4, 1, 60, 120}}, {0, 1, 2});
    EXPECT_EQ(ResizeNotes(notes, -3.5F, 0.25F).Notes(),
              (Notes{{0, 0.5F, 60, 0}, {2, 0.125F, 60, 64}, {4, 0.25F, 60, 120}}));
    const auto velocities = [](const NoteState& state) {
        std::vector<int> found;
        for (const Note& note : state.Notes()) found.push_back(note.velocity);
        return found;
    };
    EXPECT_EQ(velocities(ShiftVelocity(notes, 20)), (std::vector{20, 84, 127}));
    EXPECT_EQ(velocities(RampVelocity(notes, 100, 50)), (std::vector{100, 75, 50}));
    EXPECT_EQ(velocities(PaintVelocity(Select(notes, {}), {3, 0, 1, 40})), (std::vector{0, 20, 120}));
    EXPECT_EQ(velocities(PaintVelocity(Select(notes, {0}), {3, 0, 1, 40})), (std::vector{0, 64, 120}));
}

TEST(NoteEditsTest, TheSelectionFollowsItsNotes) {
    const NoteState state = StateOf({{0, 1, 1, 9}, {1, 1, 2, 9}, {2, 1, 3, 9}, {3, 1, 4, 9}}, {1, 3});
    EXPECT_EQ(RemoveNotes(state, std::vector<std::uint32_t>{2, 0, 77}).selection, (NoteSelection{0, 1}));
    EXPECT_EQ(ToggleSelected(ToggleSelected(state, 1), 0).selection, (NoteSelection{0, 3}));
    const NoteState stale = MoveNotes({state.pattern, {3, 99}}, 1, 0);
    EXPECT_EQ(stale.selection, NoteSelection{3}) << "as after another edit took notes away";
}

TEST(NoteSnapTest, WhatAFileRoundedLiesOnItsLine) {
    EXPECT_EQ(SnapDown(3.9999F, 1), 4.0F);
    EXPECT_EQ(SnapUp(4.0001F, 1), 4.0F);
    EXPECT_FLOAT_EQ(SnapDown(0.6667F, 1.0 / 3), 2.0F / 3);
    for (int line = 1; line < 100000; line += 777) {
        const auto position = static_cast<float>(line * (4.0 / 3));
        EXPECT_EQ(SnapDown(position, 4.0 / 3), position);
        EXPECT_EQ(SnapUp(position, 4.0 / 3), position);
    }
    EXPECT_EQ(SnapDown(3.7F, 0), 3.7F);
    EXPECT_FLOAT_EQ(1.3F + SnappedMove(1.3F, 1.4F, 1), 3.0F);
}

TEST(NoteShapingTest, QuantiseGoesItsShareOfTheWayAndNeverSwallowsANote) {
    const NoteState played = StateOf({{0.9F, 0.3F, 60, 9}, {4.2F, 1.9F, 62, 9}});
    EXPECT_EQ(QuantiseNotes(played, {1, 1, false}).Notes(), (Notes{{1, 0.3F, 60, 9}, {4, 1.9F, 62, 9}}));
    EXPECT_EQ(QuantiseNotes(played, {1, 1, true}).Notes(), (Notes{{1, 1, 60, 9}, {4, 2, 62, 9}}));
    EXPECT_FLOAT_EQ(QuantiseNotes(played, {1, 0.5F, true}).Notes()[0].position, 0.95F);
    EXPECT_EQ(QuantiseNotes(played, {1, 0, true}).pattern, played.pattern);
}

TEST(NoteShapingTest, HumaniseIsRolledByItsSeedAndSilenceStaysSilent) {
    const NoteState even = StateOf({{0, 1, 60, 1}, {4, 1, 60, 0}, {8, 1, 60, 127}, {8, 1, 64, 64}});
    const HumaniseSettings settings{0.2F, 10, 7};
    const NoteState once = HumaniseNotes(even, settings);
    EXPECT_EQ(once.Notes(), HumaniseNotes(even, settings).Notes());
    EXPECT_NE(once.Notes(), HumaniseNotes(even, {0.2F, 10, 8}).Notes());
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(once.Notes()[i].position, even.Notes()[i].position, 0.2F);
        EXPECT_NEAR(once.Notes()[i].velocity, even.Notes()[i].velocity, 10);
        EXPECT_EQ(once.Notes()[i].velocity == 0, i == 1);
    }
    EXPECT_NE(once.Notes()[2].position, once.Notes()[3].position);
}

TEST(NoteShapingTest, CopiesKeepTheirPlaceInTheGrid) {
    const NoteState riff = StateOf({{0.5F, 1, 60, 9}, {2.5F, 0.5F, 64, 9}}, {0, 1});
    const NoteState thrice = DuplicateNotes(DuplicateNotes(riff, 4), 4);
    ASSERT_EQ(thrice.Notes().size(), 6U);
    EXPECT_EQ(thrice.Notes()[4], (Note{8.5F, 1, 60, 9}));
    EXPECT_EQ(thrice.selection, (NoteSelection{4, 5}));
    const NoteClip clip = CopyNotes(riff, 4);
    EXPECT_EQ(PasteNotes(StateOf({}), clip, 8).Notes(), (Notes{{8.5F, 1, 60, 9}, {10.5F, 0.5F, 64, 9}}));
    EXPECT_EQ(PasteNotes(StateOf({}), clip, clip.origin).Notes(), riff.Notes());
    EXPECT_EQ(PasteNotes(StateOf({}), clip, -8).Notes(), (Notes{{0, 1, 60, 9}, {2, 0.5F, 64, 9}}));
    const NoteState last = StateOf({{kFarthestStart - 1, 1, 60, 9}}, {0});
    EXPECT_EQ(DuplicateNotes(last, 4).pattern, last.pattern) << "no room behind it";
}

TEST(NoteShapingTest, JoinSplitLegatoReverseInvertAndStrum) {
    const NoteState parts = StateOf({{4, 1, 60, 40}, {1, 1, 60, 90}, {2, 1, 62, 9}, {2.5F, 9, 60, 9}}, {0, 1, 2});
    EXPECT_EQ(JoinNotes(parts).Notes(), (Notes{{1, 4, 60, 90}, {2, 1, 62, 9}, {2.5F, 9, 60, 9}}));
    EXPECT_EQ(JoinNotes(parts).selection, (NoteSelection{0, 1}));
    const NoteState one = StateOf({{1, 4, 60, 90}}, {0});
    const NoteState cut = SplitNotes(one, std::vector{3.0F, 2.0F, 2.01F, 1.0F, 5.0F, 9.0F});
    EXPECT_EQ(cut.Notes(), (Notes{{1, 1, 60, 90}, {2, 1, 60, 90}, {3, 2, 60, 90}}));
    EXPECT_EQ(JoinNotes(cut).Notes(), one.Notes());
    const NoteState chords = StateOf({{0, 1, 60, 9}, {0, 5, 64, 9}, {4, 1, 62, 9}, {4.00005F, 2, 55, 9}});
    EXPECT_EQ(LegatoNotes(chords).Notes(), (Notes{{0, 4, 60, 9}, {0, 4, 64, 9}, {4, 1, 62, 9}, {4.00005F, 2, 55, 9}}));
    EXPECT_EQ(StrumNotes(chords, -0.25F).Notes()[0], (Note{0.25F, 0.75F, 60, 9}));
    EXPECT_EQ(StrumNotes(chords, 9).Notes()[1], (Note{4.9375F, kShortestNote, 64, 9}));
    const NoteState beat = StateOf({{0, 1, 60, 9}, {4, 1, 70, 9}, {12, 1, 62, 9}});
    EXPECT_EQ(ReverseNotes(beat).Notes(), (Notes{{12, 1, 60, 9}, {8, 1, 70, 9}, {0, 1, 62, 9}}));
    EXPECT_EQ(InvertNotes(beat).Notes(), (Notes{{0, 1, 70, 9}, {4, 1, 60, 9}, {12, 1, 68, 9}}));
}

TEST(PatternEditsTest, LengthAndContents) {
    const NoteState bar{std::make_shared<const CPattern>(8, Notes{{1, 1, 60, 9}, {7.5F, 1, 61, 9}, {10, 1, 62, 9}}, 6),
                        {2}};
    const NoteState twice = DoublePattern(bar);
    EXPECT_EQ(twice.Notes(), (Notes{{1, 1, 60, 9}, {7.5F, 1, 61, 9}, {18, 1, 62, 9}, {9, 1, 60, 9}, {15.5F, 1, 61, 9}}))
        << "what lay unheard beyond the end still does";
    EXPECT_EQ(twice.pattern->StepCount(), 16);
    EXPECT_EQ(SetStepCount(bar, 4).pattern->LoopStart(), 3);
    EXPECT_EQ(ShiftWrapped(Select(bar, {}), 1).Notes(), (Notes{{2, 1, 60, 9}, {0.5F, 1, 61, 9}, {10, 1, 62, 9}}));
    EXPECT_EQ(ShiftWrapped(Select(bar, {0}), -1.00001F).Notes()[0].position, 0.0F) << "not 7.99999";
}

TEST(PatternEditsTest, RowsAndSteps) {
    const NoteState kick = StateOf({{4.0001F, 1, 36, 50}, {2, 1, 38, 9}});
    const NoteState filled = FillRow(kick, 36, EveryBeat(4));
    ASSERT_EQ(filled.Notes().size(), 5U) << "the beat that is there is not doubled";
    EXPECT_EQ(FillRow(StateOf({}), 42, OffBeats(4)).Notes().back().position, 14.0F);
    EXPECT_EQ(ClearRow(filled, 36).Notes(), (Notes{{2, 1, 38, 9}}));

    const Note model{0, 1, 99, 100};
    EXPECT_EQ(SetStep(kick, 1, model).Notes().back(), (Note{1, 1, 99, 100}));
    EXPECT_EQ(SetStep(kick, 9, model).Notes().back().key, 36);
    EXPECT_EQ(SetStep(kick, 4, model).pattern, kick.pattern);
    EXPECT_EQ(SetStep(kick, kMaximumStepCount, model).pattern, kick.pattern);
    const NoteState odd = StateOf(OddNotes(), {7});
    EXPECT_EQ(ClearStep(odd, 3).Notes().size(), 7U) << "a lit box goes dark, whatever lit it";
    EXPECT_EQ(ClearStep(odd, 3).selection, NoteSelection{6});
    EXPECT_EQ(ClearStep(odd, -1).pattern, odd.pattern);
    EXPECT_EQ(NearestEarlierKey(*odd.pattern, 5, 1), 61) << "keys that cannot be heard are passed over";
}

TEST(ScaleTest, ScalesChordsAndFolds) {
    const Scale dMinor{2, EScaleType::kMinor};
    for (const int key : {50, 52, 53, 55, 57, 58, 60}) EXPECT_TRUE(IsInScale(dMinor, key)) << key;
    EXPECT_EQ(KeysOfScale({11, EScaleType::kLocrian}), KeysOfScale({0, EScaleType::kMajor})) << "the same white keys";
    EXPECT_EQ(KeysOfScale({9, EScaleType::kMinorPentatonic}), KeysOfScale({0, EScaleType::kMajorPentatonic}));
    EXPECT_EQ(KeyByDegrees(dMinor, 61, 1), 62);
    EXPECT_EQ(KeyByDegrees(dMinor, 50, -7), 38);
    EXPECT_EQ(KeyByDegrees(dMinor, 126, 9), 127);
    EXPECT_EQ(MakeChord({0, 1, 120, 9}, EChordType::kDominant7).size(), 3U) << "130 is no key";
    EXPECT_EQ(StampChord(StateOf({{0, 2, 64, 9}}), {0, 1, 60, 9}, EChordType::kMajor).Notes().size(), 3U);

    const NoteState notes = StateOf({{0, 1, 61, 9}, {99, 1, 63, 9}});
    const CKeyRows fold = CKeyRows::FoldToScale({0, EScaleType::kMajor}, *notes.pattern);
    EXPECT_EQ(fold.Count(), 75 + 2);
    EXPECT_TRUE(fold.IsShown(61) && fold.IsShown(63) && !fold.IsShown(66));
    for (int row = 0; row < fold.Count(); ++row) EXPECT_EQ(fold.RowOfKey(fold.KeyOfRow(row)), row);
    EXPECT_EQ(fold.KeyOfRow(fold.RowOfKey(66)), 65);
    EXPECT_EQ(CKeyRows::FoldToUsed(*StateOf({}).pattern).Count(), 128);
}

TEST(CNoteIndexTest, FindsWhatALookAtEveryNoteFinds) {
    std::mt19937 random(3);
    const CNoteIndex index(StateOf(RandomNotes(random, 700, 500)).pattern);
    const Notes& notes = index.Pattern()->Notes();
    for (int turn = 0; turn < 500; ++turn) {
        const float from = static_cast<float>(random() % 5200U) / 10.0F;
        const NoteArea area{from, from + static_cast<float>(random() % 90U), 20, 100};
        const float least = turn % 2 == 0 ? 0.0F : 0.5F;
        NoteSelection expected;
        for (std::uint32_t i = 0; i < notes.size(); ++i) {
            const Note& note = notes[i];
            const float end = note.position + std::max(note.length, least);
            if (IsPlayable(note) && note.key >= 20 && note.key <= 100 && note.position < area.to &&
                (end > from || note.position >= from)) {
                expected.push_back(i);
            }
        }
        ASSERT_EQ(index.NotesIn(area, least), expected) << from;
    }
}

TEST(CNoteIndexTest, TheTopmostNoteIsTheOneDrawnLastAndACellMayBeCovered) {
    const CNoteIndex index(StateOf({{2, 1, 60, 9}, {0, 9, 60, 9}, {2, 1, 60, 8}, {12.25F, 0.5F, 60, 9}}).pattern);
    EXPECT_EQ(index.NoteAt(2.5F, 60), 2U);
    EXPECT_EQ(index.NoteAt(3.0F, 60), 1U);
    EXPECT_EQ(index.NoteAt(12.8F, 60), std::nullopt);
    EXPECT_EQ(index.NoteAt(12.8F, 60, 1.0F), 3U) << "as wide as it is drawn";
    EXPECT_TRUE(index.IsCellCovered(8, 1, 60));
    EXPECT_FALSE(index.IsCellCovered(9, 1, 60)) << "it ends there";
    EXPECT_FALSE(index.IsCellCovered(8, 1, 61));
    EXPECT_TRUE(index.IsCellCovered(12, 1, 60)) << "it begins within the cell";
}

}  // namespace
}  // namespace quib
