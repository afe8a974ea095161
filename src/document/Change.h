// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a change of the project has touched, so that a window draws only that anew. A plain value.

#include <cstdint>

namespace quib {

enum class EChange {
    kProject,          // another project; every window begins anew
    kStack,            // instruments came, went, moved, collapsed or opened
    kInstrument,       // something of an instrument that its strip shows: name, look, MIDI settings
    kSlot,             // a plug-in came or went, in a slot of the instrument or of the master (id 0)
    kPattern,          // notes or length of pattern `index`
    kPatternSelected,  // another pattern is the selected one, or its mark
    kPlaylist,
    kLanes,
    kBalls,
    kPresets,
    kValue,  // a single setting went back or forth by undo
};

// `instrument`: its id; 0 for the master section. `index`: of what the kind counts; -1 for all.
struct Change {
    EChange kind = EChange::kProject;
    std::uint32_t instrument = 0;
    int index = -1;
};

// Whether a window that shows an instrument has to look again: it is that instrument's change, or everyone's.
constexpr bool Concerns(const Change& change, std::uint32_t instrument) noexcept {
    return change.instrument == instrument || change.kind == EChange::kProject || change.kind == EChange::kStack;
}

}  // namespace quib
