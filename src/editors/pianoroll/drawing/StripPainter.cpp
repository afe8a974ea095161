// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/StripPainter.h"

#include <algorithm>
#include <array>

#include "controls/CPalette.h"

namespace quib {

namespace {

constexpr int kStrip = PianoRollView::kKeyStrip - 1;  // the last pixel is the grid's edge
constexpr int kBlackLength = 40;
constexpr int kRootMark = 6;
constexpr int kLimitMark = 9;
constexpr int kLeastLabelledRow = 9;  // pixels
constexpr int kLamp = 8;

bool IsLit(const RollDrawing& drawing, int key, int pressed) {
    return key == pressed || drawing.options.sounding.test(static_cast<std::size_t>(key));
}

bool IsPlayed(const RollDrawing& drawing, int key) {
    return key >= drawing.options.lowerLimit && key < drawing.options.upperLimit;
}

template <class Visit>
void VisitRows(const RollDrawing& drawing, Visit&& visit) {
    const PianoRollView& view = drawing.view;
    const int top = std::max(PianoRollView::kHeaderHeight, drawing.part.top());
    const int highest = std::min(view.RowAt(top), view.Rows().Count() - 1);
    const int lowest = std::max(0, view.RowAt(drawing.part.bottom()));
    for (int row = highest; row >= lowest; --row) visit(view.Rows().KeyOf(row), view.YOfRow(row));
}

QRgb Shade() { return Palette().Colour(QStringLiteral("shade")); }

void DrawWhiteKey(const RollDrawing& drawing, int key, int y, bool lit) {
    const int height = drawing.view.RowHeight();
    const bool played = IsPlayed(drawing, key);
    const QRgb ground = lit ? drawing.colours.keyboard : played ? drawing.colours.keyWhite : drawing.colours.keyOff;
    drawing.Fill(0, y, kStrip, height, ground);
    // Where no black key parts two white ones.
    if (key % 12 == 0 || key % 12 == 5) drawing.Fill(0, y + height - 1, kStrip, 1, Mix(ground, Shade(), 0.32F));
}

void DrawBlackKey(const RollDrawing& drawing, int key, int y, bool lit) {
    const RollColours& colours = drawing.colours;
    const int height = drawing.view.RowHeight();
    const bool played = IsPlayed(drawing, key);
    const QRgb ground = played ? colours.keyWhite : colours.keyOff;
    drawing.Fill(0, y, kStrip, height, ground);
    const double middle = y + height / 2.0 - 1;
    drawing.Fill(kBlackLength, middle, kStrip - kBlackLength, height < 6 ? 1 : 2, Mix(ground, Shade(), 0.16F));
    const QRgb black = lit ? colours.keyboard : played ? colours.keyBlack : colours.keyBlackOff;
    drawing.Fill(0, y, kBlackLength, height - 1, black);
}

void DrawKeyLabel(const RollDrawing& drawing, int key, int y, bool lit) {
    const int height = drawing.view.RowHeight();
    if (height < kLeastLabelledRow || (key % 12 != 0 && !lit)) return;
    const int right = IsBlackKey(key) ? kBlackLength - 4 : kStrip - 4;
    drawing.Mask(drawing.masks.NoteName(key), right - drawing.masks.NoteName(key).width, y - 1, height,
                 drawing.colours.ink);
}

void DrawLimitMarks(const RollDrawing& drawing) {
    const PianoRollView& view = drawing.view;
    const double right = drawing.origin.x() + view.GridLeft();
    for (const bool upper : {false, true}) {
        const int limit = upper ? drawing.options.upperLimit : drawing.options.lowerLimit;
        const double y = drawing.origin.y() + view.FootOf(limit) - (upper ? 1 : 0);
        if (limit <= 0 || limit > kHighestKey) continue;
        const double away = upper ? -kLimitMark : kLimitMark;
        const std::array<QPointF, 3> mark = {QPointF(right, y), QPointF(right, y + away),
                                             QPointF(right - kLimitMark, y + away)};
        drawing.canvas.Polygon(mark, drawing.colours.keyboard);
    }
}

void DrawDrumRow(const RollDrawing& drawing, int key, int y, bool used, bool lit) {
    const RollColours& colours = drawing.colours;
    const int height = drawing.view.RowHeight();
    const int left = drawing.view.GridLeft();
    const bool focused = key == drawing.options.focusedKey;
    drawing.Fill(0, y, left - 1, height - 1, focused ? colours.gridRoot : colours.panel);
    drawing.Fill(0, y + height - 1, left - 1, 1, colours.well);
    if (focused) drawing.Fill(0, y, 3, height - 1, colours.pattern);
    const QRectF lamp(drawing.origin.x() + 8, drawing.origin.y() + y + (height - 1 - kLamp) / 2.0, kLamp, kLamp);
    if (lit) {
        drawing.canvas.FillRound(lamp, 2, colours.keyboard);
    } else {
        drawing.canvas.Box(lamp, 2, colours.wellDeep, colours.edge);
    }
    const std::string& name = drawing.options.rowNames[static_cast<std::size_t>(key)];
    const QString keyName = QString::fromLatin1(NameOfKey(key).text);
    drawing.canvas.Text(QRectF(drawing.origin.x() + 22, drawing.origin.y() + y, left - 22 - 26, height - 1),
                        name.empty() ? keyName : QString::fromStdString(name), used ? colours.text : colours.textMuted,
                        11, Qt::AlignLeft | Qt::AlignVCenter, used);
    drawing.TextTo(left - 4, y, height - 1, keyName, colours.textMuted, 9, false);
}

}  // namespace

void DrawKeyStrip(const RollDrawing& drawing, int pressed) {
    const Scale& scale = drawing.options.scale;
    VisitRows(drawing, [&](int key, int y) {
        const bool lit = IsLit(drawing, key, pressed);
        if (IsBlackKey(key)) {
            DrawBlackKey(drawing, key, y, lit);
        } else {
            DrawWhiteKey(drawing, key, y, lit);
        }
        if (scale.type != EScaleType::kChromatic && IsRoot(scale, key)) {
            drawing.Fill(kStrip - kRootMark, y + 1, kRootMark, drawing.view.RowHeight() - 3, drawing.colours.pattern);
        }
        DrawKeyLabel(drawing, key, y, lit);
    });
    drawing.Fill(kStrip, PianoRollView::kHeaderHeight, 1, drawing.view.GridHeight(), drawing.colours.gridStep);
    DrawLimitMarks(drawing);
}

void DrawDrumStrip(const RollDrawing& drawing, const KeySet& used, int pressed) {
    VisitRows(drawing, [&](int key, int y) {
        DrawDrumRow(drawing, key, y, used.test(static_cast<std::size_t>(key)), IsLit(drawing, key, pressed));
    });
    const int foot = drawing.view.YOfRow(-1);
    const int left = drawing.view.GridLeft();
    if (foot < drawing.view.Height())
        drawing.Fill(0, foot, left - 1, drawing.view.Height() - foot, drawing.colours.panel);
    drawing.Fill(left - 1, PianoRollView::kHeaderHeight, 1, drawing.view.GridHeight(), drawing.colours.gridStep);
}

}  // namespace quib
