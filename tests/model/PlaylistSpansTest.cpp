// SPDX-License-Identifier: GPL-3.0-or-later
// Which pattern sounds from where to where in the song.

#include "model/PlaylistSpans.h"

#include <gtest/gtest.h>

#include <random>

using namespace quib;

namespace {

PatternLengths Lengths() {
    PatternLengths lengths;
    lengths.fill(16);
    lengths[1] = 64;
    lengths[2] = 8;
    lengths[3] = 5;
    return lengths;
}

// The rule as it is told, for one step after the other from the start.
std::vector<SongPlace> PlayedFromTheStart(const Playlist& playlist, const PatternLengths& lengths, int steps) {
    std::vector<SongPlace> played;
    int current = -1;
    for (int step = 0; step < steps; ++step) {
        int nearest = steps;
        int found = -1;
        for (std::size_t index = 0; index < playlist.size(); ++index) {
            const PlaylistEntry& entry = playlist[index];
            if (entry.pattern < 0 || entry.pattern > 15 || entry.start < 0) continue;
            const int distance = step - entry.start;
            if (distance < 0 || distance >= nearest) continue;
            if (distance >= lengths[static_cast<std::size_t>(entry.pattern)]) continue;
            nearest = distance;
            found = static_cast<int>(index);
        }
        if (found >= 0) current = found;
        SongPlace place;
        if (current >= 0) {
            const PlaylistEntry& entry = playlist[static_cast<std::size_t>(current)];
            const int length = lengths[static_cast<std::size_t>(entry.pattern)];
            if (found >= 0 || entry.repeat != 0) place = {current, (step - entry.start) % length};
        }
        played.push_back(place);
    }
    return played;
}

}  // namespace

TEST(PlaylistSpansTest, TheHardCases) {
    const struct {
        const char* what;
        Playlist playlist;
        std::vector<PlaylistSpan> spans;
    } cases[] = {
        {"nothing", {}, {}},
        {"a gap is silent", {{0, 0, 0}, {2, 32, 0}}, {{0, 0, 0, 16, 0, false}, {1, 2, 32, 40, 32, false}}},
        {"a repeat goes on until another begins, in the middle of its pattern",
         {{3, 1, 1}, {2, 9, 0}},
         {{0, 3, 1, 6, 1, false}, {0, 3, 6, 9, 1, true}, {1, 2, 9, 17, 9, false}}},
        {"a repeat without another has no end",
         {{0, 4, 7}},
         {{0, 0, 4, 20, 4, false}, {0, 0, 20, kNoSongEnd, 4, true}}},
        {"the longer one comes back after the shorter, and it is the one that goes on",
         {{1, 0, 1}, {2, 16, 0}},
         {{0, 1, 0, 16, 0, false},
          {1, 2, 16, 24, 16, false},
          {0, 1, 24, 64, 0, false},
          {0, 1, 64, kNoSongEnd, 0, true}}},
        {"the later one ends last: its silence holds",
         {{2, 0, 1}, {0, 4, 0}},
         {{0, 2, 0, 4, 0, false}, {1, 0, 4, 20, 4, false}}},
        {"of two with one start the first of the list, then the longer one",
         {{2, 8, 1}, {0, 8, 0}},
         {{0, 2, 8, 16, 8, false}, {1, 0, 16, 24, 8, false}}},
        {"what names no pattern or no place", {{16, 0, 1}, {-1, 0, 1}, {0, -4, 1}, {0, kMaximumSongStep + 1, 1}}, {}},
    };
    for (const auto& one : cases) EXPECT_EQ(PlaylistSpans(one.playlist, Lengths()), one.spans) << one.what;
    EXPECT_EQ(LengthOf(PlaylistSpans({{0, 0, 0}, {2, 32, 0}}, Lengths())).steps, 40);
    const PlaylistLength endless = LengthOf(PlaylistSpans({{0, 4, 1}}, Lengths()));
    EXPECT_EQ(endless.steps, 20);
    EXPECT_TRUE(endless.endless);
}

TEST(PlaylistSpansTest, SpansAndPlacesAreTheRulePlayedFromTheStart) {
    std::mt19937 draw(7);
    for (int round = 0; round < 1000; ++round) {
        PatternLengths lengths;
        for (auto& length : lengths) length = 1 + static_cast<int>(draw() % 40);
        Playlist playlist;
        for (auto count = draw() % 9; count > 0; --count) {
            playlist.push_back(
                {static_cast<int>(draw() % 18) - 1, static_cast<int>(draw() % 120) - 2, static_cast<int>(draw() % 2)});
        }
        const auto played = PlayedFromTheStart(playlist, lengths, 200);
        std::vector<SongPlace> spanned(played.size());
        for (const PlaylistSpan& span : PlaylistSpans(playlist, lengths)) {
            for (int step = span.first; step < std::min(span.end, 200); ++step) {
                const int length = lengths[static_cast<std::size_t>(span.pattern)];
                spanned[static_cast<std::size_t>(step)] = {span.entry, (step - span.origin) % length};
            }
        }
        ASSERT_EQ(spanned, played) << "round " << round;
        for (int step = 0; step < 200; ++step) {
            ASSERT_EQ(PlaylistPlaceAt(playlist, lengths, step), played[static_cast<std::size_t>(step)]);
        }
    }
}
