// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/SmoothGraph.h"

#include <algorithm>
#include <cmath>

#include "controls/CPalette.h"

namespace quib {

void DrawGraph(QImage& image, const QRect& clip, const SmoothGraph& graph) {
    const QRect shown = clip.intersected(image.rect());
    const auto& points = graph.points;
    const int first = std::max(shown.left(), static_cast<int>(std::floor(points.front().x() * graph.scale)));
    const int last = std::min(shown.right(), static_cast<int>(std::ceil(points.back().x() * graph.scale)) - 1);
    std::size_t next = 1;
    for (int column = first; column <= last; ++column) {
        const qreal x = (column + 0.5) / graph.scale;
        while (next + 1 < points.size() && points[next].x() < x) ++next;
        const QPointF from = points[next - 1];
        const QPointF way = points[next] - from;
        const qreal slope = way.x() > 0 ? way.y() / way.x() : 0;
        const qreal middle = (from.y() + slope * std::clamp(x - from.x(), 0.0, way.x())) * graph.scale;
        // As high in its column as the line is wide across its way.
        const qreal half = graph.width / 2 * std::hypot(1, slope);
        const int top = std::max(shown.top(), static_cast<int>(std::floor(middle - half)));
        const int bottom = std::min(shown.bottom(), static_cast<int>(std::ceil(middle + half)));
        for (int y = top; y <= bottom; ++y) {
            const qreal cover = std::clamp(half + 0.5 - std::abs(y + 0.5 - middle), 0.0, 1.0);
            QRgb& pixel = reinterpret_cast<QRgb*>(image.scanLine(y))[column];
            pixel = Mix(pixel, graph.colour, static_cast<float>(cover));
        }
    }
}

}  // namespace quib
