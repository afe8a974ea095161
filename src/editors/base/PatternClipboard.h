// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Notes and patterns on the system's clipboard, as the text of a pattern file: they go from any pattern to
// any other one, of another instrument, project or running program. User-interface thread.

#include <memory>
#include <optional>

#include "model/files/PatternRecords.h"

namespace quib {

class CWorkstation;

// Some notes, at their places in a pattern of so many steps.
void CopyNotesToClipboard(const CPattern& notes);
// A whole pattern of an instrument, with its automation.
void CopyPatternToClipboard(const CInstrument& instrument, int pattern);
// What is there; nothing when it is no text of a pattern file.
std::optional<PatternClip> PatternOfClipboard();
// Tells the user that the clipboard holds something else.
void TellNothingToPaste(CWorkstation& document);

}  // namespace quib
