// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CFrozenTake.h"

#include <algorithm>

namespace quib {

std::int64_t CFrozenTake::Length() const noexcept {
    return static_cast<std::int64_t>(content.places.size()) / content.format.channels * FrozenContent::kUnitFrames;
}

CFrozenTake::Run CFrozenTake::At(int channel, std::int64_t frame, int count) const noexcept {
    if (frame < 0 || frame >= Length()) return {nullptr, count};
    constexpr std::int64_t kUnit = FrozenContent::kUnitFrames;
    const int frames = static_cast<int>(std::min<std::int64_t>(count, kUnit - frame % kUnit));
    const auto entry = static_cast<std::size_t>(frame / kUnit * content.format.channels + channel);
    const std::int64_t place = content.places[entry];
    if (place < 0) return {nullptr, frames};
    return {content.samples.data() + place * kUnit + frame % kUnit, frames};
}

void CFrozenTake::Copy(int channel, std::int64_t frame, int count, float* to) const noexcept {
    while (count > 0) {
        const Run run = At(channel, frame, count);
        if (run.samples != nullptr) {
            std::copy_n(run.samples, run.frames, to);
        } else {
            std::fill_n(to, run.frames, 0.0F);
        }
        to += run.frames;
        frame += run.frames;
        count -= run.frames;
    }
}

}  // namespace quib
