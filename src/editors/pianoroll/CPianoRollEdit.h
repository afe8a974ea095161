// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The notes that a piano roll shows, and the gesture that changes them: it begins with the state as it is,
// shows any number of others, and ends as one step, as none, or, where more of the same may follow at once
// (a click that may become a double click, notches of the wheel), a little later. User-interface thread.

#include <functional>
#include <memory>

#include "editors/pianoroll/IPianoRollHost.h"
#include "model/edits/CNoteIndex.h"

namespace quib {

class CPianoRollEdit {
public:
    explicit CPianoRollEdit(IPianoRollHost& window);

    const NoteState& State() const noexcept { return state; }
    const CNoteIndex& Index() const noexcept { return *index; }
    // From the document. A gesture that goes on is given up without a word when the pattern is another one.
    void Show(const NoteState& next);

    // --- Gestures

    bool IsOpen() const noexcept { return open; }
    // The state at the gesture's beginning.
    const NoteState& Start() const noexcept { return start; }
    void Begin();
    void Preview(const NoteState& next);
    // No step when nothing has changed. `name` is kept by the caller for good.
    void Finish(const char* name);
    void Cancel();
    // Without a gesture: a step of one change.
    void Apply(const NoteState& next, const char* name);
    // As Apply, but changes of the same name add up to one step until Settle.
    void Accumulate(const NoteState& next, const char* name);

    // --- Ends that wait

    void FinishLater(const char* name) noexcept { pending = name; }
    // The name of what waits; null when nothing does.
    const char* Pending() const noexcept { return pending; }
    // Makes a step of what waits. Before anything else is done to the document.
    void Settle();

    void Select(const NoteState& next);
    void SelectNone() { Select(quib::Select(state, {})); }

    // The state is another one; the argument is the one before.
    std::function<void(const NoteState& before)> onShown;

    IPianoRollHost& host;

private:
    void Take(const NoteState& next);

    NoteState state;
    NoteState start;
    std::unique_ptr<CNoteIndex> index;
    const char* pending = nullptr;
    bool open = false;
    bool previewed = false;
};

}  // namespace quib
