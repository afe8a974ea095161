// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CPatternLineCtrl.h"

#include <algorithm>

#include "controls/CWinControl.h"

namespace quib {

CPatternLineCtrl::CPatternLineCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                   int newHeight, std::function<float()> shareSource)
    : CControl(window, number, left, top, newWidth, newHeight), CTicked(window), source(std::move(shareSource)) {
    section = ESection::kPattern;
}

void CPatternLineCtrl::Tick() {
    if (!IsShown() || ShownRectangle().isEmpty()) return;
    const int now = static_cast<int>(std::clamp(source(), 0.0F, 1.0F) * static_cast<float>(Width()));
    if (now == filled) return;
    filled = now;
    Update(false, true);
}

void CPatternLineCtrl::Draw() {
    Canvas().Fill(Rectangle(), Palette().Colour(QStringLiteral("wellDeep")));
    Canvas().Fill(QRect(X(), Y(), filled, Height()), Palette().Accent(section));
}

}  // namespace quib
