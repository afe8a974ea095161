// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/PlaylistEdits.h"

#include <algorithm>

namespace quib {

namespace {

// The workbench of one edit.
struct Draft {
    Playlist items;
    std::vector<bool> gone;
    PlaylistSelection selection;

    explicit Draft(const PlaylistState& state)
        : items(state.Items()), gone(items.size(), false), selection(state.selection) {}

    std::uint32_t Add(const PlaylistEntry& entry) {
        items.push_back(entry);
        gone.push_back(false);
        return static_cast<std::uint32_t>(items.size() - 1);
    }
    void Remove(std::int32_t item) {
        if (item >= 0) gone[static_cast<std::size_t>(item)] = true;
    }
    // Makes room for the items of `kept`: what else begins where they do goes.
    void Clear(const std::vector<std::uint32_t>& kept) {
        std::vector<std::int32_t> starts;
        std::vector<bool> stays(items.size(), false);
        for (const std::uint32_t item : kept) {
            starts.push_back(items[item].start);
            stays[item] = true;
        }
        std::sort(starts.begin(), starts.end());
        for (std::size_t item = 0; item < items.size(); ++item) {
            if (!stays[item] && std::binary_search(starts.begin(), starts.end(), items[item].start)) gone[item] = true;
        }
    }
    PlaylistState State() const {
        Playlist next;
        std::vector<std::int32_t> place(items.size(), -1);
        for (std::size_t item = 0; item < items.size(); ++item) {
            if (gone[item]) continue;
            place[item] = static_cast<std::int32_t>(next.size());
            next.push_back(items[item]);
        }
        PlaylistState state{std::make_shared<const Playlist>(std::move(next)), {}};
        for (const std::uint32_t item : selection) {
            if (place[item] >= 0) state.selection.push_back(static_cast<std::uint32_t>(place[item]));
        }
        std::sort(state.selection.begin(), state.selection.end());
        return state;
    }
};

std::int32_t LengthOf(const SongPatterns& patterns, int pattern) {
    return patterns.lengths[static_cast<std::size_t>(std::clamp(pattern, 0, kPatternCount - 1))];
}

// The empty pattern that ends repeats: one that does so already, else the last that no item plays; -1 none.
int EndPattern(const Playlist& playlist, const SongPatterns& patterns, const std::vector<std::int32_t>& marks) {
    for (const std::int32_t mark : marks) {
        if (mark >= 0) return playlist[static_cast<std::size_t>(mark)].pattern;
    }
    for (int pattern = kPatternCount - 1; pattern >= 0; --pattern) {
        const bool played = std::any_of(playlist.begin(), playlist.end(),
                                        [pattern](const PlaylistEntry& entry) { return entry.pattern == pattern; });
        if (patterns.empty[static_cast<std::size_t>(pattern)] && !played) return pattern;
    }
    return -1;
}

// The first item behind `start` that is not `mark`; kNoSongEnd without one.
int NextStart(const Playlist& playlist, int start, std::int32_t mark) {
    int next = kNoSongEnd;
    for (std::size_t item = 0; item < playlist.size(); ++item) {
        if (static_cast<std::int32_t>(item) == mark || playlist[item].start <= start) continue;
        next = std::min(next, playlist[item].start);
    }
    return next;
}

// The selection with its end marks.
std::vector<std::uint32_t> WithMarks(const PlaylistSelection& items, const std::vector<std::int32_t>& marks) {
    std::vector<std::uint32_t> all = items;
    for (const std::uint32_t item : items) {
        if (marks[item] >= 0) all.push_back(static_cast<std::uint32_t>(marks[item]));
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

int LimitedMove(const Playlist& playlist, const std::vector<std::uint32_t>& items, int steps) {
    int least = kMaximumSongStep;
    int most = 0;
    for (const std::uint32_t item : items) {
        least = std::min(least, playlist[item].start);
        most = std::max(most, playlist[item].start);
    }
    return items.empty() ? 0 : std::clamp(steps, -least, std::max(0, kMaximumSongStep - most));
}

}  // namespace

SongPatterns SongPatternsOf(const CInstrument& instrument) {
    SongPatterns patterns;
    patterns.lengths = PatternLengthsForEdit(instrument);
    for (std::size_t index = 0; index < patterns.empty.size(); ++index) {
        patterns.empty[index] = instrument.patterns[index].ForEdit()->Notes().empty();
    }
    return patterns;
}

std::vector<std::int32_t> EndMarks(const Playlist& playlist, const SongPatterns& patterns) {
    std::vector<std::int32_t> marks(playlist.size(), -1);
    const std::vector<PlaylistSpan> spans = PlaylistSpans(playlist, patterns.lengths);
    for (std::size_t index = 1; index < spans.size(); ++index) {
        const PlaylistSpan& before = spans[index - 1];
        const PlaylistSpan& span = spans[index];
        const bool ends = before.repeats && before.end == span.first && span.origin == span.first;
        const bool silent = patterns.empty[static_cast<std::size_t>(span.pattern)] &&
                            playlist[static_cast<std::size_t>(span.entry)].repeat == 0;
        if (ends && silent && before.pattern != span.pattern)
            marks[static_cast<std::size_t>(before.entry)] = span.entry;
    }
    return marks;
}

bool IsSelected(const PlaylistState& state, std::uint32_t item) noexcept {
    return std::binary_search(state.selection.begin(), state.selection.end(), item);
}

PlaylistState Select(const PlaylistState& state, PlaylistSelection selection) {
    std::sort(selection.begin(), selection.end());
    selection.erase(std::unique(selection.begin(), selection.end()), selection.end());
    return {state.playlist, std::move(selection)};
}

PlaylistState SelectAll(const PlaylistState& state, const SongPatterns& patterns) {
    std::vector<bool> isMark(state.Items().size(), false);
    for (const std::int32_t mark : EndMarks(state.Items(), patterns)) {
        if (mark >= 0) isMark[static_cast<std::size_t>(mark)] = true;
    }
    PlaylistSelection all;
    for (std::uint32_t item = 0; item < isMark.size(); ++item) {
        if (!isMark[item]) all.push_back(item);
    }
    return {state.playlist, std::move(all)};
}

PlaylistState AddItem(const PlaylistState& state, const SongPatterns& /*patterns*/, int pattern, int start) {
    Draft draft(state);
    const std::uint32_t item =
        draft.Add({std::clamp(pattern, 0, kPatternCount - 1), std::clamp(start, 0, kMaximumSongStep), 0});
    draft.Clear({item});
    draft.selection = {item};
    return draft.State();
}

PlaylistState PaintItem(const PlaylistState& state, const SongPatterns& patterns, int pattern, int first, int end) {
    PlaylistState next = AddItem(state, patterns, pattern, first);
    const int length = LengthOf(patterns, pattern);
    const int limit = std::min(end, NextStart(next.Items(), first, -1));
    if (limit - first <= length) return next;
    if (const auto ended = SetItemEnd(next, patterns, next.selection.front(), limit)) return *ended;
    PlaylistSelection painted = next.selection;
    for (int start = first + length; start < limit; start += length) {
        next = AddItem(next, patterns, pattern, start);
        painted.push_back(next.selection.front());
    }
    return Select(next, std::move(painted));
}

std::optional<PlaylistState> SetItemEnd(const PlaylistState& state, const SongPatterns& patterns, std::uint32_t item,
                                        int end) {
    const std::vector<std::int32_t> marks = EndMarks(state.Items(), patterns);
    const int endPattern = EndPattern(state.Items(), patterns, marks);
    Draft draft(state);
    draft.Remove(marks[item]);
    PlaylistEntry& entry = draft.items[item];
    const bool longer = end > entry.start + LengthOf(patterns, entry.pattern);
    entry.repeat = longer ? 1 : 0;
    const bool another = end >= NextStart(state.Items(), entry.start, marks[item]);
    if (!longer || another) return draft.State();
    if (endPattern < 0 || endPattern == entry.pattern) return std::nullopt;
    draft.Add({endPattern, std::min(end, kMaximumSongStep), 0});
    return draft.State();
}

PlaylistState RepeatItems(const PlaylistState& state, const SongPatterns& patterns, bool repeat) {
    const std::vector<std::int32_t> marks = EndMarks(state.Items(), patterns);
    Draft draft(state);
    for (const std::uint32_t item : state.selection) {
        draft.items[item].repeat = repeat ? 1 : 0;
        draft.Remove(marks[item]);
    }
    return draft.State();
}

PlaylistState MoveItems(const PlaylistState& state, const SongPatterns& patterns, int steps) {
    const std::vector<std::uint32_t> moved = WithMarks(state.selection, EndMarks(state.Items(), patterns));
    const int way = LimitedMove(state.Items(), moved, steps);
    if (way == 0) return state;
    Draft draft(state);
    for (const std::uint32_t item : moved) draft.items[item].start += way;
    draft.Clear(moved);
    return draft.State();
}

PlaylistState CopyItems(const PlaylistState& state, const SongPatterns& patterns, int steps) {
    const std::vector<std::int32_t> marks = EndMarks(state.Items(), patterns);
    const int way = LimitedMove(state.Items(), WithMarks(state.selection, marks), steps);
    if (way == 0) return state;
    Draft draft(state);
    std::vector<std::uint32_t> added;
    draft.selection.clear();
    for (const std::uint32_t item : WithMarks(state.selection, marks)) {
        PlaylistEntry copy = state.Items()[item];
        copy.start += way;
        added.push_back(draft.Add(copy));
        if (IsSelected(state, item)) draft.selection.push_back(added.back());
    }
    draft.Clear(added);
    return draft.State();
}

PlaylistState RemoveItems(const PlaylistState& state, const SongPatterns& patterns, const PlaylistSelection& items) {
    Draft draft(state);
    for (const std::uint32_t item : WithMarks(items, EndMarks(state.Items(), patterns))) {
        draft.Remove(static_cast<std::int32_t>(item));
    }
    return draft.State();
}

PlaylistState SetItemPattern(const PlaylistState& state, int pattern) {
    Draft draft(state);
    for (const std::uint32_t item : state.selection) {
        draft.items[item].pattern = std::clamp(pattern, 0, kPatternCount - 1);
    }
    return draft.State();
}

std::optional<PlaylistState> SplitItems(const PlaylistState& state, const SongPatterns& patterns, int step) {
    for (const PlaylistSpan& span : PlaylistSpans(state.Items(), patterns.lengths)) {
        if (step < span.first || step >= span.end || !span.repeats) continue;
        if ((step - span.origin) % LengthOf(patterns, span.pattern) != 0) return std::nullopt;
        Draft draft(state);
        const std::uint32_t second = draft.Add({span.pattern, step, 1});
        draft.selection = {second};
        return draft.State();
    }
    return std::nullopt;
}

PlaylistState WithForeignItems(const PlaylistState& state, const SongPatterns& patterns, const PlaylistState& source,
                               const SongPatterns& sourcePatterns, const std::map<int, int>& patternOf, int steps) {
    const std::vector<std::int32_t> marks = EndMarks(source.Items(), sourcePatterns);
    const int way = LimitedMove(source.Items(), source.selection, steps);
    Draft draft(state);
    draft.selection.clear();
    for (const std::uint32_t item : source.selection) {
        PlaylistEntry entry = source.Items()[item];
        entry.pattern = patternOf.at(std::clamp(entry.pattern, 0, kPatternCount - 1));
        entry.start += way;
        draft.selection.push_back(draft.Add(entry));
    }
    draft.Clear(draft.selection);
    PlaylistState next = draft.State();
    // The selection is theirs, in their order, whatever goes or comes beside them.
    for (std::size_t index = 0; index < source.selection.size(); ++index) {
        const std::int32_t mark = marks[source.selection[index]];
        if (mark < 0) continue;
        const int end = source.Items()[static_cast<std::size_t>(mark)].start + way;
        const auto ended = SetItemEnd(next, patterns, next.selection[index], end);
        if (ended) next = *ended;
    }
    return next;
}

StepRange RangeOf(const PlaylistState& state, const SongPatterns& patterns, int songEnd) {
    StepRange range{kNoSongEnd, 0};
    for (const PlaylistSpan& span : PlaylistSpans(state.Items(), patterns.lengths)) {
        if (!IsSelected(state, static_cast<std::uint32_t>(span.entry))) continue;
        range.first = std::min(range.first, span.first);
        range.end = std::max(range.end, span.end == kNoSongEnd ? std::max(songEnd, span.first) : span.end);
    }
    return range.IsEmpty() ? StepRange{} : range;
}

Playlist WithTimeInserted(const Playlist& playlist, int at, int steps) {
    Playlist next = playlist;
    for (PlaylistEntry& entry : next) {
        if (entry.start >= at) entry.start = std::min(entry.start + steps, kMaximumSongStep);
    }
    return next;
}

Playlist WithTimeDeleted(const Playlist& playlist, const SongPatterns& patterns, StepRange range) {
    const std::int32_t sounding = PlaylistPlaceAt(playlist, patterns.lengths, range.end).entry;
    Playlist next;
    for (std::size_t item = 0; item < playlist.size(); ++item) {
        PlaylistEntry entry = playlist[item];
        if (entry.start >= range.end) {
            entry.start -= range.end - range.first;
        } else if (entry.start >= range.first) {
            if (static_cast<std::int32_t>(item) != sounding) continue;
            const bool replaced = std::any_of(playlist.begin(), playlist.end(), [&range](const PlaylistEntry& other) {
                return other.start == range.end;
            });
            if (replaced) continue;
            entry.start = range.first;
        }
        next.push_back(entry);
    }
    return next;
}

Playlist WithSectionDoubled(const Playlist& playlist, const SongPatterns& patterns, StepRange range) {
    const int length = range.end - range.first;
    Playlist next = WithTimeInserted(playlist, range.end, length);
    bool begins = false;
    for (const PlaylistEntry& entry : playlist) {
        if (entry.start < range.first || entry.start >= range.end) continue;
        begins = begins || entry.start == range.first;
        next.push_back({entry.pattern, entry.start + length, entry.repeat});
    }
    // What sounded already when the range began sounds again at its second beginning.
    const std::int32_t sounding = PlaylistPlaceAt(playlist, patterns.lengths, range.first).entry;
    if (!begins && sounding >= 0) {
        const PlaylistEntry& entry = playlist[static_cast<std::size_t>(sounding)];
        next.push_back({entry.pattern, range.end, entry.repeat});
    }
    return next;
}

Playlist CopiedItems(const PlaylistState& state, const SongPatterns& patterns) {
    Playlist copied;
    int first = kMaximumSongStep;
    for (const std::uint32_t item : WithMarks(state.selection, EndMarks(state.Items(), patterns))) {
        copied.push_back(state.Items()[item]);
        first = std::min(first, copied.back().start);
    }
    for (PlaylistEntry& entry : copied) entry.start -= first;
    return copied;
}

PlaylistState PasteItems(const PlaylistState& state, const Playlist& items, int at) {
    Draft draft(state);
    draft.selection.clear();
    for (PlaylistEntry entry : items) {
        entry.start = std::min(entry.start + at, kMaximumSongStep);
        draft.selection.push_back(draft.Add(entry));
    }
    draft.Clear(draft.selection);
    return draft.State();
}

}  // namespace quib
