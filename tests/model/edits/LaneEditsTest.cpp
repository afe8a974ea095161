// SPDX-License-Identifier: GPL-3.0-or-later
// Edits of automation, the line that is drawn of it, and recorded movements with few points.
#include "model/edits/LaneEdits.h"

#include <cmath>
#include <random>

#include "Testing.h"
#include "model/edits/LaneCurve.h"
#include "model/edits/LaneShapes.h"

namespace quib {
namespace {

constexpr LaneLimits kLimits = {0, 127, ELaneKind::kContinuous, 64};

LaneState LaneOf(PointList points, PointSelection selection = {}) {
    return {std::make_shared<const PointList>(std::move(points)), std::move(selection)};
}

class LaneDice {
public:
    explicit LaneDice(unsigned seed) : engine(seed) {}
    float Within(float low, float high) { return std::uniform_real_distribution<float>(low, high)(engine); }
    PointList Points(int count, float end) {
        PointList points;
        for (int i = 0; i < count; ++i) points.push_back({std::round(Within(0, end) * 4) / 4, Within(0, 127)});
        std::stable_sort(points.begin(), points.end(), [](const Point& a, const Point& b) { return a.x < b.x; });
        return points;
    }

private:
    std::mt19937 engine;
};

TEST(LaneCurveTest, TheLineDrawnIsTheValuePlayed) {
    LaneDice dice(1);
    for (int number = 0; number <= static_cast<int>(ELaneKind::kSwitch); ++number) {
        const auto kind = static_cast<ELaneKind>(number);
        const PointList points = dice.Points(40, 64);
        for (int round = 0; round < 1000; ++round) {
            const float from = dice.Within(-4, 60);
            const auto column = static_cast<std::size_t>(dice.Within(0, 200));
            const double width = round % 2 == 0 ? 1.0 / 32 : 1.0 / 4096;
            const auto place = static_cast<float>(static_cast<double>(from) + static_cast<double>(column) * width);
            const auto drawn = CurveColumns(points, static_cast<double>(from), width, 201, kind)[column];
            const auto played = ValueAt(points, place, kind);
            const auto end = static_cast<float>(static_cast<double>(from) + static_cast<double>(column + 1) * width);
            ASSERT_EQ(drawn.played, played.has_value() || PointCount(points, place, end) > 0) << place;
            if (!played) continue;
            EXPECT_TRUE(*played >= drawn.low && *played <= drawn.high);
            if (PointCount(points, place, end) > 0) continue;
            EXPECT_EQ(drawn.high - drawn.low, IsStepped(kind) ? 0 : std::abs(*ValueAt(points, end, kind) - *played));
        }
    }
}

TEST(LaneEditsTest, EveryEditKeepsTheOrderTheLimitsAndTheSelection) {
    LaneDice dice(2);
    LaneState state = LaneOf(dice.Points(20, 64));
    for (int round = 0; round < 5000; ++round) {
        const LaneState before = state;
        switch (static_cast<int>(dice.Within(0, 6))) {
            case 0:
                state = AddPoint(state, kLimits, {dice.Within(-9, 90), dice.Within(-50, 200)});
                break;
            case 1:
                state = Select(state, PointsWithin(state, {dice.Within(0, 64), 0}, {dice.Within(0, 64), 127}));
                break;
            case 2:
                if (state.points->size() > 60) state = RemoveSelected(state);
                break;
            case 3:
                state = ReplaceSpan(state, kLimits,
                                    MakeShape(static_cast<ELaneShape>(round % 4),
                                              {{dice.Within(0, 70), 0}, {dice.Within(0, 70), 127}, 4, 1, 7}),
                                    round % 2 == 0);
                break;
            case 4:
                state = PastePoints(state, kLimits, CopySelected(state), dice.Within(0, 70));
                break;
            default:
                state = MoveSelected(state, kLimits, dice.Within(-20, 20), dice.Within(-60, 60));
                EXPECT_EQ(state.selection.size(), before.selection.size());
        }
        if (*state.points == *before.points) {
            EXPECT_EQ(state.points, before.points);
        }
        for (std::size_t i = 0; i < state.points->size(); ++i) {
            const Point& point = (*state.points)[i];
            ASSERT_TRUE(point.x >= 0 && point.x <= 64 && point.y >= 0 && point.y <= 127) << round;
            if (i > 0) {
                ASSERT_LE((*state.points)[i - 1].x, point.x);
            }
        }
        ASSERT_TRUE(std::is_sorted(state.selection.begin(), state.selection.end()));
        ASSERT_TRUE(state.selection.empty() || state.selection.back() < state.points->size());
    }
}

TEST(LaneEditsTest, ABlockStopsWithItsShapeAndAPointMayPassOthersOrMakeAJump) {
    const LaneState block = LaneOf({{1, 10}, {2, 100}, {8, 5}}, {0, 1});
    EXPECT_EQ(*MoveSelected(block, kLimits, -5, 90).points, (PointList{{0, 37}, {1, 127}, {8, 5}}));
    const LaneState passed = MoveSelected(block, kLimits, 20, 0);
    EXPECT_EQ(*passed.points, (PointList{{8, 5}, {21, 10}, {22, 100}}));
    EXPECT_EQ(passed.selection, (PointSelection{1, 2}));
    EXPECT_EQ(*MoveSelectedTo(Select(block, {1}), kLimits, 8).points, (PointList{{1, 10}, {8, 100}, {8, 5}}));
    EXPECT_EQ(MoveSelected(LaneOf({{3, 0}}, {0}), {0, 1, ELaneKind::kSwitch, 8}, 0, 0.7F).points->front().y, 1);
}

TEST(LaneEditsTest, WhatIsDrawnOverASpanLeavesTheCourseOutsideOfIt) {
    const LaneState line = LaneOf({{0, 0}, {10, 100}, {20, 0}});
    for (const float left : {5.0F, 11.0F}) {
        const LaneState drawn = ReplaceSpan(line, kLimits, {{left, 80}, {15, 90}}, false);
        for (float place = 0.5F; place < 20; place += 0.5F) {
            if (place >= left && place <= 15) continue;
            EXPECT_NEAR(*ValueAt(*line.points, place, kLimits.kind), *ValueAt(*drawn.points, place, kLimits.kind),
                        1e-3F);
        }
        EXPECT_NEAR(*ValueAt(*drawn.points, (left + 15) / 2, kLimits.kind), 85, 1e-3F);
    }
}

// A hand that turns a knob to a new place, rests, and turns on; read 25 times a second.
PointList TurnedKnob(LaneDice& dice, float seconds) {
    PointList samples;
    float now = 0;
    float value = 64;
    while (now < seconds) {
        const float target = dice.Within(0, 127);
        const float turn = dice.Within(0.4F, 2);
        const float rest = dice.Within(0, 1.5F);
        const float start = now;
        const float from = value;
        for (; now < start + turn + rest; now += 0.04F) {
            const float share = std::min(1.0F, (now - start) / turn);
            value = from + (target - from) * (3 - 2 * share) * share * share;
            samples.push_back({now * 8, value});
        }
    }
    return samples;
}

TEST(ThinnedTest, KeepsWithinTheBoundEverywhereAndTakesFewPoints) {
    const LaneLimits endless = {0, 127, ELaneKind::kContinuous, 1e6F};
    const float bound = kRecordingTolerance * 127;
    LaneDice dice(3);
    for (int round = 0; round < 200; ++round) {
        PointList samples = TurnedKnob(dice, 60);
        const bool wild = round % 2 == 1;
        for (Point& sample : samples) {
            if (wild) sample.y = round % 4 == 1 ? dice.Within(0, 127) : std::round(sample.y);
        }
        const PointList points = Thinned(samples, endless, bound);
        if (!wild) {
            EXPECT_LE(points.size(), 200U);
        }
        for (const Point& sample : samples) {
            const auto value = ValueAt(points, sample.x, endless.kind);
            ASSERT_TRUE(value.has_value());
            ASSERT_NEAR(*value, sample.y, bound);
            ASSERT_TRUE(*value >= 0 && *value <= 127);
        }
        EXPECT_EQ(points.back().x, samples.back().x);
    }
    EXPECT_EQ(Thinned({{0, 0}, {1, 0}, {2, 1}, {2, 0}, {3, 1}}, {0, 1, ELaneKind::kSwitch, 9}, 0.1F),
              (PointList{{0, 0}, {2, 1}}));
}

}  // namespace
}  // namespace quib
