// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the mouse does in a piano roll: presses, drags, double click, wheel, and the modifier keys held
// meanwhile. Events come as plain numbers, in skin pixels from the control's upper left corner. A gesture
// is one step of the document, and Escape leaves none. User-interface thread; knows no window.

#include <optional>

#include "editors/pianoroll/CPianoRollEdit.h"
#include "editors/pianoroll/PianoRollOptions.h"
#include "editors/pianoroll/PianoRollView.h"

namespace quib {

enum class EMouseButton { kLeft, kRight, kMiddle };
enum class ERollCursor { kArrow, kHand, kMoveAll, kResize, kCross, kPan };

struct WheelTurn {
    int x = 0;
    int y = 0;
    float notches = 0;  // positive away from the user
    bool shift = false;
    bool control = false;
    bool alt = false;
};

// The selection rectangle, from the press to the mouse.
struct Marquee {
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;
};

// Told what to show beside the notes.
class IPianoRollSurface {
public:
    virtual ~IPianoRollSurface() = default;
    virtual void SetCursor(ERollCursor cursor) = 0;
    // The view has moved or zoomed.
    virtual void ViewMoved() = 0;
    // Marquee, pressed key or limits are others.
    virtual void MarksChanged() = 0;
    // The note that is edited, for the bubble; null at the end.
    virtual void ShowNote(const Note* note) = 0;
};

class CPianoRollGestures {
public:
    CPianoRollGestures(CPianoRollEdit& edited, PianoRollView& shown, PianoRollOptions& settings,
                       IPianoRollSurface& drawn);

    void Press(EMouseButton button, int x, int y);
    void Move(int x, int y);
    void Release(int x, int y);
    // Only for places of the grid (see IsInGrid); elsewhere the second click is another press.
    void DoubleClick(int x, int y);
    void Wheel(const WheelTurn& turn);
    // From the timer: scrolls while a drag is held beyond an edge of the grid.
    void ScrollAtEdge();
    // Modifiers by their virtual keys; true for Escape, which is taken.
    bool KeyDown(int virtualKey);
    void KeyUp(int virtualKey);

    bool IsInGrid(int x, int y) const noexcept;
    // A gesture on notes goes on.
    bool IsDragging() const noexcept { return mode == EMode::kMove || mode == EMode::kResize || mode == EMode::kFresh; }
    bool IsBusy() const noexcept { return mode != EMode::kNone; }
    bool IsControlHeld() const noexcept { return control; }
    bool IsShiftHeld() const noexcept { return shift; }
    bool IsAltHeld() const noexcept { return alt; }
    std::optional<Marquee> ShownMarquee() const noexcept;
    // The key that sounds under the mouse; -1 none.
    int SoundingKey() const noexcept { return sounding; }
    // What a press at this place would do.
    ERollCursor CursorAt(int x, int y) const;
    void ChangeVelocityAt(int x, int y, int change);

private:
    enum class EMode { kNone, kIdle, kFresh, kMove, kResize, kMarquee, kPan, kLength, kStrip, kLimit };

    void PressHeader(EMouseButton button, int x);
    void PressStrip(EMouseButton button, int x, int y);
    void PressGrid(EMouseButton button, int x, int y);
    void PressNote(EMouseButton button, std::uint32_t note);
    void PressEmpty(EMouseButton button, int x, int y);
    void AddNoteAt(int x, int y);
    void BeginDrag();
    bool IsOverEnd(std::uint32_t note, int x) const;
    void Drag(int x, int y);
    NoteState Dragged(int x, int y) const;
    NoteState Resized(int x) const;
    NoteState FreshNote(int x, int y) const;
    void DragMarquee();
    void DragLength(int x);
    void EndMouse();
    void Cancel();
    int KeyMoved(int y) const;
    double Raster() const noexcept { return alt ? 0 : view.time.SnapSteps(); }
    float NewLength() const noexcept;
    void Sound(int key, int velocity);
    void Silence() { Sound(-1, 0); }
    const char* DragName() const noexcept;
    // 0 none, 1 lower, 2 upper.
    int LimitAt(int x, int y) const noexcept;

    CPianoRollEdit& edit;
    PianoRollView& view;
    PianoRollOptions& options;
    IPianoRollSurface& surface;

    EMode mode = EMode::kNone;
    EMouseButton button = EMouseButton::kLeft;
    int pressX = 0, pressY = 0;
    int mouseX = 0, mouseY = 0;
    int panScroll = 0, panKeyScroll = 0;
    bool moved = false;  // farther than a click shakes
    std::optional<std::uint32_t> hit;
    Note anchor;
    NoteSelection marqueeBase;
    bool upperLimit = false;
    int limitBefore = 0;
    bool shift = false, control = false, alt = false;
    bool resizeByKey = false, copyByKey = false;
    int sounding = -1;
};

}  // namespace quib
