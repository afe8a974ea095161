// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The edits of a pattern as a whole that menus list and keys run: one table for the piano roll and the
// strips. Plain values, any thread.

#include <span>

#include "model/edits/NoteState.h"

namespace quib {

struct PatternCommand {
    const char* text;     // in English; also the name of the step of undo
    const char* keyText;  // as menus write it
    int virtualKey;       // with Ctrl and Shift
    NoteState (*edit)(const NoteState& from);
};

std::span<const PatternCommand> PatternCommands();
// The one of a key that is pressed with Ctrl and Shift; null when it has none.
const PatternCommand* PatternCommandOfKey(int virtualKey);

}  // namespace quib
