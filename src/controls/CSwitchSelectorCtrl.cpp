// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSwitchSelectorCtrl.h"

#include <algorithm>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"

namespace quib {

CSwitchSelectorCtrl::CSwitchSelectorCtrl(CWinControl& window, std::uint32_t number, int left, int top,
                                         int newSegmentWidth, int newHeight, CValue* bound, const QStringList& labels)
    : CControl(window, number, left, top, newSegmentWidth * static_cast<int>(labels.size()), newHeight, bound),
      segmentLabels(labels),
      segmentWidth(newSegmentWidth) {
    maximum = static_cast<float>(labels.size());
    hoverLook = true;
}

void CSwitchSelectorCtrl::OnLButtonDown(int px, int /*py*/, int button) {
    if (button != 0 || !enabled) return;
    // The edge of the last segment is hit one pixel beyond it.
    const auto segment = std::min(static_cast<float>((px - X()) / segmentWidth + 1), maximum);
    SetValueAndUpdate(true, true, segment == ValueNow() ? 0.0F : segment);
}

void CSwitchSelectorCtrl::OnMouseMove(int px, int /*py*/) {
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
    const int segment = (px - X()) / segmentWidth;
    if (segment == hoveredSegment) return;
    hoveredSegment = segment;
    Update(false, true);
}

void CSwitchSelectorCtrl::OnMouseLeave() {
    Owner().unsetCursor();
    if (hoveredSegment < 0) return;
    hoveredSegment = -1;
    Update(false, true);
}

ControlPart CSwitchSelectorCtrl::PartAt(int part) const {
    return {spokenNames.value(part, segmentLabels.value(part)),
            {},
            QRect(X() + part * segmentWidth, Y(), segmentWidth - 1, Height()),
            part == ChosenPart()};
}

void CSwitchSelectorCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRgb accent = Palette().Accent(section);
    for (int index = 0; index < segmentLabels.size(); ++index) {
        const QRectF area = QRectF(X() + index * segmentWidth, Y(), segmentWidth - gap, Height());
        EState state = !enabled ? EState::kDisabled : index == hoveredSegment ? EState::kHover : EState::kNormal;
        if (static_cast<int>(ValueNow()) == index + 1) state = EState::kOn;
        DrawCap(Canvas(), area, state, accent);
        const auto place = static_cast<std::size_t>(index);
        if (place < glyphs.size() && glyphs[place] >= 0) {
            Canvas().Glyph(Skin(), glyphs[place], area.center(), CapTextColour(state, accent));
        } else {
            Canvas().Text(area, segmentLabels[index], CapTextColour(state, accent), 10, Qt::AlignCenter, true);
        }
    }
}

}  // namespace quib
