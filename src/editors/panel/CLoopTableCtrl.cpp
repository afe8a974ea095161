// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CLoopTableCtrl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"
#include "export/BeatsOfBar.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kSign = 24;  // width of the sign that plays
constexpr int kVelocity = 100;

// The right edges of the columns, from the right edge of the list.
constexpr int kKeyAt = 140;
constexpr int kTempoAt = 96;
constexpr int kBarsAt = 58;
constexpr int kStrokesAt = 10;
constexpr int kColumn = 44;

}  // namespace

CLoopTableCtrl::CLoopTableCtrl(CWinControl& window, const QRect& place, std::vector<LoopEntry> loopList)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()), loops(std::move(loopList)) {
    takesWheel = true;
    captureOnClick = false;
}

CLoopTableCtrl::~CLoopTableCtrl() {
    if (playing >= 0) Toggle(playing);
}

void CLoopTableCtrl::Scroll(int next) {
    first = std::clamp(next, 0, std::max(0, PartCount() - (Height() - kHead) / kRow));
}

void CLoopTableCtrl::Select(int loop) {
    if (loop < 0 || loop >= PartCount() || loop == selected) return;
    selected = loop;
    const int rows = (Height() - kHead) / kRow;
    if (selected < first || selected >= first + rows) Scroll(selected - rows / 2);
    Update(false, true);
    if (onSelect) onSelect(loop);
}

// The one before ends where another one begins.
void CLoopTableCtrl::Toggle(int loop) {
    const int before = std::exchange(playing, loop == playing ? -1 : loop);
    if (!onPlay) return;
    if (before >= 0) onPlay(loops[static_cast<std::size_t>(before)].key, 0);
    if (playing >= 0) onPlay(loops[static_cast<std::size_t>(playing)].key, kVelocity);
}

QRectF CLoopTableCtrl::Area(int row) const {
    return QRectF(X() + 1, Y() + kHead + (row - first) * kRow, Width() - 2, kRow);
}

int CLoopTableCtrl::RowAt(int py) const {
    const int row = first + (py - Y() - kHead) / kRow;
    return py >= Y() + kHead && row < PartCount() ? row : -1;
}

ControlPart CLoopTableCtrl::PartAt(int part) const {
    const LoopEntry& loop = loops[static_cast<std::size_t>(part)];
    return {QString::fromStdString(loop.name), QString::number(loop.key), Area(part).toRect(), part == selected};
}

void CLoopTableCtrl::OnMouseMove(int /*px*/, int py) {
    const int now = RowAt(py);
    if (std::exchange(under, now) != now) Update(false, true);
}

void CLoopTableCtrl::OnMouseLeave() {
    under = -1;
    Update(false, true);
}

void CLoopTableCtrl::OnLButtonDown(int px, int py, int /*button*/) {
    const int row = RowAt(py);
    if (row < 0) return;
    if (px < X() + kSign) Toggle(row);
    Select(row);
    Update(false, true);
}

void CLoopTableCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    Scroll(first - static_cast<int>(NotchesOf(word) * 3));
    Update(false, true);
}

void CLoopTableCtrl::OnKeyDown(int key) {
    if (!hovered) return;
    if (key == virtualKey::kUp) Select(selected - 1);
    if (key == virtualKey::kDown) Select(selected + 1);
}

void CLoopTableCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    Canvas().Box(QRectF(Rectangle()), 3, Colour("well"), Colour("edge"));
    const auto column = [this](const QRectF& row, int at) {
        return QRectF(row.right() - at - kColumn, row.top(), kColumn, row.height());
    };
    const QRectF head(X() + 1, Y(), Width() - 2, kHead);
    const QRgb quiet = Colour("textMuted");
    Canvas().Text(head.adjusted(kSign, 0, 0, 0), Text("Name"), quiet, 10, Qt::AlignLeft | Qt::AlignVCenter);
    const std::pair<const char*, int> heads[] = {
        {TextKey("Key"), kKeyAt}, {"BPM", kTempoAt}, {TextKey("Bars"), kBarsAt}, {TextKey("Strokes"), kStrokesAt}};
    for (const auto& [title, at] : heads)
        Canvas().Text(column(head, at), at == kTempoAt ? QStringLiteral("BPM") : Text(title), quiet, 10,
                      Qt::AlignRight | Qt::AlignVCenter);
    const int last = std::min(PartCount(), first + (Height() - kHead) / kRow);
    for (int row = first; row < last; ++row) {
        const LoopEntry& loop = loops[static_cast<std::size_t>(row)];
        const QRectF area = Area(row);
        const bool chosen = row == selected;
        if (chosen) Canvas().Fill(area, Palette().Accent(section));
        if (!chosen && row == under) Canvas().Fill(area, Colour("panelRaised"));
        const QRgb ink = Colour(chosen ? "onAccent" : "text");
        Canvas().Glyph(Skin(), row == playing ? picture::kGlyphStop : picture::kGlyphPlay,
                       {area.left() + kSign / 2.0, area.center().y()}, chosen ? ink : quiet);
        Canvas().Text(area.adjusted(kSign, 0, -kKeyAt - kColumn, 0), QString::fromStdString(loop.name), ink, 12,
                      Qt::AlignLeft | Qt::AlignVCenter, chosen);
        const std::pair<int, QString> cells[] = {{kKeyAt, QString::number(loop.key)},
                                                 {kTempoAt, QString::number(std::lround(loop.tempo))},
                                                 {kBarsAt, QString::number(loop.beats / kBeatsOfBar)},
                                                 {kStrokesAt, QString::number(loop.strokes)}};
        for (const auto& [at, text] : cells)
            Canvas().Text(column(area, at), text, ink, 12, Qt::AlignRight | Qt::AlignVCenter, chosen);
    }
}

}  // namespace quib
