// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The song part of one instrument as a lane shows it, and the gesture that changes it: it begins with what is
// there, publishes any number of others, and ends as one step of undo or as none. The selection goes back and
// forth with the steps. User-interface thread.

#include <memory>
#include <optional>

#include "document/CChanges.h"
#include "model/edits/PlaylistEdits.h"

namespace quib {

class CPlaylistEdit {
public:
    CPlaylistEdit(CChanges& documentChanges, std::shared_ptr<CInstrument> edited);

    const std::shared_ptr<CInstrument>& Instrument() const noexcept { return instrument; }
    const PlaylistState& State() const noexcept { return state; }
    const SongPatterns& Patterns() const noexcept { return patterns; }
    const std::vector<PlaylistSpan>& Spans() const noexcept { return spans; }
    // Whether an item only ends a repeat.
    bool IsEndMark(std::int32_t item) const { return isMark[static_cast<std::size_t>(item)]; }
    // The pattern of the end marks; -1 without any.
    int EndPattern() const;
    bool HasEndMark(std::int32_t item) const { return marks[static_cast<std::size_t>(item)] >= 0; }

    // Takes over what the document has now.
    void Refresh();

    bool IsOpen() const noexcept { return gesture != nullptr; }
    const PlaylistState& Start() const noexcept { return start; }
    void Begin();
    void Preview(const PlaylistState& next);
    // `name` is the English text of the step.
    void Finish(const char* name);
    void Cancel();
    void Apply(const PlaylistState& next, const char* name);
    void Select(PlaylistSelection selection);
    void SelectNone() { Select({}); }

    // Steps [first, end) that an item sounds on; a repeat without an end goes up to `songEnd`.
    StepRange ItemRange(std::int32_t item, int songEnd) const;
    // The last span that begins at or before a step; -1 without one.
    std::ptrdiff_t SpanAt(double step) const;

private:
    CChanges& changes;
    std::shared_ptr<CInstrument> instrument;
    std::shared_ptr<PlaylistSelection> selection = std::make_shared<PlaylistSelection>();
    PlaylistState state;
    PlaylistState start;
    SongPatterns patterns;
    std::vector<PlaylistSpan> spans;
    std::vector<std::int32_t> marks;
    std::vector<bool> isMark;
    std::unique_ptr<CGesture> gesture;
};

}  // namespace quib
