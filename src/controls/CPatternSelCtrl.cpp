// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CPatternSelCtrl.h"

#include <array>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kCopyPatternText = 127;
constexpr int kWideCell = 24;  // pixels
}  // namespace

CPatternSelCtrl::CPatternSelCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newCellWidth,
                                 int newHeight, int newHeaderHeight, CPatternOwner* patternOwner)
    : CControl(window, number, left, top, newCellWidth * kCells, newHeight),
      CTicked(window),
      owner(patternOwner),
      cellWidth(newCellWidth),
      headerHeight(newHeaderHeight) {
    section = ESection::kPattern;
    infoString = kCopyPatternText;
}

int CPatternSelCtrl::CellAt(int px, int py) const noexcept {
    if (px < X() || py < Y() + headerHeight || py > Y() + Height()) return -1;
    const int cell = (px - X()) / cellWidth;
    return cell < kCells ? cell : -1;
}

void CPatternSelCtrl::OnLButtonDown(int px, int py, int button) {
    if (owner == nullptr) return;
    Owner().setCursor(Qt::PointingHandCursor);
    source = destination = -1;
    const int cell = CellAt(px, py);
    if (cell < 0) return;
    if (button == 1) {
        source = cell;
        return RedrawCell(cell);
    }
    owner->SelectPattern(cell);
    Update(false, true);
}

void CPatternSelCtrl::OnMouseMove(int px, int py) {
    if (owner == nullptr) return;
    Owner().setCursor(Qt::PointingHandCursor);
    const int cell = CellAt(px, py);
    if (source >= 0 && cell != destination) {
        const int before = std::exchange(destination, cell);
        RedrawCell(before);
        RedrawCell(cell);
    }
    if (cell != lit) {
        const int before = std::exchange(lit, cell);
        RedrawCell(before);
        RedrawCell(cell);
    }
}

void CPatternSelCtrl::OnMouseLeave() {
    Owner().unsetCursor();
    RedrawCell(std::exchange(lit, -1));
}

void CPatternSelCtrl::OnLButtonUp(int px, int py, int button) {
    if (owner != nullptr && button == 1 && source >= 0) FinishRightClick(CellAt(px, py));
}

void CPatternSelCtrl::FinishRightClick(int cell) {
    const int from = std::exchange(source, -1);
    destination = -1;
    if (cell >= 0 && cell != from) {
        owner->CopyPattern(from, cell);
    } else if (cell == from && owner->MayTogglePatternFlag()) {
        owner->TogglePatternFlag(cell);
        if (onFlag) onFlag(*owner);
        owner->SendPatternMask(MaskOf(owner->PatternLook().flagged));
    }
    Update(false, true);
}

std::uint32_t CPatternSelCtrl::MaskOf(std::uint32_t flagged) noexcept {
    std::uint32_t mask = 0;
    for (int cell = 0; cell < kCells; ++cell) {
        if ((flagged >> cell & 1U) != 0) mask |= 1U << (kCells - 1 - cell);
    }
    return mask;
}

void CPatternSelCtrl::Tick() {
    if (owner == nullptr || !IsShown() || ShownRectangle().isEmpty()) return;
    const CPatternOwner::Look now = owner->PatternLook();
    if (now == drawn) return;
    // Selecting and playing change often, one or two cells at a time.
    const std::uint32_t marks = (now.filled ^ drawn.filled) | (now.flagged ^ drawn.flagged);
    const CPatternOwner::Look before = std::exchange(drawn, now);
    for (int cell = 0; cell < kCells; ++cell) {
        const bool named = cell == before.selected || cell == now.selected || cell == before.playing ||
                           cell == now.playing || cell == before.next || cell == now.next;
        if (named || (marks >> cell & 1U) != 0) RedrawCell(cell);
    }
}

