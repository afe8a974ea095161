// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CLoopGestures.h"

#include <algorithm>
#include <cstdlib>

#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kTolerance = 4;  // pixels beside a marker that still take it
constexpr int kNarrow = 9;     // pixels below which the region only moves as a whole
}  // namespace

CLoopGestures::EDrag CLoopGestures::HitTest(int x) const {
    const StepRange loop = song.Loop();
    const double startX = view.time.XOf(loop.first);
    const double endX = view.time.XOf(loop.end);
    if (x < startX - kTolerance || x > endX + kTolerance) return EDrag::kNew;
    if (endX - startX < kNarrow) return EDrag::kWhole;
    if (x < startX + kTolerance) return EDrag::kStart;
    return x > endX - kTolerance ? EDrag::kEnd : EDrag::kWhole;
}

void CLoopGestures::Press(int x) {
    Cancel();
    mode = HitTest(x);
    // A loop of no length has nothing to be taken.
    if (song.Loop().IsEmpty()) mode = EDrag::kNew;
    pressX = x;
    before = song.Loop();
}

void CLoopGestures::PressNew(int x) {
    Press(x);
    mode = EDrag::kNew;
}

void CLoopGestures::Move(int x, bool withoutSnap) {
    if (mode == EDrag::kNone) return;
    // A click moves nothing.
    if (!gesture && std::abs(x - pressX) <= kTolerance) return;
    if (!gesture) gesture = std::make_unique<CGesture>(changes);
    const int raster = withoutSnap ? 1 : view.Raster();
    const double way = view.time.StepAt(x) - view.time.StepAt(pressX);
    StepRange next = before;
    switch (mode) {
        case EDrag::kStart:
            next.first = std::clamp(view.SnapNearest(before.first + way, raster), 0, before.end - 1);
            break;
        case EDrag::kEnd:
            next.end = std::clamp(view.SnapNearest(before.end + way, raster), before.first + 1, kMaximumSongStep);
            break;
        case EDrag::kWhole:
            next.first = view.SnapNearest(before.first + way, raster);
            next.end = next.first + before.end - before.first;
            break;
        default:
            next.first = view.SnapDown(std::min(view.time.StepAt(x), view.time.StepAt(pressX)), raster);
            next.end = view.SnapUp(std::max(view.time.StepAt(x), view.time.StepAt(pressX)), raster);
            break;
    }
    if (!next.IsEmpty()) song.SetLoop(*gesture, next, mode == EDrag::kNew || song.IsLoopOn());
}

void CLoopGestures::Release() {
    mode = EDrag::kNone;
    if (!gesture) return;
    gesture->Finish(Text("Loop"));
    gesture.reset();
}

void CLoopGestures::Cancel() {
    mode = EDrag::kNone;
    gesture.reset();
}

}  // namespace quib
