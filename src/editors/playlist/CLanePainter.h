// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Draws the items of one instrument as they are played, with their notes small. Pictures of the notes are kept
// until a pattern or the zoom is another. User-interface thread.

#include "editors/playlist/CPlaylistEdit.h"
#include "editors/playlist/SongDrawing.h"

namespace quib {

class CLanePainter {
public:
    struct Look {
        QRgb track = 0;
        double sounding = -1;  // song step that is heard; below 0: none
    };
    void Draw(const SongDrawing& drawing, const CPlaylistEdit& edit, const Look& look);

private:
    struct Miniature {
        std::shared_ptr<const CPattern> pattern;
        int stepWidth = 0;
        int height = 0;
        qreal scale = 0;
        QImage image;
    };

    void DrawGround(const SongDrawing& drawing) const;
    void DrawSpan(const SongDrawing& drawing, const CPlaylistEdit& edit, const PlaylistSpan& span, const Look& look);
    void DrawRepeat(const SongDrawing& drawing, const PlaylistSpan& span, int length, QRect area, QRgb track);
    void DrawNotes(const SongDrawing& drawing, const CPlaylistEdit& edit, const PlaylistSpan& span, QRect area,
                   QRgb colour);
    const QImage& MiniatureOf(const SongDrawing& drawing, const CPlaylistEdit& edit, int pattern, int height);
    const QImage& Hatch(const SongDrawing& drawing, int height);

    std::array<Miniature, kPatternCount> miniatures;
    QImage hatch;
    int hatchHeight = 0;
    qreal hatchScale = 0;
};

}  // namespace quib
