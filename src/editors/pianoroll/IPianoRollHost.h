// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a piano roll needs of the window that holds it: the document behind the notes, the instrument that
// sounds, menus. The roll calls these on the user-interface thread, and only while an event is handled.

#include "model/edits/NoteState.h"

namespace quib {

class IPianoRollHost {
public:
    virtual ~IPianoRollHost() = default;

    // --- One gesture: any number of Preview, then Finish or Cancel

    // Publishes the pattern: heard and seen at once, no undo step yet.
    virtual void Preview(const NoteState& state) = 0;
    // What Preview showed last stays, as one undo step. `name` is the English text that names it.
    virtual void Finish(const char* name) = 0;
    // Everything is as before the first Preview; no undo step.
    virtual void Cancel() = 0;

    // Another selection in the same pattern; no undo step.
    virtual void SelectionChanged(const NoteState& state) = 0;
    // The length that a gesture sets, in steps, beside Preview.
    virtual void SetLength(int steps) = 0;

    // --- Sound and instrument

    // Straight to the plug-in. Every key that is switched on is switched off again.
    virtual void Audition(int key, int velocity, bool on) = 0;
    // A click on the key strip while a limit waits for its key. True when it was taken.
    virtual bool TakeKey(int key) = 0;
    // A limit is dragged; `done` at the end of the gesture.
    virtual void SetKeyLimit(bool upper, int key, bool done) = 0;

    // --- Window

    // At a place of the control.
    virtual void ShowMenu(int x, int y) = 0;
    // For all notes of a key.
    virtual void ShowRowMenu(int key) = 0;
    // Zoom or scroll has changed by hand.
    virtual void ViewChanged() = 0;
    // A drum's row has the focus, or its key was pressed on the strip.
    virtual void RowFocused(int key) = 0;
};

}  // namespace quib
