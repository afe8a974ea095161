// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the mouse does in the velocity lane: a drag paints the bars that it passes; a press on the bar of a
// selected note moves all selected ones together. Places are skin pixels of the lane, whose grid begins
// where that of the piano roll does. User-interface thread; knows no window.

#include "editors/pianoroll/CPianoRollEdit.h"
#include "editors/pianoroll/PianoRollView.h"

namespace quib {

class CVelocityGestures {
public:
    static constexpr int kBarWidth = 8;
    static constexpr int kHead = 8;  // pixels above 127
    static constexpr int kFoot = 2;  // pixels below 0

    CVelocityGestures(CPianoRollEdit& edited, const PianoRollView& shown) : edit(edited), view(shown) {}

    void Resize(int newHeight) noexcept { height = newHeight; }
    void Press(int x, int y);
    void Move(int x, int y);
    void Release();
    // Escape: true when there was something to give up.
    bool Cancel();
    bool IsBusy() const noexcept { return mode != EMode::kNone; }
    // The note whose bar is at a place, whatever its height; the one last drawn where several are.
    std::optional<std::uint32_t> BarAt(int x) const;
    int VelocityAt(int y) const noexcept;
    // Upper edge of a bar.
    double YOf(int velocity) const noexcept;
    // Where the lane's row of drums is the one in focus: the others are not touched. -1: all.
    int onlyKey = -1;

private:
    enum class EMode { kNone, kPaint, kMoveAll };
    NoteState Painted(const NoteState& from, int x0, int y0, int x1, int y1) const;

    CPianoRollEdit& edit;
    const PianoRollView& view;
    EMode mode = EMode::kNone;
    int height = 80;
    int lastX = 0, lastY = 0;
    int pressVelocity = 0;
};

}  // namespace quib
