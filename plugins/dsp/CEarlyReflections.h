// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The first echoes of a room, a pattern of taps of each side that is heard on both. Belongs to one render
// thread; only Allocate() allocates.

#include <array>

#include "dsp/CDelayLine.h"
#include "dsp/Room.h"

namespace quibplug {

class CEarlyReflections {
public:
    void Allocate(float largestMetres, float sampleRate) noexcept;
    void Clear() noexcept;

    // Adds the echoes times `gains` of what was written before, between two rooms; `shares` as in
    // CDelayLine::ReadBetween.
    void Add(const Room& from, const Room& to, const float* shares, const float* gains, float* left, float* right,
             int frames) const noexcept;
    void Write(const float* left, const float* right, int frames) noexcept;

private:
    std::array<CDelayLine, 2> m_sides;
};

}  // namespace quibplug
