// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws notes, hits and ghosts, filling pixels directly: thousands of them in a drag. User-interface thread.

#include <optional>
#include <vector>

#include "editors/pianoroll/drawing/RollDrawing.h"

namespace quib {

class CNotePainter {
public:
    // What of the notes is seen in the part that is drawn. Before Draw.
    void Collect(const RollDrawing& drawing, const CNoteIndex& index);
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
    void CutCovered();
    void SortByRow(const CRowOrder& rows);
    template <class Visit>
    static void VisitShown(const RollDrawing& drawing, const CNoteIndex& index, Visit&& visit);
    void DrawNote(const RollDrawing& drawing, const Note& note, const Look& look) const;
    void DrawHit(const RollDrawing& drawing, const Note& note, const Look& look) const;
    double DrawSwing(const RollDrawing& drawing, const Note& note, const Look& look) const;
    void DrawName(const RollDrawing& drawing, const Note& note, const Look& look, double from) const;

    std::vector<Shown> found;  // in the order of drawing
    std::vector<Shown> shown;  // the same, upper rows first
};

}  // namespace quib
