// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A row of equal segments of which one or none is chosen: the value is its number from 1, or 0.
// User-interface thread.

#include <QStringList>

#include "controls/CControl.h"

namespace quib {

class CSwitchSelectorCtrl : public CControl {
public:
    CSwitchSelectorCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newSegmentWidth,
                        int newHeight, CValue* bound, const QStringList& labels);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kChoice; }
    int PartCount() const override { return static_cast<int>(segmentLabels.size()); }
    ControlPart PartAt(int part) const override;
    int ChosenPart() const override { return static_cast<int>(ValueNow()) - 1; }

    int gap = 1;              // pixels between segments
    QStringList spokenNames;  // of the segments, where their labels are no words
    std::vector<int> glyphs;  // in place of the labels where there is one

private:
    QStringList segmentLabels;
    int segmentWidth;
    int hoveredSegment = -1;
};

}  // namespace quib
