// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which pattern of an instrument sounds from where to where in song mode. The entry that last qualified is
// the current one: a repeat goes on until another entry qualifies. The answer for a step depends on the
// playlist alone, never on how playing came there. Plain functions, any thread.

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "model/CInstrument.h"

namespace quib {

// Loop lengths of the patterns in steps, each at least 1.
using PatternLengths = std::array<std::int32_t, kPatternCount>;
PatternLengths PatternLengthsForEdit(const CInstrument& instrument);
PatternLengths PatternLengthsForRender(const CInstrument& instrument) noexcept;

// End of a repeat that no entry ends.
constexpr std::int32_t kNoSongEnd = std::numeric_limits<std::int32_t>::max();

// Steps [first, end) of the song. The step of the pattern is (song step - origin) modulo its length.
struct PlaylistSpan {
    std::int32_t entry = 0;  // index into the playlist
    std::int32_t pattern = 0;
    std::int32_t first = 0;
    std::int32_t end = 0;
    std::int32_t origin = 0;  // where the entry begins
    bool repeats = false;     // beyond the first time that the pattern is played

    friend bool operator==(const PlaylistSpan&, const PlaylistSpan&) = default;
};

// In the order of time, without overlaps; where there is none the instrument is silent. Entries that name
// no pattern or begin outside of [0, kMaximumSongStep] are passed over.
std::vector<PlaylistSpan> PlaylistSpans(const Playlist& playlist, const PatternLengths& lengths);

struct SongPlace {
    std::int32_t entry = -1;  // -1: silence
    std::int32_t step = -1;   // of the entry's pattern

    friend bool operator==(const SongPlace&, const SongPlace&) = default;
};

// What the spans say of one song step; allocates nothing.
SongPlace PlaylistPlaceAt(const Playlist& playlist, const PatternLengths& lengths, std::int32_t step) noexcept;

// Where the last span ends, in steps; `endless` tells a repeat without an end, of which the first time counts.
struct PlaylistLength {
    std::int32_t steps = 0;
    bool endless = false;
};
PlaylistLength LengthOf(const std::vector<PlaylistSpan>& spans) noexcept;

}  // namespace quib
