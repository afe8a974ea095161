// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws notes, hits and ghosts, filling pixels directly: thousands of them in a drag. User-interface thread.

#include <optional>
#include <vector>

#include "editors/pianoroll/drawing/CGridPainter.h"
#include "editors/pianoroll/drawing/CPixelLine.h"

namespace quib {

class CNotePainter {
public:
    // What of the notes is seen in the part that is drawn. Before Draw.
    void Collect(const RollDrawing& drawing, const CNoteIndex& index);
    // Rows of the ground with their notes, without drums and ghosts: of a row the pixel lines are alike but for
    // those of frames, so both are made once and copied.
    void DrawRows(const RollDrawing& drawing, CGridPainter& ground, const NoteSelection& selection,
                  std::optional<std::uint32_t> hovered);
    // Those whose rows begin within the part. `hovered`: the note under the mouse.
    void Draw(const RollDrawing& drawing, const NoteSelection& selection, std::optional<std::uint32_t> hovered) const;
    void DrawGhosts(const RollDrawing& drawing) const;

private:
    struct Look {
        NoteBox box;  // what is painted of it
        QRgb body = 0;
        QRgb edge = 0;
        bool selected = false;
    };
    struct Shown {
        std::uint32_t number = 0;
        const Note* note = nullptr;
        NoteBox box;  // the part that is painted
    };
    static Look LookOf(const RollDrawing& drawing, const Shown& entry, const NoteSelection& selection, bool isHovered);
    std::span<const Shown> ShownOfRow(const PianoRollView& view, int row) const;
    void FillLines(const RollDrawing& drawing, const Shown& entry, const Look& look);
    void CutCovered();
    void SortByRow(const CRowOrder& rows);
    template <class Visit>
    static void VisitShown(const RollDrawing& drawing, const CNoteIndex& index, Visit&& visit);
    void DrawNote(const RollDrawing& drawing, const Note& note, const Look& look) const;
    void DrawHit(const RollDrawing& drawing, const Note& note, const Look& look) const;
    double DrawSwing(const RollDrawing& drawing, const Note& note, const Look& look) const;
    // Where the tick of swing stands in what is painted of the note; nothing without one.
    static std::optional<double> SwingPlace(const RollDrawing& drawing, const Note& note, const NoteBox& box);
    void DrawName(const RollDrawing& drawing, const Note& note, const Look& look, double from) const;

    std::vector<Shown> found;  // in the order of drawing
    std::vector<Shown> shown;  // the same, upper rows first
    CPixelLine body;           // of the row that is drawn
    CPixelLine edge;           // where frames of selected notes begin and end
};

}  // namespace quib
