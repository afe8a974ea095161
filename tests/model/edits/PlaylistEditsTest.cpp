// SPDX-License-Identifier: GPL-3.0-or-later
// What can be done to the song part of an instrument.

#include "model/edits/PlaylistEdits.h"

#include <gtest/gtest.h>

#include <random>

using namespace quib;

namespace {

// Pattern 0 to 12 have notes, 13 to 15 are empty; all are 16 steps long but the third, of 64.
SongPatterns Patterns() {
    SongPatterns patterns;
    patterns.lengths.fill(16);
    patterns.lengths[2] = 64;
    for (const std::size_t pattern : {13U, 14U, 15U}) patterns.empty[pattern] = true;
    return patterns;
}

PlaylistState State(Playlist playlist, PlaylistSelection selection = {}) {
    return {std::make_shared<const Playlist>(std::move(playlist)), std::move(selection)};
}

}  // namespace

TEST(PlaylistEditsTest, ItemsArePaintedRepeatedAndEndedByTheLastEmptyPattern) {
    const SongPatterns patterns = Patterns();
    const PlaylistState bass = PaintItem(State({}), patterns, 0, 64, 256);
    EXPECT_EQ(bass.Items(), (Playlist{{0, 64, 1}, {15, 256, 0}}));
    EXPECT_EQ(EndMarks(bass.Items(), patterns), (std::vector<std::int32_t>{1, -1}));
    EXPECT_EQ(PaintItem(State({}), patterns, 2, 0, 48).Items(), (Playlist{{2, 0, 0}})) << "longer than the drag";
    EXPECT_EQ(PaintItem(State({{1, 64, 0}}), patterns, 0, 0, 256).Items(), (Playlist{{1, 64, 0}, {0, 0, 1}}))
        << "up to the next one, which ends it";

    const PlaylistState longer = *SetItemEnd(bass, patterns, 0, 320);
    EXPECT_EQ(longer.Items(), (Playlist{{0, 64, 1}, {15, 320, 0}}));
    EXPECT_EQ(SetItemEnd(bass, patterns, 0, 70)->Items(), (Playlist{{0, 64, 0}}));
    EXPECT_EQ(RepeatItems(Select(bass, {0}), patterns, true).Items(), (Playlist{{0, 64, 1}})) << "without end";
    EXPECT_EQ(RemoveItems(bass, patterns, {0}).Items(), Playlist{}) << "its mark goes with it";
    EXPECT_EQ(MoveItems(Select(bass, {0}), patterns, -100).Items(), (Playlist{{0, 0, 1}, {15, 192, 0}}))
        << "as one, stopped at the beginning";
    EXPECT_EQ(CopyItems(Select(bass, {0}), patterns, 192).Items(), (Playlist{{0, 64, 1}, {0, 256, 1}, {15, 448, 0}}))
        << "the copy takes the place of the mark";

    SongPatterns full = patterns;
    full.empty = {};
    EXPECT_FALSE(SetItemEnd(State({{0, 0, 0}}), full, 0, 32)) << "no pattern is empty";
    EXPECT_EQ(PaintItem(State({}), full, 0, 0, 48).Items(), (Playlist{{0, 0, 0}, {0, 16, 0}, {0, 32, 0}}));
}

TEST(PlaylistEditsTest, ASplitStandsWhereThePatternBeginsAgain) {
    const PlaylistState song = State({{0, 0, 1}, {15, 64, 0}});
    EXPECT_FALSE(SplitItems(song, Patterns(), 40));
    EXPECT_FALSE(SplitItems(song, Patterns(), 0));
    const PlaylistState split = *SplitItems(song, Patterns(), 32);
    EXPECT_EQ(split.Items().back(), (PlaylistEntry{0, 32, 1}));
    const auto at = [&](int step) {
        const auto place = PlaylistPlaceAt(split.Items(), Patterns().lengths, step);
        return place.entry < 0 ? -1 : split.Items()[static_cast<std::size_t>(place.entry)].pattern * 100 + place.step;
    };
    EXPECT_EQ(at(31), 15);
    EXPECT_EQ(at(33), 1);
    EXPECT_EQ(at(64), 1500);
}

TEST(PlaylistEditsTest, TimeGoesInAndOutAndASectionComesTwice) {
    const SongPatterns patterns = Patterns();
    const Playlist song = {{0, 0, 1}, {1, 64, 0}, {2, 80, 0}};
    EXPECT_EQ(WithTimeInserted(song, 64, 32), (Playlist{{0, 0, 1}, {1, 96, 0}, {2, 112, 0}}));
    EXPECT_EQ(WithTimeDeleted(song, patterns, {64, 80}), (Playlist{{0, 0, 1}, {2, 64, 0}}));
    EXPECT_EQ(WithTimeDeleted(song, patterns, {80, 96}), (Playlist{{0, 0, 1}, {1, 64, 0}, {2, 80, 0}}))
        << "what sounds on stays";
    // Played twice, step for step.
    const Playlist doubled = WithSectionDoubled(song, patterns, {16, 80});
    for (int step = 0; step < 144; ++step) {
        const int source = step < 80 ? step : step - 64;
        const auto twice = PlaylistPlaceAt(doubled, patterns.lengths, step);
        const auto once = PlaylistPlaceAt(song, patterns.lengths, source);
        ASSERT_EQ(twice.step, once.step) << step;
        ASSERT_EQ(doubled[static_cast<std::size_t>(twice.entry)].pattern,
                  song[static_cast<std::size_t>(once.entry)].pattern);
    }
}

TEST(PlaylistEditsTest, RandomEditsKeepWhatTheyDoNotMeanAndValidSelections) {
    std::mt19937 draw(3);
    const SongPatterns patterns = Patterns();
    PlaylistState state = State({});
    for (int round = 0; round < 3000; ++round) {
        const int number = static_cast<int>(draw() % 400) - 100;
        const auto pick = static_cast<std::uint32_t>(draw() % std::max<std::size_t>(1, state.Items().size()));
        const PlaylistState before = state;
        if (draw() % 3 == 0 && !state.Items().empty()) state = Select(state, {pick, static_cast<std::uint32_t>(0)});
        switch (draw() % 7) {
            case 0:
                state = PaintItem(state, patterns, static_cast<int>(draw() % 13), std::max(0, number), number + 90);
                break;
            case 1:
                state = MoveItems(state, patterns, number);
                break;
            case 2:
                state = CopyItems(state, patterns, number);
                break;
            case 3:
                if (state.Items().size() > 12) state = RemoveItems(state, patterns, state.selection);
                break;
            case 4:
                state = SetItemPattern(state, number);
                break;
            case 5:
                if (!state.Items().empty()) state = SetItemEnd(state, patterns, pick, number).value_or(state);
                break;
            default:
                state = PasteItems(state, CopiedItems(state, patterns), std::max(0, number));
                break;
        }
        for (const PlaylistEntry& entry : state.Items()) {
            ASSERT_TRUE(entry.start >= 0 && entry.start <= kMaximumSongStep && entry.pattern >= 0 &&
                        entry.pattern < 16);
        }
        ASSERT_TRUE(std::is_sorted(state.selection.begin(), state.selection.end()));
        ASSERT_TRUE(state.selection.empty() || state.selection.back() < state.Items().size());
        if (state.Items().size() > 60) state = State({});
    }
}
