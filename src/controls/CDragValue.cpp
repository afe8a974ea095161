// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CDragValue.h"

#include <algorithm>

namespace quib {

void CDragValue::Begin(float startValue, int position) noexcept {
    start = last = startValue;
    startPosition = lastPosition = position;
    fine = false;
}

float CDragValue::Move(int position, float valuePerPixel, bool nowFine) noexcept {
    if (nowFine != fine) {
        start = last;
        startPosition = lastPosition;
        fine = nowFine;
    }
    last = start + static_cast<float>(position - startPosition) * valuePerPixel * (fine ? 0.1F : 1.0F);
    lastPosition = position;
    return last;
}

float WithDetent(float value, float detent, float maximum) noexcept {
    if (value <= detent) return value;
    return std::max(value * 1.08F - maximum * 0.08F, detent);
}

}  // namespace quib
