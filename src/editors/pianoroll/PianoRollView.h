// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a piano roll shows and where: zoom and scroll of both axes, and the way between notes and pixels.
// Places are skin pixels from the control's upper left corner: header above, key strip at the left, grid
// in the rest. Draws nothing and edits nothing. User-interface thread.

#include <memory>
#include <optional>

#include "editors/grid/CTimeGrid.h"
#include "editors/pianoroll/CRowOrder.h"
#include "model/edits/CNoteIndex.h"

namespace quib {

// In pixels of the control, right and bottom edge outside.
struct NoteBox {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double Width() const noexcept { return right - left; }
};

class PianoRollView {
public:
    static constexpr int kHeaderHeight = 24;
    static constexpr int kKeyStrip = 64;
    static constexpr int kDrumStrip = 112;
    static constexpr int kDrumRow = 24;
    static constexpr double kLeastNoteWidth = 3;  // pixels: shorter notes are drawn and hit like this

    void Resize(int newWidth, int newHeight) noexcept;
    int Width() const noexcept { return width; }
    int Height() const noexcept { return height; }
    int GridLeft() const noexcept { return drums ? kDrumStrip : kKeyStrip; }
    int GridHeight() const noexcept { return height > kHeaderHeight ? height - kHeaderHeight : 0; }
    // Rows of a fixed height, one a sound, and notes as hits of one step.
    void SetDrums(bool on) noexcept;
    bool IsDrums() const noexcept { return drums; }

    // --- Keys

    // The key in the middle stays there where it can.
    void SetRows(const CRowOrder& order) noexcept;
    const CRowOrder& Rows() const noexcept { return rows; }
    int RowHeight() const noexcept { return drums ? kDrumRow : rowHeight; }
    int KeyZoom() const noexcept { return rowHeight; }
    // 3 to 12 pixels; the row at `y` stays there. Nothing in the drum view.
    bool SetKeyZoom(int pixels, int y) noexcept;
    bool ZoomKeysIn(int y) noexcept { return SetKeyZoom(kKeyZoom.Doubled(rowHeight), y); }
    bool ZoomKeysOut(int y) noexcept { return SetKeyZoom(kKeyZoom.Halved(rowHeight), y); }
    // Pixels above the grid's upper edge.
    int KeyScroll() const noexcept { return keyScroll; }
    int MaximumKeyScroll() const noexcept;
    bool ScrollKeysTo(int pixels) noexcept;
    // Upper edge of a row.
    int YOfRow(int row) const noexcept { return kHeaderHeight + (rows.Count() - 1 - row) * RowHeight() - keyScroll; }
    // Lower edge of the row of a key, or of the next higher one that is shown.
    int FootOf(int key) const noexcept;
    // May lie outside of the rows that there are.
    int RowAt(int y) const noexcept;
    int KeyAt(int y) const noexcept { return rows.KeyOf(RowAt(y)); }

    // --- Time

    double XOf(double step) const noexcept { return GridLeft() + time.XOf(step); }
    double StepAt(double x) const noexcept { return time.StepAt(x - GridLeft()); }

    // --- Notes

    // Nothing for a key that is not shown.
    std::optional<NoteBox> BoxOf(const Note& note) const noexcept;
    // The topmost note at a place of the grid.
    std::optional<std::uint32_t> NoteAt(const CNoteIndex& index, int x, int y) const;
    // What a rectangle between two places touches.
    NoteSelection NotesBetween(const CNoteIndex& index, int x0, int y0, int x1, int y1) const;
    // Steps that the shortest note takes on the screen.
    float LeastLength() const noexcept;
    // Steps that a note takes on the screen.
    float ShownLength(const Note& note) const noexcept;
    // Scrolls as little as needed to show it.
    bool Reveal(const Note& note) noexcept;

    CTimeGrid time;

private:
    static constexpr ZoomLimits kKeyZoom{3, 12};

    CRowOrder rows;
    bool drums = false;
    int width = 0;
    int height = 0;
    int rowHeight = 12;
    int keyScroll = 0;
};

// "C 3", "F#2": key 60 is C 3.
struct KeyName {
    char text[16];
};
KeyName NameOfKey(int key) noexcept;
bool IsBlackKey(int key) noexcept;

}  // namespace quib
