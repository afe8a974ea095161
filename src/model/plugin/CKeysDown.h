// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which keys are down in a plug-in, and whether its sustain pedal is, by the messages that it got. Render
// thread; never calls the plug-in.

#include <bitset>

#include "model/MidiEvents.h"

namespace quib {

class CKeysDown {
public:
    void Follow(const BlockEvent& event) noexcept {
        const int type = event.status & 0xf0;
        if (type == kNoteOn || type == kNoteOff) {
            keys.set(event.data1 & 0x7fU, type == kNoteOn && event.data2 > 0);
        } else if (type == kControlChange && event.data1 == kSustainPedal) {
            pedal = event.data2 > 0;
        }
    }

    // Calls `add(event)` with the messages that end them all on the first frame of a block.
    template <class Add>
    void ForEachEnd(Add add) const {
        if (pedal) add(BlockEvent{kControlChange, kSustainPedal, 0, 0});
        for (std::size_t key = 0; keys.any() && key < keys.size(); ++key) {
            if (keys[key]) add(BlockEvent{kNoteOff, static_cast<std::uint8_t>(key), 0, 0});
        }
    }

private:
    std::bitset<128> keys;
    bool pedal = false;
};

}  // namespace quib
