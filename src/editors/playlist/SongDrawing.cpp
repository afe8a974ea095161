// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/SongDrawing.h"

namespace quib {

SongColours::SongColours() {
    const CPalette& palette = Palette();
    const auto named = [&palette](const char* name) { return palette.Colour(QLatin1String(name)); };
    lane = named("lane");
    laneBeat = named("laneBeat");
    laneBar = named("laneBar");
    panel = named("panel");
    well = named("well");
    text = named("text");
    textMuted = named("textMuted");
    textDim = named("textDim");
    transport = named("transport");
    pattern = named("pattern");
    line = named("line");
    for (std::size_t index = 0; index < tracks.size(); ++index) {
        tracks[index] = palette.Colour(QStringLiteral("track%1").arg(index + 1));
    }
}

void SongDrawing::Frame(double x, double y, double w, double h, double thick, QRgb colour) const {
    Fill(x, y, w, thick, colour);
    Fill(x, y + h - thick, w, thick, colour);
    Fill(x, y, thick, h, colour);
    Fill(x + w - thick, y, thick, h, colour);
}

double SongDrawing::TextFrom(double x, double y, int lineHeight, const QString& text, QRgb colour, int size,
                             bool strong) const {
    const TextMask& mask = masks.Text(text, size, strong);
    if (Touches(x, x + mask.width)) {
        canvas.Mask(mask.image, origin.x() + x, origin.y() + y + (lineHeight - mask.height) / 2, colour);
    }
    return mask.width;
}

}  // namespace quib
