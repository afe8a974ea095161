// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// States of plug-ins as images in the published layouts of bank files (.fxb) and program files (.fxp):
// an opaque chunk, or the parameters of every program. Editing thread. Every length is checked before
// the plug-in sees a byte; a published plug-in is kept from rendering while its state is replaced.

#include <cstddef>
#include <span>

#include "model/Preset.h"

namespace quib {

class CPlugin;

enum class BankResult {
    Done,
    Incompatible,  // no image of this layout, another version, or of another plug-in
    Damaged,       // shorter than it says
    Unsuited,      // a kind that this plug-in does not take
};

// For the user; empty for Done.
const char* Describe(BankResult result) noexcept;

// Gives the plug-in the state of an image. Nothing changes unless the result is Done. Afterwards an
// open editor window needs effEditIdle, which is its owner's affair.
BankResult LoadBank(CPlugin& plugin, std::span<const std::byte> image);
BankResult LoadProgram(CPlugin& plugin, std::span<const std::byte> image);

// The plug-in's whole state, and its current program, as images. Programs are walked where that is
// the only way; the current one is as before afterwards, edits included.
StateImage SaveBank(CPlugin& plugin);
StateImage SaveProgram(CPlugin& plugin);

// Selects a program unless it is selected already. False when the plug-in has no such program.
bool SelectProgram(CPlugin& plugin, int program);

}  // namespace quib
