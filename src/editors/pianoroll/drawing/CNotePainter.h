// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws notes, hits and ghosts, filling pixels directly: thousands of them in a drag. User-interface thread.

#include <optional>

#include "editors/pianoroll/drawing/RollDrawing.h"

namespace quib {

class CNotePainter {
public:
    // `hovered`: the note under the mouse.
    void Draw(const RollDrawing& drawing, const CNoteIndex& index, const NoteSelection& selection,
              std::optional<std::uint32_t> hovered) const;
    void DrawGhosts(const RollDrawing& drawing) const;

private:
    struct Look {
        NoteBox box;  // what is painted of it
        QRgb body = 0;
        QRgb edge = 0;
        bool selected = false;
    };
    template <class Visit>
    static void VisitShown(const RollDrawing& drawing, const CNoteIndex& index, Visit&& visit);
    void DrawNote(const RollDrawing& drawing, const Note& note, const Look& look) const;
    void DrawHit(const RollDrawing& drawing, const Note& note, const Look& look) const;
    double DrawSwing(const RollDrawing& drawing, const Note& note, const Look& look) const;
    void DrawName(const RollDrawing& drawing, const Note& note, const Look& look, double from) const;
};

}  // namespace quib
