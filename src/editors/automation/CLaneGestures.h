// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What hands do in the curve: points and parts of the line are dragged, the tools draw over a span, a right drag
// selects. Places are skin pixels of the control. User-interface thread; knows no window.

#include <functional>
#include <map>
#include <optional>

#include "editors/automation/CLaneEdit.h"
#include "editors/automation/CLaneView.h"
#include "model/edits/LaneShapes.h"

namespace quib {

enum class ELaneTool { kPoints, kPencil, kLine, kRamp, kSine, kRandom };

// The modifiers that are held.
struct LaneHand {
    bool shift = false;
    bool control = false;
    bool alt = false;
};

class CLaneGestures {
public:
    CLaneGestures(CLaneEdit& edited, CLaneView& shown) : edit(edited), view(shown) {}

    // `right`: the other button.
    void Press(int x, int y, bool right, const LaneHand& hand);
    void Move(int x, int y, const LaneHand& hand);
    void Release(int x, int y);
    void DoubleClick(int x, int y);
    // Escape: true when there was something to give up.
    bool Cancel();
    // While a shape is drawn: its period, else the value of what is under the mouse or of the selection.
    void Wheel(int x, int y, float notches);
    // Moves the selection by the snap, or its value by a hundredth of the range.
    void Nudge(int steps, int values, bool fine);
    void Delete();
    bool IsBusy() const noexcept { return mode != EMode::kNone; }

    struct Marquee {
        Point corner;
        Point opposite;
    };
    const std::optional<Marquee>& Selecting() const noexcept { return marquee; }

    ELaneTool tool = ELaneTool::kPoints;
    std::function<void()> onMenu;

private:
    enum class EMode { kNone, kPoint, kSegment, kPencil, kShape, kMarquee, kMenu };

    Point PlaceAt(int x, int y, bool free) const;
    void BeginPoint(int x, int y, const LaneHand& hand);
    void MovePoint(int x, int y, const LaneHand& hand);
    void DrawPencil(int x, int y);
    void DrawShape(int x, int y, const LaneHand& hand);
    void Select(int x, int y);
    float Resisted(float position) const;

    CLaneEdit& edit;
    CLaneView& view;
    EMode mode = EMode::kNone;
    int pressX = 0, pressY = 0;
    bool moved = false;
    bool added = false;
    std::uint32_t grabbed = 0;  // in the state at the press
    LaneHand pressHand;
    PointSelection before;  // a marquee adds to it
    std::map<float, float> path;
    float lastStep = 0;
    LaneStroke stroke;
    std::optional<Marquee> marquee;
    std::uint32_t seed = 1;
};

}  // namespace quib
