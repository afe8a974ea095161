// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/loopcreator/CSeamCtrl.h"

#include <algorithm>
#include <vector>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr double kShown = 0.04;  // seconds on each side
}  // namespace

CSeamCtrl::CSeamCtrl(CWinControl& window, int left, int top) : CControl(window, 0U, left, top, 382, 132) {}

void CSeamCtrl::Show(std::shared_ptr<const SoundClip> nextLoop, double nextFade) {
    loop = std::move(nextLoop);
    fade = nextFade;
    Refresh();
}

void CSeamCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour("glass"));
    Canvas().Text(QRectF(X() + 8, Y() + 2, 100, 18), Text("end"), Colour("text"), 11, Qt::AlignLeft | Qt::AlignVCenter,
                  true);
    Canvas().Text(QRectF(X() + Width() - 108, Y() + 2, 100, 18), Text("start"), Colour("text"), 11,
                  Qt::AlignRight | Qt::AlignVCenter, true);
    const double seam = X() + Width() / 2.0;
    const double faded = Width() / 2.0 * std::min(1.0, fade / kShown);
    Canvas().Fill(QRectF(seam - faded, Y(), faded, Height()), Mix(Colour("glass"), Colour("equaliser"), 0.2F));
    if (!loop || loop->Frames() < 2) return;
    const auto reach = static_cast<std::int64_t>(kShown * loop->sampleRate);
    float top = 0.01F;
    const auto at = [this](std::int64_t place) {
        const std::int64_t frames = loop->Frames();
        const auto inside = static_cast<std::size_t>((place % frames + frames) % frames);
        return 0.5F * (loop->left[inside] + loop->right[inside]);
    };
    for (std::int64_t place = -reach; place < reach; ++place) top = std::max(top, std::abs(at(place)));
    std::vector<QPointF> line;
    for (int column = 0; column < Width(); ++column) {
        const auto place = static_cast<std::int64_t>((2.0 * column / Width() - 1.0) * static_cast<double>(reach));
        const double up = static_cast<double>(at(place) / top) * (Height() / 2.0 - 16);
        line.emplace_back(X() + column, Y() + Height() / 2.0 - up);
    }
    Canvas().FastPolyline(line, Colour("pattern"));
    Canvas().Fill(QRectF(seam - 1, Y(), 2, Height()), Colour("text"));
}

}  // namespace quib
