// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/grid/CPlayhead.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {
constexpr double kLongestExtrapolation = 0.5;  // seconds: an engine that stands still shows it
constexpr double kJitter = 0.1;                // seconds: a smaller difference is smoothed, a larger one is a jump
constexpr double kCorrection = 0.2;            // share of a small difference that one picture corrects
}  // namespace

void CPlayhead::Set(const Picture& next, std::uint64_t nanoseconds) noexcept {
    const double predicted = At(nanoseconds);
    const bool goesOn = picture.playing && next.playing && next.stepsPerSecond == picture.stepsPerSecond;
    // No block was rendered since the last picture.
    const bool isOld = goesOn && next.step == picture.step;
    picture = next;
    if (isOld) return;
    baseTime = nanoseconds;
    const double difference = next.step - predicted;
    const bool isJitter = goesOn && std::abs(difference) < kJitter * next.stepsPerSecond;
    base = isJitter ? predicted + kCorrection * difference : next.step;
}

double CPlayhead::At(std::uint64_t nanoseconds) const noexcept {
    if (!picture.playing) return -1;
    const double seconds = nanoseconds > baseTime ? static_cast<double>(nanoseconds - baseTime) * 1e-9 : 0;
    return Wrapped(base + std::min(seconds, kLongestExtrapolation) * picture.stepsPerSecond);
}

double CPlayhead::Wrapped(double step) const noexcept {
    const double length = picture.loopEnd - picture.loopStart;
    if (length <= 0 || step < picture.loopEnd) return step;
    return picture.loopStart + std::fmod(step - picture.loopEnd, length);
}

}  // namespace quib
