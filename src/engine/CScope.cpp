// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CScope.h"

namespace quib {

namespace {
// Without a crossing for this long, the capture starts anyway.
constexpr int kPatience = 1000;
}  // namespace

void CScope::Capture(const float* left, const float* right, int frames) noexcept {
    if (!shown.load(std::memory_order_relaxed)) return;
    for (int i = 0; i < frames; ++i) {
        const float sum = left[i] + right[i];
        const bool crossing = previousSum < 0.0F && sum >= 0.0F;
        if ((crossing || counter > kPatience) && armed.load(std::memory_order_relaxed)) {
            armed.store(false, std::memory_order_relaxed);
            captureIndex = 0;
            counter = 0;
        }
        Store(left[i], right[i]);
        ++counter;
        previousSum = sum;
    }
}

void CScope::Store(float left, float right) noexcept {
    if (captureIndex >= kCaptureFrames) return;
    if (captureIndex < kPictureFrames) {
        Picture& picture = pictures.Writable();
        picture.left[static_cast<std::size_t>(captureIndex)] = left;
        picture.right[static_cast<std::size_t>(captureIndex)] = right;
        if (captureIndex + 1 == kPictureFrames) pictures.Commit();
    }
    ++captureIndex;
}

}  // namespace quib
