// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a device decides before it renders. A plain value.

#include "model/plugin/CPlugin.h"

namespace quib {

struct RenderFormat {
    static constexpr int kMaximumBlockSize = CPlugin::kMaximumFrames;

    double sampleRate = 44100.0;  // Hz
    int blockSize = 2048;         // frames, 1 .. kMaximumBlockSize
    int threads = 1;              // render threads, the device's own included
    bool realTime = false;
};

}  // namespace quib
