// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Pure edits of the balls of an instrument. An index that is not there changes nothing. They know no window and
// no thread.

#include "model/BallSound.h"

namespace quib {

constexpr std::size_t kMostBalls = 64;
constexpr std::int32_t kHighestBallRate = 7;
constexpr float kBallReach = 127;  // of a ball's place, from 0
constexpr float kBallSpan = 128;   // of an assignment's low and high, from 0

// A new ball in the middle, to which nothing is assigned; the same list when it is full.
BallSoundList WithNewBall(const BallSoundList& balls);
BallSoundList WithoutBall(const BallSoundList& balls, int ball);
// With the ball's numbers within their ranges.
BallSoundList WithBall(const BallSoundList& balls, int ball, BallSound next);

// The assignments of an axis: 0 horizontal, 1 vertical.
const std::vector<BallAssignment>& AssignmentsOf(const BallSound& ball, int axis) noexcept;
// Over the whole range; a parameter that follows the ball already moves to this axis.
BallSound Assigned(const BallSound& ball, int axis, EBallTarget target, int parameter);
BallSound Unassigned(const BallSound& ball, int axis, int assignment);
BallSound OnOtherAxis(const BallSound& ball, int axis, int assignment);
// `low` and `high`: 0..128; the pair may cross.
BallSound WithSpan(const BallSound& ball, int axis, int assignment, float low, float high);

// What an assignment gives, 0..1, for a place of the ball on its axis.
float BallShare(const BallAssignment& assignment, float place) noexcept;

}  // namespace quib
