// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the mouse does to the items of a lane, with the keys that are held meanwhile. Events come as plain
// numbers, in skin pixels from the lane's left edge. A gesture is one step of undo, and Escape leaves none.
// User-interface thread; knows no window.

#include <optional>

#include "editors/playlist/CPlaylistEdit.h"
#include "editors/playlist/SongView.h"

namespace quib {

enum class ESongCursor { kArrow, kHand, kMoveAll, kCross, kResize, kPan };

class IPlaylistSurface {
public:
    virtual ~IPlaylistSurface() = default;
    virtual void SetCursor(ESongCursor cursor) = 0;
    // Items, selection or marquee are others.
    virtual void LaneChanged() = 0;
    // The selection was cleared by a press: whoever shows it looks again.
    virtual void SelectionCleared() = 0;
    // An end could not be set: no pattern is empty.
    virtual void EndRefused() = 0;
    virtual void ShowMenu() = 0;
    virtual void ScrollBy(int pixels) = 0;
};

class CPlaylistGestures {
public:
    CPlaylistGestures(CPlaylistEdit& edited, const SongView& shown, IPlaylistSurface& drawn)
        : edit(edited), view(shown), surface(drawn) {}

    // Buttons: 0 left, 1 right, 2 middle.
    void Press(int button, int x);
    void Move(int x);
    void Release(int x);
    void Cancel();
    // Modifiers as they are now; a change during a drag changes what the drag does.
    void SetModifiers(bool shiftHeld, bool controlHeld, bool altHeld);
    void SetDeleteHeld(bool held);
    // While Delete is held, a press or sweep has removed something.
    bool HasSwept() const noexcept { return swept; }

    bool IsBusy() const noexcept { return mode != EMode::kNone; }
    bool ScrollsAtEdges() const noexcept { return mode != EMode::kNone && mode != EMode::kPan; }
    // Items are dragged, by so many steps, themselves or copies of them.
    bool IsMovingItems() const noexcept { return mode == EMode::kItem && !resizeByKey; }
    bool IsCopying() const noexcept { return copyByKey; }
    int DragSteps() const noexcept { return dragSteps; }
    // While they are dragged over another lane, they stand here where they stood.
    void SetElsewhere(bool on);
    // The item under a place; -1 none.
    std::int32_t ItemAt(int x) const;
    std::int32_t HitItem() const noexcept { return hit; }
    // Pixels of the marquee, if there is one.
    std::optional<std::pair<int, int>> Marquee() const;
    ESongCursor CursorAt(int x) const;

    int currentPattern = 0;  // that new items play, 0..15

private:
    enum class EMode { kNone, kItem, kEnd, kPaint, kMarquee, kSweep, kPan };

    void PressItem(int button, int x);
    void PressEmpty(int button, int x);
    bool IsOverEnd(std::int32_t item, int x) const;
    void DragItem(int x);
    void DragEnd(int x);
    void Paint(int x);
    void SelectMarquee();
    void Sweep(int x);
    int Raster() const noexcept { return alt ? 1 : view.Raster(); }
    const char* StepName() const noexcept;

    CPlaylistEdit& edit;
    const SongView& view;
    IPlaylistSurface& surface;

    EMode mode = EMode::kNone;
    int pressButton = 0;
    int pressX = 0;
    int mouseX = 0;
    double pressStep = 0;
    bool moved = false;
    bool refused = false;
    std::int32_t hit = -1;
    StepRange hitRange;  // at the press
    int paintFirst = 0;
    int dragSteps = 0;
    bool elsewhere = false;
    PlaylistSelection marqueeBase;
    bool shift = false, control = false, alt = false, deleteHeld = false;
    bool resizeByKey = false, copyByKey = false;
    bool swept = false;
};

}  // namespace quib
