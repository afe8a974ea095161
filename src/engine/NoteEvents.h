// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What events of a block are to notes. Any thread.

#include "model/MidiEvents.h"

namespace quib {

inline bool BeginsNote(const BlockEvent& event) noexcept { return (event.status & 0xf0) == kNoteOn && event.data2 > 0; }
inline bool EndsNote(const BlockEvent& event) noexcept {
    return (event.status & 0xf0) == kNoteOff || ((event.status & 0xf0) == kNoteOn && event.data2 == 0);
}

}  // namespace quib
