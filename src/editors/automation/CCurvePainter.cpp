// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CCurvePainter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "model/edits/LaneCurve.h"

namespace quib {

namespace {

constexpr float kNowhere = 1e9F;
constexpr int kNone = std::numeric_limits<int>::max();
constexpr float kSteep = 96;  // rows that the line rises in a column: it is not smoothed there
constexpr int kDash = 8;      // skin pixels, of which
constexpr int kDashGap = 3;   // are left out

// An eighth of one and the rest of the other, as fast as three operations.
QRgb WithEighth(QRgb under, QRgb eighth) noexcept { return under - ((under >> 3) & 0x001f1f1f) + eighth; }

QRgb Blended(QRgb under, QRgb colour, unsigned share) noexcept {
    const QRgb odd = 0x00ff00ff;
    const QRgb redBlue = ((under & odd) * (256 - share) + (colour & odd) * share) >> 8;
    const QRgb green = ((under >> 8 & 0xff) * (256 - share) + (colour >> 8 & 0xff) * share) & 0xff00;
    return 0xff000000 | (redBlue & odd) | green;
}

}  // namespace

void CCurvePainter::FindCentre(const CLaneView& view, double scale, const QPoint& origin, const PointList& points,
                               int margin) {
    const double share = 1 / (scale * kShares);
    const double left = area.left() / scale - origin.x() - margin * share;
    const std::vector<CurveColumn> columns = CurveColumns(points, view.StepAt(left), share / view.time.StepWidth(),
                                                          area.width() * kShares + 2 * margin, view.limits.kind);
    const auto rowOf = [&](float value) { return (origin.y() + view.YOf(value)) * scale - area.top(); };
    const double ground = rowOf(view.limits.minimum);
    const float range = view.limits.Range() > 0 ? view.limits.Range() : 1;
    const double rise = (rowOf(view.limits.minimum + range) - ground) / static_cast<double>(range);
    const auto place = [&](float value) {
        return static_cast<float>(ground + rise * static_cast<double>(value - view.limits.minimum));
    };
    centre.upper.resize(columns.size());
    centre.lower.resize(columns.size());
    for (std::size_t index = 0; index < columns.size(); ++index) {
        centre.upper[index] = columns[index].played ? place(columns[index].high) : kNowhere;
        centre.lower[index] = columns[index].played ? place(columns[index].low) : -kNowhere;
    }
}

// A disc along the middle of the line.
void CCurvePainter::FindEdges(double radius, int margin) {
    const std::size_t count = centre.upper.size() - 2 * static_cast<std::size_t>(margin);
    edges.upper.assign(count, kNowhere);
    edges.lower.assign(count, -kNowhere);
    for (int way = -margin; way <= margin; ++way) {
        const double aside = static_cast<double>(way) / kShares;
        const auto reach = static_cast<float>(std::sqrt(std::max(0.0, radius * radius - aside * aside)));
        const float* const upper = centre.upper.data() + margin + way;
        const float* const lower = centre.lower.data() + margin + way;
        for (std::size_t index = 0; index < count; ++index) {
            edges.upper[index] = std::min(edges.upper[index], upper[index] - reach);
            edges.lower[index] = std::max(edges.lower[index], lower[index] + reach);
        }
    }
}

void CCurvePainter::FindColumns(double scale, int margin) {
    const auto count = static_cast<std::size_t>(area.width());
    for (std::vector<int>* const list : {&top, &foot, &below, &first, &last}) list->assign(count, kNone);
    const auto row = [this](float place) {
        return static_cast<int>(std::clamp(place, 0.0F, static_cast<float>(area.height())));
    };
    for (std::size_t column = 0; column < count; ++column) {
        const int place = static_cast<int>((area.left() + static_cast<int>(column)) / scale);
        if (stroke.dashed && place % kDash >= kDash - kDashGap) continue;
        const auto begin = static_cast<std::ptrdiff_t>(column * kShares);
        std::array<float, kShares> upper{}, lower{};
        std::copy_n(edges.upper.begin() + begin, kShares, upper.begin());
        std::copy_n(edges.lower.begin() + begin, kShares, lower.begin());
        std::sort(upper.begin(), upper.end());
        std::sort(lower.begin(), lower.end());
        if (lower.back() <= upper.front()) continue;
        if (stroke.filled) {
            const auto middle = centre.lower.begin() + margin + begin;
            below[column] = row(*std::max_element(middle, middle + kShares));
        }
        // Half of the shares are enough where there is no edge to be seen.
        const bool steep = upper.back() - upper.front() > kSteep || lower.back() - lower.front() > kSteep;
        first[column] = row(steep ? upper[1] + 0.5F : std::floor(upper.front()));
        last[column] = row(steep ? lower[2] + 0.5F : std::ceil(lower.back()));
        top[column] = steep ? first[column] : row(std::ceil(upper.back()));
        foot[column] = steep ? last[column] : row(std::floor(lower.front()));
        if (foot[column] <= top[column]) top[column] = foot[column] = last[column];
    }
}

void CCurvePainter::Find(const CLaneView& view, double scale, const QPoint& origin, const QRect& wantedArea,
                         const PointList& points, const Stroke& wanted) {
    area = wantedArea;
    stroke = wanted;
    const double radius = stroke.width / 2 * scale;
    const int margin = static_cast<int>(std::ceil(radius * kShares));
    FindCentre(view, scale, origin, points, margin);
    FindEdges(radius, margin);
    FindColumns(scale, margin);
}

// What there is of a column in some rows.
CCurvePainter::EPart CCurvePainter::PartOf(std::size_t column, int firstRow, int endRow) const noexcept {
    const bool apart = first[column] >= endRow || last[column] <= firstRow;
    if (!apart) return top[column] <= firstRow && foot[column] >= endRow ? EPart::kLine : EPart::kMixed;
    if (below[column] >= endRow) return EPart::kNothing;
    return below[column] <= firstRow ? EPart::kGround : EPart::kMixed;
}

void CCurvePainter::FillRow(QRgb* pixels, int y, EPart part, int from, int count) const {
    const QRgb colour = stroke.colour;
    const QRgb eighth = (colour >> 3) & 0x001f1f1f;
    if (part == EPart::kLine) return static_cast<void>(std::fill_n(pixels, count, colour));
    if (part == EPart::kGround) {
        for (int x = 0; x < count; ++x) pixels[x] = WithEighth(pixels[x], eighth);
        return;
    }
    const int* const tops = top.data() + from;
    const int* const feet = foot.data() + from;
    const int* const grounds = below.data() + from;
    for (int x = 0; x < count; ++x) {
        const QRgb under = y >= grounds[x] ? WithEighth(pixels[x], eighth) : pixels[x];
        pixels[x] = (y >= tops[x]) & (y < feet[x]) ? colour : under;
    }
}

// What the line covers of a pixel, above and below its full ones.
void CCurvePainter::Smooth(const PixelTile& tile, int leftmost, int end) const {
    const int firstRow = tile.area.top();
    const int endRow = tile.area.bottom() + 1;
    const auto smooth = [&](int column, int from, int to) {
        const std::size_t begin = static_cast<std::size_t>(column) * kShares;
        const float* const upper = edges.upper.data() + begin;
        const float* const lower = edges.lower.data() + begin;
        for (int y = std::max(from, firstRow); y < std::min(to, endRow); ++y) {
            const auto row = static_cast<float>(y);
            // All at once, then their sum.
            std::array<float, kShares> covered;
            for (std::size_t share = 0; share < kShares; ++share)
                covered[share] = std::max(0.0F, std::min(lower[share], row + 1) - std::max(upper[share], row));
            const float sum = covered[0] + covered[1] + covered[2] + covered[3];
            QRgb& pixel = tile.Row(y)[column - tile.area.left()];
            pixel = Blended(pixel, stroke.colour, static_cast<unsigned>(sum * (256.0F / kShares)));
        }
    };
    for (int column = leftmost; column < end; ++column) {
        const auto index = static_cast<std::size_t>(column);
        smooth(column, first[index], top[index]);
        smooth(column, foot[index], last[index]);
    }
}

void CCurvePainter::Draw(const PixelTile& tile) const {
    const int firstRow = tile.area.top();
    const int endRow = tile.area.bottom() + 1;
    const int left = tile.area.left();
    const int end = tile.area.right() + 1;
    // Most columns are the same in all rows of a tile, and so are those beside them.
    for (int from = left, to = from; from < end; from = to) {
        const EPart part = PartOf(static_cast<std::size_t>(from), firstRow, endRow);
        for (to = from + 1; to < end && PartOf(static_cast<std::size_t>(to), firstRow, endRow) == part;) ++to;
        if (part == EPart::kNothing) continue;
        for (int row = firstRow; row < endRow; ++row)
            FillRow(tile.Row(row) + (from - left), row, part, from, to - from);
        if (part == EPart::kMixed) Smooth(tile, from, to);
    }
}

}  // namespace quib
