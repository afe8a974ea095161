// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CLaneCapCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CCanvas.h"
#include "controls/CPalette.h"
#include "editors/automation/CLaneCatalog.h"

namespace quib {

namespace {
constexpr int kTextLeft = 20;
constexpr int kMargin = 8;
constexpr int kWidest = 132;
}  // namespace

CLaneCapCtrl::CLaneCapCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight)
    : CSwitchCtrl(window, number, left, top, newWidth, newHeight, &lit, QString()) {}

int CLaneCapCtrl::Show(const LaneEntry& lane, bool isShown) {
    key = lane.key;
    section = CLaneCatalog::SectionOf(key);
    text = QString::fromStdString(lane.description.name);
    lit.Set(isShown ? 1.0F : 0.0F);
    return std::min(kWidest, kTextLeft + kMargin + static_cast<int>(std::ceil(CCanvas::TextWidth(text, 10, true))));
}

void CLaneCapCtrl::Draw() {
    CSwitchCtrl::Draw();
    const QRgb accent = Palette().Accent(section);
    const QRgb ink = CapTextColour(lit.IsOn() ? EState::kOn : PlainState(), accent);
    Canvas().Ellipse({X() + 11.0, Y() + Height() / 2.0}, 3, lit.IsOn() ? ink : accent);
    Canvas().Text(QRectF(X() + kTextLeft, Y(), Width() - kTextLeft - kMargin / 2.0, Height()), text, ink, 10,
                  Qt::AlignLeft | Qt::AlignVCenter, true);
}

}  // namespace quib
