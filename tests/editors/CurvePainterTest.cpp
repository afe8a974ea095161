// SPDX-License-Identifier: GPL-3.0-or-later
// The pixels of a lane are the values that the engine plays.
#include "editors/automation/CCurvePainter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "editors/automation/CCrowdPainter.h"

namespace quib {
namespace {

constexpr QRgb kLine = 0xffff8040;
constexpr QRgb kGround = 0xff000000;

// How much of the line a pixel shows.
double ShareOf(QRgb pixel) { return qRed(pixel) / 255.0; }

// The line of a view of 600x300 or less, painted in stripes of so many pixels, a few rows at a time.
class Picture {
public:
    Picture(const CLaneView& view, double scale, const PointList& points, const CCurvePainter::Stroke& stroke,
            int stripe)
        : width(static_cast<int>(view.Width() * scale)),
          pixels(static_cast<std::size_t>(width * static_cast<int>(view.Height() * scale)), kGround) {
        const int height = static_cast<int>(view.Height() * scale);
        for (int left = 0; left < width; left += stripe) {
            const QRect area(left, 0, std::min(stripe, width - left), height);
            CCurvePainter painter;
            painter.Find(view, scale, {0, 0}, area, points, stroke);
            for (int row = 0; row < height; row += 10)
                painter.Draw({QRect(0, row, area.width(), std::min(10, height - row)), &Pixel(left, row), width});
        }
    }
    QRgb At(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }

private:
    QRgb& Pixel(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }

    int width;
    std::vector<QRgb> pixels;
};

TEST(CCurvePainter, AThousandPlacesOfEveryKindShowWhatIsPlayedThere) {
    std::mt19937 dice(11);
    const auto within = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(dice);
    };
    CLaneView view;
    view.Resize(600, 300);
    view.time.SetExtent(200);
    view.limits = {0, 127, ELaneKind::kContinuous, 200};
    for (const double scale : {1.0, 1.5, 2.0}) {
        for (int kind = 0; kind <= static_cast<int>(ELaneKind::kSwitch); ++kind) {
            view.limits.kind = static_cast<ELaneKind>(kind);
            PointList points = {{1, 60}};
            for (const int count : {3, 12, 3000}) {
                for (int point = 0; point < count; ++point)
                    points.push_back({points.back().x + static_cast<float>(within(0, 1) < 0.1 ? 0 : 20.0 / count),
                                      static_cast<float>(within(0, 127))});
            }
            const Picture picture(view, scale, points, {kLine}, 600);
            for (int place = 0; place < 1000; ++place) {
                const int column = static_cast<int>(within(view.scaleWidth * scale, 600 * scale - 1));
                const double step = view.StepAt((column + 0.5) / scale);
                const auto value = ValueAt(points, static_cast<float>(step), view.limits.kind);
                if (!value) {
                    EXPECT_LE(ShareOf(picture.At(column, static_cast<int>(view.YOf(60) * scale))),
                              step < 0.9 ? 0.0 : 1.0);
                    continue;
                }
                const int row = static_cast<int>(view.YOf(*value) * scale);
                ASSERT_GT(ShareOf(picture.At(column, row)), 0.3) << kind << ' ' << step;
            }
        }
    }
}

// A flat line is as thick as it should be, and what is painted in parts is what is painted at once.
TEST(CCurvePainter, PartsJoinAndTheLineHasItsWidth) {
    CLaneView view;
    view.Resize(400, 200);
    view.limits = {0, 1, ELaneKind::kContinuous, 64};
    PointList points = {{0, 0.5F}, {4, 0.5F}, {4, 0.9F}};
    for (int point = 0; point < 400; ++point)
        points.push_back({4 + static_cast<float>(point) * 0.03F, 0.5F + 0.4F * std::sin(static_cast<float>(point))});
    const Picture once(view, 2, points, {kLine, 2, true}, 800);
    const Picture parts(view, 2, points, {kLine, 2, true}, 7);
    int farthest = 0;  // of the steps of a colour
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 800; ++x)
            farthest = std::max(farthest, std::abs(qRed(once.At(x, y)) - qRed(parts.At(x, y))));
    }
    EXPECT_LE(farthest, 2);
    // Before the jump: nothing above it, four pixels of it, an eighth of it below.
    const auto red = [&](int y) { return qRed(once.At(200, y)); };
    const int middle = static_cast<int>(std::lround(view.YOf(0.5F) * 2));
    EXPECT_EQ(red(middle - 4), 0);
    EXPECT_EQ(red(middle), 255);
    int line = 0;
    for (int y = middle - 3; y <= middle + 2; ++y) line += red(y);
    EXPECT_NEAR(line, 4 * 255, 64);
    EXPECT_EQ(red(middle + 4), 255 / 8);
}

// Squares on the edges of tiles and of the area are whole, and drawing tile by tile leaves the rest alone.
TEST(CCrowdPainter, EachSquareIsWholeWhateverTilesItLiesIn) {
    constexpr int kWidth = 600, kHeight = 100, kSize = 6;
    CCrowdPainter crowd;
    crowd.Begin({kWidth, kHeight}, kSize, kLine);
    std::vector<QRgb> wanted(kWidth * kHeight, kGround), drawn = wanted;
    for (const QPoint corner : {QPoint(253, 30), QPoint(-3, -2), QPoint(596, 97), QPoint(300, 50), QPoint(700, 20)}) {
        crowd.Add(corner);
        for (int y = std::max(0, corner.y()); y < std::min(kHeight, corner.y() + kSize); ++y) {
            for (int x = std::max(0, corner.x()); x < std::min(kWidth, corner.x() + kSize); ++x)
                wanted[static_cast<std::size_t>(y * kWidth + x)] = kLine;
        }
    }
    for (int top = 0; top < kHeight; top += PixelTile::kRows) {
        for (int left = 0; left < kWidth; left += PixelTile::kColumns)
            crowd.Draw({QRect(left, top, std::min(PixelTile::kColumns, kWidth - left),
                              std::min(PixelTile::kRows, kHeight - top)),
                        &drawn[static_cast<std::size_t>(top * kWidth + left)], kWidth});
    }
    EXPECT_EQ(drawn, wanted);
}

}  // namespace
}  // namespace quib
