// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What keys do in a piano roll, so that everything works without a mouse: nudge, walk, add, delete, and the
// edits that have a key. A held key's changes are one step. User-interface thread; knows no window.

#include <optional>
#include <set>

#include "editors/pianoroll/CPianoRollGestures.h"

namespace quib {

// Where Enter adds a note.
struct EditCursor {
    float step = 0;
    int key = 60;
};

class CPianoRollKeys {
public:
    CPianoRollKeys(CPianoRollEdit& edited, PianoRollView& shown, PianoRollOptions& settings, IPianoRollSurface& drawn);

    // `mouse`: for the modifiers held and the place of the mouse. True when the key had a use. Comes again and
    // again while a key is held.
    bool KeyDown(int virtualKey, CPianoRollGestures& mouse);
    void KeyUp(int virtualKey, const CPianoRollGestures& mouse);
    // The mouse is at this place of the control.
    void MouseAt(int x, int y) noexcept;
    // Shown once a key has moved it.
    std::optional<EditCursor> ShownCursor() const noexcept;
    void HideCursor() noexcept { cursorShown = false; }

    // A key that is played into the pattern: keys held together are a chord at the cursor, which goes on by
    // the raster when all are up. Each chord is a step. Velocity 0: the key went up.
    void EnterStep(int key, int velocity);
    // The keys that are held now are none of a chord.
    void EndSteps();
    // From the 40 ms timer: ends what arrows made sound.
    void Tick();
    void Silence();

    // --- The edits that menus and buttons share with keys

    void Quantise();
    void Humanise();
    void Duplicate();
    void Join();
    // Under the mouse where it is over the selection, else at the middle of each note.
    void Split();
    void DeleteSelected();

private:
    bool EditByLetter(int virtualKey);
    bool EditPattern(int virtualKey);
    bool Arrow(int virtualKey, const CPianoRollGestures& mouse);
    void MoveCursor(float steps, int keys);
    void Nudge(float steps, int keys);
    void Lengthen(float steps);
    void Walk(bool back);
    void AddAtCursor();
    void Audition(int key, int velocity);
    float Raster() const noexcept;
    float NewLength() const noexcept;

    CPianoRollEdit& edit;
    PianoRollView& view;
    PianoRollOptions& options;
    IPianoRollSurface& surface;
    EditCursor cursor;
    bool cursorShown = false;
    std::set<int> entered;  // held keys
    int mouseX = -1, mouseY = -1;
    int sounding = -1;
    int heardTicks = 0;
};

}  // namespace quib
