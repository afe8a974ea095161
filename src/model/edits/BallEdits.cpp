// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/BallEdits.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {

bool IsIndex(int index, std::size_t count) noexcept { return index >= 0 && static_cast<std::size_t>(index) < count; }

std::vector<BallAssignment>& ListOf(BallSound& ball, int axis) noexcept {
    return axis == 0 ? ball.horizontal : ball.vertical;
}

float Within(float number, float most) noexcept { return std::isnan(number) ? 0 : std::clamp(number, 0.0F, most); }

}  // namespace

BallSoundList WithNewBall(const BallSoundList& balls) {
    BallSoundList next = balls;
    if (next.size() < kMostBalls) next.emplace_back();
    return next;
}

BallSoundList WithoutBall(const BallSoundList& balls, int ball) {
    BallSoundList next = balls;
    if (IsIndex(ball, next.size())) next.erase(next.begin() + ball);
    return next;
}

BallSoundList WithBall(const BallSoundList& balls, int ball, BallSound next) {
    BallSoundList changed = balls;
    if (!IsIndex(ball, changed.size())) return changed;
    next.x = Within(next.x, kBallReach);
    next.y = Within(next.y, kBallReach);
    next.rate = std::clamp(next.rate, 0, kHighestBallRate);
    next.channelSelector = std::clamp(next.channelSelector, 0, 17);
    next.controllerX = std::clamp(next.controllerX, 0, 127);
    next.controllerY = std::clamp(next.controllerY, 0, 127);
    changed[static_cast<std::size_t>(ball)] = std::move(next);
    return changed;
}

const std::vector<BallAssignment>& AssignmentsOf(const BallSound& ball, int axis) noexcept {
    return axis == 0 ? ball.horizontal : ball.vertical;
}

BallSound Assigned(const BallSound& ball, int axis, EBallTarget target, int parameter) {
    BallSound next = ball;
    for (auto* const list : {&next.horizontal, &next.vertical}) {
        std::erase_if(
            *list, [&](const BallAssignment& known) { return known.target == target && known.parameter == parameter; });
    }
    ListOf(next, axis).push_back({target, parameter, 0, kBallSpan, 0});
    return next;
}

BallSound Unassigned(const BallSound& ball, int axis, int assignment) {
    BallSound next = ball;
    auto& list = ListOf(next, axis);
    if (IsIndex(assignment, list.size())) list.erase(list.begin() + assignment);
    return next;
}

BallSound OnOtherAxis(const BallSound& ball, int axis, int assignment) {
    const auto& list = AssignmentsOf(ball, axis);
    if (!IsIndex(assignment, list.size())) return ball;
    BallSound next = Unassigned(ball, axis, assignment);
    ListOf(next, 1 - axis).push_back(list[static_cast<std::size_t>(assignment)]);
    return next;
}

BallSound WithSpan(const BallSound& ball, int axis, int assignment, float low, float high) {
    BallSound next = ball;
    auto& list = ListOf(next, axis);
    if (!IsIndex(assignment, list.size())) return next;
    list[static_cast<std::size_t>(assignment)].low = Within(low, kBallSpan);
    list[static_cast<std::size_t>(assignment)].high = Within(high, kBallSpan);
    return next;
}

float BallShare(const BallAssignment& assignment, float place) noexcept {
    const float share = place / kBallSpan;
    return assignment.high / kBallSpan * share + assignment.low / kBallSpan * (1.0F - share);
}

}  // namespace quib
