// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CScopeCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"

namespace quib {

CScopeCtrl::CScopeCtrl(CWinControl& window, std::uint32_t number, int leftEdge, int top, int newWidth, int newHeight,
                       CScopeSource& scopeSource)
    : CControl(window, number, leftEdge, top, newWidth, newHeight), CTicked(window), source(scopeSource) {
    source.Show(true);
    source.Arm();
}

CScopeCtrl::~CScopeCtrl() { source.Show(false); }

void CScopeCtrl::Resize(int newWidth, int newHeight) { SetSize(newWidth, newHeight); }

void CScopeCtrl::OnShow(bool nowVisible) {
    source.Show(nowVisible);
    if (nowVisible) source.Arm();
}

void CScopeCtrl::Tick() {
    CScopeSource::Picture picture;
    if (!IsShown() || !source.Fetch(picture)) return;
    source.Arm();
    // Below an eighth of a pixel all lines look alike.
    const float invisible = 0.25F / static_cast<float>(std::max(Height(), 1));
    const auto isFlat = [invisible](std::span<const float> samples) {
        return std::all_of(samples.begin(), samples.end(),
                           [invisible](float sample) { return std::abs(sample) < invisible; });
    };
    const bool nowFlat = isFlat(picture.left) && isFlat(picture.right);
    if (nowFlat && flat && !left.empty()) return;
    flat = nowFlat;
    left.assign(picture.left.begin(), picture.left.end());
    right.assign(picture.right.begin(), picture.right.end());
    Update(false, true);
}

void CScopeCtrl::Draw() {
    const CPalette& palette = Palette();
    Canvas().Fill(Rectangle(), palette.Colour(QStringLiteral("glass")));
    for (int column = 1; column < 8; ++column)
        Canvas().Fill(QRectF(std::floor(X() + Width() * column / 8.0), Y(), 1, Height()),
                      palette.Colour(QStringLiteral("well")));
    Canvas().Fill(QRectF(X(), Y() + Height() / 2, Width(), 1), palette.Colour(QStringLiteral("line")));
    DrawChannel(right, palette.Colour(QStringLiteral("scopeRight")));
    DrawChannel(left, palette.Colour(QStringLiteral("scopeLeft")));
    Canvas().Frame(Rectangle(), 0, palette.Colour(QStringLiteral("line")));
}

// One point a column: of the samples that fall into it, the one furthest from zero.
void CScopeCtrl::DrawChannel(std::span<const float> samples, QRgb colour) {
    if (samples.size() < 2 || Width() < 2) return;
    points.clear();
    const qreal half = Height() / 2.0 - 2;
    const std::size_t perColumn = std::max<std::size_t>(1, samples.size() / static_cast<std::size_t>(Width()));
    for (std::size_t first = 0; first + perColumn <= samples.size(); first += perColumn) {
        const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(first);
        const auto [low, high] = std::minmax_element(begin, begin + static_cast<std::ptrdiff_t>(perColumn));
        const float furthest = -*low > *high ? *low : *high;
        const qreal place = X() + static_cast<qreal>(first) * Width() / static_cast<qreal>(samples.size());
        points.emplace_back(place, Y() + Height() / 2.0 - half * static_cast<qreal>(std::clamp(furthest, -1.0F, 1.0F)));
    }
    Canvas().FastPolyline(points, colour);
}

}  // namespace quib