void CPatternSelCtrl::RedrawCell(int cell) {
    if (cell < 0 || !IsShown() || !Owner().HasBackBuffer()) return;
    if (owner != nullptr) drawn = owner->PatternLook();
    Canvas().SetClip(ShownRectangle());
    DrawCell(cell);
    BlitRect(X() + cell * cellWidth, Y(), X() + (cell + 1) * cellWidth, Y() + Height());
}

ControlPart CPatternSelCtrl::PartAt(int part) const {
    const CPatternOwner::Look look = owner->PatternLook();
    QStringList marks;
    if (part == look.selected) marks << Text("chosen");
    if (part == look.playing) marks << Text("playing");
    if (part == look.next) marks << Text("next");
    if ((look.filled >> part & 1U) != 0) marks << Text("with notes");
    if ((look.flagged >> part & 1U) != 0) marks << Text("marked");
    return {QString::number(part + 1), marks.join(QStringLiteral(", ")),
            QRect(X() + part * cellWidth, Y() + headerHeight, cellWidth - 1, Height() - headerHeight),
            part == look.selected};
}

void CPatternSelCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    if (owner != nullptr) drawn = owner->PatternLook();
    for (int cell = 0; cell < kCells; ++cell) DrawCell(cell);
}

void CPatternSelCtrl::DrawCell(int cell) {
    const CPalette& palette = Palette();
    const QRgb accent = palette.Accent(section);
    const QRectF whole(X() + cell * cellWidth, Y() + headerHeight, cellWidth, Height() - headerHeight);
    const QRectF area = whole.adjusted(0, 0, -2, 0);
    Canvas().Fill(whole, backgroundColour);
    const bool filled = (drawn.filled >> cell & 1U) != 0;
    EState state = cell == lit ? EState::kHover : EState::kNormal;
    if (cell == drawn.selected) state = EState::kOn;
    if (cell == source) state = EState::kPressed;
    // An empty pattern is a hole, one with notes a key.
    if (!filled && state == EState::kNormal) {
        Canvas().FillRound(area, 3, palette.Colour(QStringLiteral("well")));
    } else {
        DrawCap(Canvas(), area, state, accent);
    }
    if (cell == drawn.playing && state != EState::kOn) DrawPlaying(area, palette.Accent(ESection::kTransport));
    if (cell == drawn.next) Canvas().Frame(area, 3, palette.Colour(QStringLiteral("text")), 2);
    if (cell == destination && cell != source) Canvas().Frame(area, 3, palette.Colour(QStringLiteral("text")), 2);
    const QRgb textColour = state != EState::kNormal ? CapTextColour(state, accent)
                            : filled                 ? accent
                                                     : palette.Colour(QStringLiteral("textOff"));
    const int letters = cellWidth >= kWideCell ? 12 : 11;
    Canvas().Text(area, QString::number(cell + 1), textColour, letters, Qt::AlignCenter, filled);
    if ((drawn.flagged >> cell & 1U) != 0) {
        Canvas().Ellipse(
            {area.right() - 3.5, area.top() + 3.5}, 1.8,
            state == EState::kOn ? palette.Colour(QStringLiteral("onAccent")) : palette.Colour(QStringLiteral("text")));
    }
}

// A frame in the colour of playing, and its sign for who does not see the colour.
void CPatternSelCtrl::DrawPlaying(const QRectF& area, QRgb colour) {
    constexpr qreal kSign = 6;  // pixels
    Canvas().Frame(area, 3, colour, 2);
    const QPointF corner(area.left() + 3, area.bottom() - kSign - 2);
    Canvas().Polygon(std::array{corner, corner + QPointF(kSign - 1, kSign / 2), corner + QPointF(0, kSign)}, colour);
}

void CPatternSelCtrl::ListLearnable(std::vector<Learnable>& parts) const {
    for (int cell = 0; learns && cell < kCells; ++cell) {
        ControlTarget target = *learns;
        target.index = cell;
        const QRect area(X() + cell * cellWidth, Y() + headerHeight, cellWidth - 1, Height() - headerHeight);
        parts.push_back({area.intersected(ShownRectangle()), target});
    }
}

}  // namespace quib
