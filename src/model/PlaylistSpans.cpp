// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/PlaylistSpans.h"

#include <algorithm>

namespace quib {

namespace {

bool IsMeant(const PlaylistEntry& entry) noexcept {
    return entry.pattern >= 0 && entry.pattern < kPatternCount && entry.start >= 0 && entry.start <= kMaximumSongStep;
}

std::int32_t LengthOf(const PlaylistEntry& entry, const PatternLengths& lengths) noexcept {
    return std::clamp(lengths[static_cast<std::size_t>(entry.pattern)], 1, kMaximumStepCount);
}

// Where the first time of its pattern ends.
std::int32_t EndOf(const PlaylistEntry& entry, const PatternLengths& lengths) noexcept {
    return entry.start + LengthOf(entry, lengths);
}

// The entries that are meant, by start; of those with one start the first of the list comes last and wins.
std::vector<std::int32_t> ByStart(const Playlist& playlist) {
    std::vector<std::int32_t> order;
    order.reserve(playlist.size());
    for (auto index = static_cast<std::int32_t>(playlist.size()) - 1; index >= 0; --index) {
        if (IsMeant(playlist[static_cast<std::size_t>(index)])) order.push_back(index);
    }
    std::stable_sort(order.begin(), order.end(), [&playlist](std::int32_t left, std::int32_t right) {
        return playlist[static_cast<std::size_t>(left)].start < playlist[static_cast<std::size_t>(right)].start;
    });
    return order;
}

// Walks through the song with the entries that cover the place on a stack: the one that began last is on top.
class CSpanWalk {
public:
    CSpanWalk(const Playlist& entries, const PatternLengths& patternLengths)
        : playlist(entries), lengths(patternLengths) {}

    void Begin(std::int32_t entry) {
        WalkTo(Entry(entry).start);
        covering.push_back(entry);
    }

    void WalkTo(std::int32_t target) {
        while (!covering.empty() && place < target) {
            last = covering.back();
            const std::int32_t end = std::min(target, EndOf(Entry(last), lengths));
            Add(last, end, false);
            while (!covering.empty() && EndOf(Entry(covering.back()), lengths) <= place) covering.pop_back();
        }
        // Beyond all patterns the entry that last qualified goes on where it repeats.
        if (place < target && last >= 0 && Entry(last).repeat != 0) Add(last, target, true);
        place = target;
    }

    std::vector<PlaylistSpan> Take() { return std::move(spans); }

private:
    const PlaylistEntry& Entry(std::int32_t index) const { return playlist[static_cast<std::size_t>(index)]; }

    void Add(std::int32_t entry, std::int32_t end, bool repeats) {
        if (end > place) spans.push_back({entry, Entry(entry).pattern, place, end, Entry(entry).start, repeats});
        place = std::max(place, end);
    }

    const Playlist& playlist;
    const PatternLengths& lengths;
    std::vector<PlaylistSpan> spans;
    std::vector<std::int32_t> covering;
    std::int32_t place = 0;
    std::int32_t last = -1;  // the entry that last qualified
};

}  // namespace

PatternLengths PatternLengthsForEdit(const CInstrument& instrument) {
    PatternLengths lengths{};
    for (std::size_t index = 0; index < lengths.size(); ++index) {
        lengths[index] = instrument.patterns[index].ForEdit()->LoopLength();
    }
    return lengths;
}

PatternLengths PatternLengthsForRender(const CInstrument& instrument) noexcept {
    PatternLengths lengths{};
    for (std::size_t index = 0; index < lengths.size(); ++index) {
        lengths[index] = instrument.patterns[index].ForRender().LoopLength();
    }
    return lengths;
}

std::vector<PlaylistSpan> PlaylistSpans(const Playlist& playlist, const PatternLengths& lengths) {
    CSpanWalk walk(playlist, lengths);
    for (const std::int32_t entry : ByStart(playlist)) walk.Begin(entry);
    walk.WalkTo(kNoSongEnd);
    return walk.Take();
}

SongPlace PlaylistPlaceAt(const Playlist& playlist, const PatternLengths& lengths, std::int32_t step) noexcept {
    // The last step at or before this one that any pattern covers.
    std::int32_t covered = -1;
    for (const PlaylistEntry& entry : playlist) {
        if (!IsMeant(entry) || entry.start > step) continue;
        covered = std::max(covered, std::min(step, EndOf(entry, lengths) - 1));
    }
    if (covered < 0) return {};
    std::int32_t found = -1;
    for (std::size_t index = 0; index < playlist.size(); ++index) {
        const PlaylistEntry& entry = playlist[index];
        if (!IsMeant(entry) || entry.start > covered || EndOf(entry, lengths) <= covered) continue;
        if (found >= 0 && playlist[static_cast<std::size_t>(found)].start >= entry.start) continue;
        found = static_cast<std::int32_t>(index);
    }
    const PlaylistEntry& entry = playlist[static_cast<std::size_t>(found)];
    if (covered < step && entry.repeat == 0) return {};
    return {found, (step - entry.start) % LengthOf(entry, lengths)};
}

PlaylistLength LengthOf(const std::vector<PlaylistSpan>& spans) noexcept {
    if (spans.empty()) return {};
    const PlaylistSpan& last = spans.back();
    return last.end == kNoSongEnd ? PlaylistLength{last.first, true} : PlaylistLength{last.end, false};
}

}  // namespace quib
