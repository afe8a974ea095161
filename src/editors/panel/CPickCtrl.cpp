// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CPickCtrl.h"

#include <array>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLook.h"

namespace quib {

namespace {

constexpr int kTallest = 28;  // of a segment with a text
constexpr int kRowGap = 4;    // between rows

}  // namespace

CPickCtrl::CPickCtrl(CWinControl& window, const QRect& place, CPanelValues& values, int parameter, QStringList steps)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()), names(std::move(steps)) {
    hoverLook = true;
    takesWheel = true;
    values.Connect(*this, parameter);
}

int CPickCtrl::Chosen() const {
    const auto last = static_cast<float>(names.size() - 1);
    return static_cast<int>(std::lround(Share() * last));
}

QRectF CPickCtrl::Segment(int index) const {
    const int across = cycles ? 1 : columns > 0 ? columns : static_cast<int>(names.size());
    const int rows = cycles ? 1 : (static_cast<int>(names.size()) + across - 1) / across;
    const int gapAcross = across < names.size() || waves ? kRowGap : 0;
    const int high = std::min((Height() - kRowGap * (rows - 1)) / rows, waves ? Height() : kTallest);
    const int column = index % across;
    const int left = column * (Width() + gapAcross) / across;
    const int right = (column + 1) * (Width() + gapAcross) / across - gapAcross;
    return QRectF(X() + left, Y() + index / across * (high + kRowGap), right - left, high);
}

int CPickCtrl::SegmentAt(int px, int py) const {
    if (cycles) return 0;
    for (int index = 0; index < names.size(); ++index) {
        if (Segment(index).contains(px, py)) return index;
    }
    return -1;
}

void CPickCtrl::Choose(int index) {
    if (names.size() < 2) return;
    ChangeByUser(minimum + (maximum - minimum) * static_cast<float>(index) / static_cast<float>(names.size() - 1));
}

void CPickCtrl::OnMouseMove(int px, int py) {
    const int now = SegmentAt(px, py);
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
    if (std::exchange(under, now) != now) Update(false, true);
}

void CPickCtrl::OnMouseLeave() {
    under = -1;
    Owner().unsetCursor();
    Update(false, true);
}

void CPickCtrl::OnLButtonDown(int px, int py, int /*button*/) {
    const int index = cycles ? (Chosen() + 1) % static_cast<int>(names.size()) : SegmentAt(px, py);
    if (enabled && index >= 0) Choose(index);
}

void CPickCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    if (!enabled) return;
    wheelRest += NotchesOf(word);
    const auto steps = static_cast<int>(wheelRest);
    if (steps == 0) return;
    wheelRest -= static_cast<float>(steps);
    Choose(std::clamp(Chosen() + steps, 0, static_cast<int>(names.size()) - 1));
}

void CPickCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    if (cycles) return DrawOne(Chosen(), Segment(0));
    for (int index = 0; index < names.size(); ++index) DrawOne(index, Segment(index));
}

void CPickCtrl::DrawOne(int index, const QRectF& area) {
    const bool chosen = cycles ? index > 0 : index == Chosen();
    const bool hot = cycles ? hovered : hovered && index == under;
    DrawSegment(Canvas(), area, chosen, hot, enabled, Palette().Accent(section));
    const QRgb colour = SegmentText(chosen, hot, enabled);
    if (waves) return DrawWave(names[index], area, colour);
    const QString text = index < shown.size() ? shown[index] : names[index];
    const qreal room = area.width() - 6;
    Canvas().Text(area.adjusted(3, 0, -3, 0), text, colour, FittingHeight(text, room, chosen, 11), Qt::AlignCenter,
                  chosen);
}

void CPickCtrl::DrawWave(const QString& shape, const QRectF& area, QRgb colour) {
    constexpr int kPoints = 25;
    const qreal wide = std::min(20.0, area.width() - 8);
    const qreal high = std::min(5.0, area.height() / 2 - 5);
    std::array<QPointF, kPoints> points;
    for (int point = 0; point < kPoints; ++point) {
        const float place = static_cast<float>(point) / (kPoints - 1);
        // The last point belongs to the turn that ends, not to the next one.
        const auto level = static_cast<qreal>(WaveAt(shape, std::min(place, 0.999F), 0.5F));
        points[static_cast<std::size_t>(point)] =
            area.center() + QPointF((static_cast<qreal>(place) - 0.5) * wide, -level * high);
    }
    Canvas().Polyline(points, colour, 1.6);
}

}  // namespace quib
