// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a host is told about one input or output of a plug-in (effGetInputProperties and
// effGetOutputProperties): the layout of the plug-in interface, and how a stereo pair is described.

#include <cstdint>
#include <cstdio>

namespace quibplug {

struct PinProperties {
    char label[64];
    std::int32_t flags;
    std::int32_t arrangement;
    char shortLabel[8];
    char future[48];
};
static_assert(sizeof(PinProperties) == 128, "a host hands over 128 bytes");

enum PinFlags : std::int32_t { kPinActive = 1, kPinFirstOfStereoPair = 2 };
constexpr std::int32_t kArrangementStereo = 1;

// `index` counts single channels: even ones are left. `pair` is the name of the two.
inline PinProperties StereoPin(const char* pair, int index) noexcept {
    PinProperties pin{};
    const bool left = index % 2 == 0;
    std::snprintf(pin.label, sizeof pin.label, "%s %s", pair, left ? "Left" : "Right");
    std::snprintf(pin.shortLabel, sizeof pin.shortLabel, "%.4s %c", pair, left ? 'L' : 'R');
    pin.flags = kPinActive | (left ? kPinFirstOfStereoPair : 0);
    pin.arrangement = kArrangementStereo;
    return pin;
}

}  // namespace quibplug
