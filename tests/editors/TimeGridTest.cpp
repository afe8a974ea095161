// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>

#include "editors/grid/CPlayhead.h"
#include "editors/grid/CTimeGrid.h"

namespace quib {

TEST(TimeGrid, PixelsAndStepsGoOverIntoEachOtherAndTheZoomKeepsItsAnchor) {
    CTimeGrid grid;
    grid.SetWidth(836);
    grid.SetExtent(4096);
    for (const int width : {24, 48, 96, 48, 24, 12, 6, 3, 6, 12}) {
        for (const int anchor : {0, 1, 417, 835}) {
            const int scroll = grid.Scroll();
            const double step = grid.StepAt(anchor);
            grid.SetStepWidth(width, anchor);
            const double moved = grid.XOf(step) - anchor;
            EXPECT_TRUE(std::abs(moved) <= 1 || grid.Scroll() == 0) << scroll << " " << width << " " << anchor;
        }
        grid.ScrollTo(12345 + width);
        for (const float step : {0.0F, 0.3333F, 7.25F, 1023.9375F}) {
            EXPECT_EQ(static_cast<float>(grid.StepAt(grid.XOf(static_cast<double>(step)))), step);
        }
        for (int x = 0; x < 836; x += 7) EXPECT_EQ(grid.XOf(grid.StepAt(x)), x);
    }
    grid.SetStepWidth(5, 0);
    grid.ZoomOut(0);
    EXPECT_EQ(grid.StepWidth(), 3);
    EXPECT_FALSE(grid.ZoomOut(0));
    grid.SetStepWidth(64, 0);
    grid.ZoomIn(0);
    EXPECT_EQ(grid.StepWidth(), 96);
}

TEST(TimeGrid, SnapsInTheUnitsOfMusic) {
    CTimeGrid grid;
    using EKind = Snap::EKind;
    const struct {
        Snap snap;
        Meter meter;
        double length;
    } cases[] = {{{EKind::kOff}, {}, 0},
                 {{EKind::kStep}, {}, 1},
                 {{EKind::kTimebase}, {}, 1.0 / 24},
                 {{EKind::kTimebase}, {4, 4, 4, 0}, 0},
                 {{EKind::kFraction, 16}, {}, 1},
                 {{EKind::kFraction, 1}, {}, 16},
                 {{EKind::kFraction, 8, true}, {}, 4.0 / 3},
                 {{EKind::kFraction, 8}, {6, 3, 8, 96}, 6}};
    for (const auto& entry : cases) {
        grid.snap = entry.snap;
        grid.meter = entry.meter;
        EXPECT_NEAR(grid.SnapSteps(), entry.length, 1e-12) << SnapName(entry.snap);
        const float down = grid.SnapDown(13.7);
        EXPECT_LE(down, 13.7F);
        EXPECT_GE(static_cast<double>(down) + entry.length, 13.7 - 1e-4);
    }
    EXPECT_EQ(SnapChoices().size(), 17U);
}

TEST(TimeGrid, DrawsTheLinesThatHaveRoom) {
    CTimeGrid grid;
    grid.meter = {4, 3, 4, 96};
    EXPECT_EQ(grid.LineOf(12), ELine::kBar);
    EXPECT_EQ(grid.LineOf(16), ELine::kBeat);
    EXPECT_EQ(grid.LineOf(17), ELine::kStep);
    EXPECT_EQ(grid.Lines(-3, 12.5).size(), 13U);
    grid.SetStepWidth(3, 0);
    EXPECT_EQ(grid.Lines(0, 24).size(), 6U);
    // As stored: a beat of no steps is one of a step.
    grid.meter = {0, 0, 0, 0};
    EXPECT_EQ(grid.LineOf(5), ELine::kBar);
}

TEST(TimeGrid, FollowsByPagesUntilAHandScrolls) {
    CTimeGrid grid;
    grid.SetWidth(480);  // 20 steps
    grid.SetExtent(128);
    EXPECT_FALSE(grid.Follow(50));  // off
    grid.followOn = true;
    EXPECT_FALSE(grid.Follow(19.9));
    EXPECT_TRUE(grid.Follow(20.1));
    EXPECT_EQ(grid.FirstStep(), 20);
    EXPECT_FALSE(grid.Follow(33));
    EXPECT_TRUE(grid.Follow(0.5));  // the loop begins again
    EXPECT_EQ(grid.FirstStep(), 0);
    grid.ScrollTo(100);
    EXPECT_FALSE(grid.Follow(60));
    grid.PlayingStarts();
    EXPECT_TRUE(grid.Follow(60));
    EXPECT_FALSE(grid.Follow(-1));
}

TEST(Playhead, GoesOnBetweenPicturesAndWrapsWithTheLoop) {
    constexpr std::uint64_t kMillisecond = 1'000'000;
    CPlayhead head;
    EXPECT_EQ(head.At(0), -1);
    CPlayhead::Picture picture{true, 14, 8, 0, 16};
    head.Set(picture, 0);
    EXPECT_NEAR(head.At(125 * kMillisecond), 15, 1e-9);
    EXPECT_NEAR(head.At(375 * kMillisecond), 1, 1e-9);
    // The same picture again is no news, and one that is a little late does not throw it back.
    head.Set(picture, 100 * kMillisecond);
    EXPECT_NEAR(head.At(125 * kMillisecond), 15, 1e-9);
    picture.step = 14.9;
    head.Set(picture, 125 * kMillisecond);
    EXPECT_NEAR(head.At(125 * kMillisecond), 14.98, 1e-9);
    // A jump is one.
    picture.step = 4;
    head.Set(picture, 130 * kMillisecond);
    EXPECT_NEAR(head.At(130 * kMillisecond), 4, 1e-9);
    // An engine that stands still is seen to.
    EXPECT_NEAR(head.At(60'000 * kMillisecond), head.At(61'000 * kMillisecond), 1e-9);
    picture.playing = false;
    head.Set(picture, 131 * kMillisecond);
    EXPECT_EQ(head.At(131 * kMillisecond), -1);
}

}  // namespace quib
