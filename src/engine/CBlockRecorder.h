// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the engine hands the master output to while it is recorded. Render thread.

#include <cstdint>
#include <span>

namespace quib {

class CBlockRecorder {
public:
    virtual ~CBlockRecorder() = default;
    virtual bool IsRecording() const noexcept = 0;
    // Whole frames of stereo, interleaved. Never waits.
    virtual void PushBlock(std::span<const std::int16_t> values) noexcept = 0;
};

}  // namespace quib
