// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CPlaylistEdit.h"

#include <algorithm>

#include "texts/Texts.h"

namespace quib {

CPlaylistEdit::CPlaylistEdit(CChanges& documentChanges, std::shared_ptr<CInstrument> edited)
    : changes(documentChanges), instrument(std::move(edited)) {
    Refresh();
}

void CPlaylistEdit::Refresh() {
    state.playlist = instrument->playlist.ForEdit();
    state.selection = *selection;
    std::erase_if(state.selection, [this](std::uint32_t item) { return item >= state.Items().size(); });
    patterns = SongPatternsOf(*instrument);
    spans = PlaylistSpans(state.Items(), patterns.lengths);
    marks = EndMarks(state.Items(), patterns);
    isMark.assign(marks.size(), false);
    for (const std::int32_t mark : marks) {
        if (mark >= 0) isMark[static_cast<std::size_t>(mark)] = true;
    }
}

int CPlaylistEdit::EndPattern() const {
    const auto mark = std::find_if(marks.begin(), marks.end(), [](std::int32_t one) { return one >= 0; });
    return mark != marks.end() ? state.Items()[static_cast<std::size_t>(*mark)].pattern : -1;
}

void CPlaylistEdit::Begin() {
    Cancel();
    start = state;
    gesture = std::make_unique<CGesture>(changes);
}

void CPlaylistEdit::Preview(const PlaylistState& next) {
    if (!gesture || (next.Items() == state.Items() && next.selection == state.selection)) return;
    const auto select = [kept = selection](const PlaylistSelection& chosen) { *kept = chosen; };
    gesture->Note(
        selection.get(), [select, before = start.selection] { select(before); },
        [select, after = next.selection] { select(after); });
    gesture->Publish(PlaylistPlace(instrument), next.playlist);
    Refresh();
}

void CPlaylistEdit::Finish(const char* name) {
    if (!gesture) return;
    // A way back to where it began is no step.
    if (state.Items() == start.Items()) return Cancel();
    gesture->Finish(Text(name));
    gesture.reset();
}

void CPlaylistEdit::Cancel() {
    if (!gesture) return;
    gesture->Cancel();
    gesture.reset();
    Refresh();
}

void CPlaylistEdit::Apply(const PlaylistState& next, const char* name) {
    Begin();
    Preview(next);
    Finish(name);
}

void CPlaylistEdit::Select(PlaylistSelection chosen) {
    *selection = quib::Select(state, std::move(chosen)).selection;
    state.selection = *selection;
}

StepRange CPlaylistEdit::ItemRange(std::int32_t item, int songEnd) const {
    StepRange range{kNoSongEnd, 0};
    for (const PlaylistSpan& span : spans) {
        if (span.entry != item) continue;
        range.first = std::min(range.first, span.first);
        range.end = span.end == kNoSongEnd ? std::max(songEnd, span.first) : span.end;
    }
    return range.IsEmpty() ? StepRange{} : range;
}

std::ptrdiff_t CPlaylistEdit::SpanAt(double step) const {
    const auto behind = std::upper_bound(spans.begin(), spans.end(), step,
                                         [](double place, const PlaylistSpan& span) { return place < span.first; });
    return behind - spans.begin() - 1;
}

}  // namespace quib
