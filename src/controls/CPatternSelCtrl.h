// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Sixteen pattern cells in a row: the left button selects one, a drag with the right button copies one onto
// another, a right click marks one. User-interface thread.

#include "controls/CControl.h"

namespace quib {

// The instrument behind the cells.
class CPatternOwner {
public:
    virtual ~CPatternOwner() = default;
    struct Look {
        int selected = 0;
        int playing = -1;           // -1 none
        int next = -1;              // queued; -1 none
        std::uint32_t filled = 0;   // bit k: pattern k holds notes
        std::uint32_t flagged = 0;  // bit k: pattern k is marked
        friend bool operator==(const Look&, const Look&) = default;
    };
    virtual Look PatternLook() const = 0;
    virtual void SelectPattern(int pattern) = 0;
    virtual void CopyPattern(int from, int to) = 0;
    virtual bool MayTogglePatternFlag() const = 0;
    virtual void TogglePatternFlag(int pattern) = 0;
    // The marks as the plug-in is told them: pattern 0 in the highest of sixteen bits.
    virtual void SendPatternMask(std::uint32_t mask) = 0;
};

class CPatternSelCtrl : public CControl, public CTicked {
public:
    static constexpr int kCells = 16;

    CPatternSelCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newCellWidth, int newHeight,
                    int newHeaderHeight, CPatternOwner* patternOwner);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseLeave() override;
    void Tick() override;
    void ListLearnable(std::vector<Learnable>& parts) const override;
    ERole Role() const override { return ERole::kChoice; }
    int PartCount() const override { return owner != nullptr ? kCells : 0; }
    ControlPart PartAt(int part) const override;
    int ChosenPart() const override { return owner != nullptr ? owner->PatternLook().selected : -1; }

    std::function<void(CPatternOwner&)> onFlag;  // after a mark was set or taken away
    static std::uint32_t MaskOf(std::uint32_t flagged) noexcept;

private:
    // The cell under a point, -1 none.
    int CellAt(int px, int py) const noexcept;
    void FinishRightClick(int cell);
    void DrawCell(int cell);
    void DrawPlaying(const QRectF& area, QRgb colour);
    void RedrawCell(int cell);

    CPatternOwner* owner;
    int cellWidth;
    int headerHeight;
    int source = -1;
    int destination = -1;
    int lit = -1;
    CPatternOwner::Look drawn;
};

}  // namespace quib
