// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CPresetSelectorCtrl.h"

#include <algorithm>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kCellWidth = 25;
}

CPresetSelectorCtrl::CPresetSelectorCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                         int newHeight, CValue* bound)
    : CControl(window, number, left, top, newWidth, newHeight, bound), CTicked(window) {
    takesWheel = true;
    maximum = 1e6F;
    hoverLook = true;
    captureOnClick = false;
}

int CPresetSelectorCtrl::CellCount() const { return (presetCount ? presetCount() : 0) + (onAdd ? 1 : 0); }

int CPresetSelectorCtrl::ShownCells() const { return std::max(1, Width() / kCellWidth); }

int CPresetSelectorCtrl::CellAt(int px) const {
    const int shown = (px - X()) / kCellWidth;
    const int cell = first + shown;
    return shown < ShownCells() && cell < CellCount() ? cell : -1;
}

void CPresetSelectorCtrl::OnLButtonDown(int px, int /*py*/, int button) {
    if (!enabled) return;
    const int cell = CellAt(px);
    const int count = presetCount ? presetCount() : 0;
    if (button == 1) {
        if (onPresetMenu) onPresetMenu(cell < count ? cell : -1);
    } else if (cell >= 0 && cell < count) {
        Select(cell);
    } else if (cell == count && onAdd) {
        onAdd();
        ScrollTo(count);
    }
}

void CPresetSelectorCtrl::Select(int preset) {
    ScrollTo(preset);
    if (!onSelect || onSelect(preset)) SetValueAndUpdate(true, true, static_cast<float>(preset + 1));
}

void CPresetSelectorCtrl::ScrollTo(int preset) {
    first = std::clamp(first, std::max(0, preset - ShownCells() + 1), std::max(0, preset));
    Update(false, true);
}

void CPresetSelectorCtrl::OnMouseMove(int px, int /*py*/) {
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
    if (CellAt(px) == hoveredCell) return;
    hoveredCell = CellAt(px);
    Update(false, true);
}

void CPresetSelectorCtrl::OnMouseLeave() {
    Owner().unsetCursor();
    if (hoveredCell < 0) return;
    hoveredCell = -1;
    Update(false, true);
}

void CPresetSelectorCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    first = std::clamp(first + (NotchesOf(word) > 0 ? -1 : 1), 0, std::max(0, CellCount() - ShownCells()));
    Update(false, true);
}

void CPresetSelectorCtrl::OnKeyDown(int key) {
    if (!hovered || !enabled) return;
    const int count = presetCount ? presetCount() : 0;
    const int now = static_cast<int>(ValueNow()) - 1;
    if (key == virtualKey::kLeft && now > 0) Select(now - 1);
    if (key == virtualKey::kRight && now + 1 < count) Select(now + 1);
    if (key == virtualKey::kHome && count > 0) Select(0);
    if (key == virtualKey::kEnd && count > 0) Select(count - 1);
    for (const int zero : {int{'0'}, virtualKey::kKeypad0}) {
        if (key > zero && key <= zero + 9 && key - zero <= count) Select(key - zero - 1);
    }
}

void CPresetSelectorCtrl::Tick() {
    if (!IsShown() || ShownRectangle().isEmpty() || CellCount() == drawnCount) return;
    first = std::clamp(first, 0, std::max(0, CellCount() - ShownCells()));
    Update(false, true);
}

ControlPart CPresetSelectorCtrl::PartAt(int part) const {
    const int count = presetCount ? presetCount() : 0;
    const int shown = part - first;
    const bool isShown = shown >= 0 && shown < ShownCells();
    return {part < count ? Text("Preset %1").arg(part + 1) : Text("New preset"),
            {},
            isShown ? QRect(X() + shown * kCellWidth, Y(), kCellWidth - 1, Height()) : QRect(),
            part == ChosenPart()};
}

void CPresetSelectorCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    drawnCount = CellCount();
    const int count = presetCount ? presetCount() : 0;
    const QRgb accent = Palette().Accent(section);
    for (int shown = 0; shown < ShownCells(); ++shown) {
        const int cell = first + shown;
        const QRectF area = QRectF(X() + shown * kCellWidth, Y(), kCellWidth - 2, Height());
        if (cell >= drawnCount) break;
        EState state = !enabled ? EState::kDisabled : cell == hoveredCell ? EState::kHover : EState::kNormal;
        if (cell == static_cast<int>(ValueNow()) - 1) state = EState::kOn;
        DrawCap(Canvas(), area, state, accent);
        if (cell == count) {
            Canvas().Glyph(Skin(), picture::kGlyphPlus, area.center(), CapTextColour(state, accent));
        } else {
            Canvas().Text(area, QString::number(cell + 1), CapTextColour(state, accent), 11, Qt::AlignCenter, true);
        }
    }
}

void CPresetSelectorCtrl::ListLearnable(std::vector<Learnable>& parts) const {
    const int count = presetCount ? presetCount() : 0;
    for (int shown = 0; learns && shown < ShownCells() && first + shown < count; ++shown) {
        ControlTarget target = *learns;
        target.index = first + shown;
        const QRect area(X() + shown * kCellWidth, Y(), kCellWidth - 1, Height());
        parts.push_back({area.intersected(ShownRectangle()), target});
    }
}

}  // namespace quib
