// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/PatternCommands.h"

#include <algorithm>
#include <array>

#include "controls/VirtualKeys.h"
#include "model/edits/NoteEdits.h"
#include "model/edits/PatternEdits.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr std::array kCommands = {
    PatternCommand{TextKey("Double pattern"), "Ctrl+Shift+D", 'D', DoublePattern},
    PatternCommand{TextKey("Halve pattern"), "Ctrl+Shift+H", 'H', HalvePattern},
    PatternCommand{TextKey("Shift left"), "Ctrl+Shift+Left", virtualKey::kLeft,
                   [](const NoteState& from) { return ShiftWrapped(from, -1); }},
    PatternCommand{TextKey("Shift right"), "Ctrl+Shift+Right", virtualKey::kRight,
                   [](const NoteState& from) { return ShiftWrapped(from, 1); }},
    PatternCommand{TextKey("Transpose up"), "Ctrl+Shift+Up", virtualKey::kUp,
                   [](const NoteState& from) { return TransposeNotes(from, 1); }},
    PatternCommand{TextKey("Transpose down"), "Ctrl+Shift+Down", virtualKey::kDown,
                   [](const NoteState& from) { return TransposeNotes(from, -1); }},
    PatternCommand{TextKey("Clear pattern"), "Ctrl+Shift+Del", virtualKey::kDelete, ClearNotes},
};

}  // namespace

std::span<const PatternCommand> PatternCommands() { return kCommands; }

const PatternCommand* PatternCommandOfKey(int virtualKey) {
    const auto found = std::find_if(kCommands.begin(), kCommands.end(),
                                    [=](const PatternCommand& command) { return command.virtualKey == virtualKey; });
    return found == kCommands.end() ? nullptr : &*found;
}

}  // namespace quib
