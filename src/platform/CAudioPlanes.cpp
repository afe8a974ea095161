// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CAudioPlanes.h"

#include <algorithm>
#include <new>

namespace quib {

namespace {

constexpr std::size_t kLine = CAudioPlanes::kAlignment / sizeof(float);
constexpr std::size_t kLinesPerPage = 4096 / CAudioPlanes::kAlignment;

// An odd number of lines, so that consecutive planes fall on different lines of a page; a line is left over.
std::size_t StrideFor(int frames) {
    const std::size_t lines = (static_cast<std::size_t>(std::max(frames, 1)) + kLine - 1) / kLine + 1;
    return (lines | 1) * kLine;
}

// Colour n starts behind the lines that the planes of colour n - 1 take.
std::size_t OffsetFor(int planes, int colour) {
    return static_cast<std::size_t>(planes) * static_cast<std::size_t>(colour) % kLinesPerPage * kLine;
}

}  // namespace

CAudioPlanes::CAudioPlanes(int planeCount, int frameCount, int colour)
    : planes(planeCount),
      frames(frameCount),
      stride(StrideFor(frameCount)),
      total(OffsetFor(planeCount, colour) + static_cast<std::size_t>(planeCount) * stride),
      memory(static_cast<float*>(::operator new[](total * sizeof(float), std::align_val_t{4096}))),
      base(memory.get() + OffsetFor(planeCount, colour)) {
    Clear();
}

void CAudioPlanes::Clear() noexcept { std::fill_n(memory.get(), total, 0.0f); }

void CAudioPlanes::CFreeAligned::operator()(float* samples) const noexcept {
    ::operator delete[](samples, std::align_val_t{4096});
}

}  // namespace quib
