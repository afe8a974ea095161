// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The texts of the windows: the English, which also names the text in the code, and the French beside it. A new
// text is one row of the table of its windows; tests/texts finds a text without a row and a row without a use.

#include <array>
#include <span>

#include "texts/tables/ConsoleTexts.h"
#include "texts/tables/FileTexts.h"
#include "texts/tables/LaneTexts.h"
#include "texts/tables/MainTexts.h"
#include "texts/tables/NoteTexts.h"
#include "texts/tables/PluginTexts.h"
#include "texts/tables/SoundTexts.h"
#include "texts/tables/StartTexts.h"

namespace quib {

inline constexpr std::array<std::span<const KeyedText>, 8> kTextTables = {
    kMainTexts, kStartTexts, kFileTexts, kPluginTexts, kConsoleTexts, kNoteTexts, kLaneTexts, kSoundTexts};

}  // namespace quib
