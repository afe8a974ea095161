// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The pad on which balls are dragged and thrown: draws them with their trails and tells where the hand wants one.
// A thrown ball glides and bounces until it is caught. User-interface thread.

#include <QTimer>
#include <array>
#include <deque>
#include <vector>

#include "controls/CControl.h"

namespace quib {

using PadPlace = std::array<float, 2>;  // x and y, 0..127

// Its colour, the same everywhere in the window.
QRgb BallColour(int ball);
// The disc with the ball's number.
void DrawBall(CCanvas& canvas, const QPointF& centre, qreal radius, int ball);

class CBallPadCtrl : public CControl {
public:
    static constexpr int kSize = 264;
    static constexpr int kInset = 14;
    static constexpr int kRadius = 12;

    CBallPadCtrl(CWinControl& window, std::uint32_t number, int left, int top);

    // `hold`: leaves those in the hand and in the air where they are.
    void ShowBalls(const std::vector<PadPlace>& now, bool hold);
    const std::vector<PadPlace>& Balls() const noexcept { return balls; }
    void Select(int ball);
    bool IsGliding(int ball) const noexcept;
    // Grows the trails by where the balls are now.
    void Trail();
    // Nothing glides any more, nothing is held.
    void StopAll();

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnDoubleClick(int px, int py) override;
    void OnKeyDown(int key) override;

    std::array<QString, 2> axisTexts;  // what the axes of the selected ball move
    int litAxis = -1;                  // learning
    std::function<void(int ball)> onSelect;
    std::function<void(int ball, const PadPlace&)> onMoved;
    // A gesture has ended: where the ball was at its start, and whether it was given up.
    std::function<void(int ball, const PadPlace& before)> onDropped;
    std::function<void()> onDelete;

private:
    struct Glide {
        int ball = 0;
        std::array<float, 2> speed{};  // a second
    };
    static constexpr std::size_t kTrail = 26;

    int BallAt(int px, int py, bool nearest) const;
    QPointF PlaceOf(const PadPlace& place) const;
    PadPlace ValueAt(double px, double py) const;
    void MoveTo(int ball, PadPlace place);
    void Catch(int ball) noexcept;
    void GlideOn();
    void Nudge(float right, float up);
    void ShowPlace();

    std::vector<PadPlace> balls;
    std::vector<std::deque<PadPlace>> trails;
    std::vector<Glide> glides;
    QTimer flight;
    int selected = 0;
    int held = -1;
    PadPlace before{};
    PadPlace grip{};  // from the hand to the ball
    QPointF lastHand;
    struct Sample {
        std::uint64_t time = 0;  // nanoseconds
        PadPlace place{};
    };
    std::deque<Sample> hand;  // of the last moment, for throwing
};

}  // namespace quib
