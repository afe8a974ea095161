// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a compressor of this program's own hears and does, for its picture. Other plug-ins tell nothing. Editing
// thread, while the plug-in may be rendering.

#include <optional>

#include "model/plugin/CPlugin.h"

namespace quib {

struct MeasuredLevel {
    float level = -120;   // dBFS, the highest since it was asked last
    float reduction = 0;  // dB, from 0 on: the greatest since then
};

std::optional<MeasuredLevel> AskMeasured(CPlugin& plugin);

}  // namespace quib
