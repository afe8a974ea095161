// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What becomes of a stored state that is given to a plug-in. A value; any thread.

namespace quib {

enum class EBankResult {
    kDone,
    kIncompatible,  // no image of this layout, another version, or of another plug-in
    kDamaged,       // shorter than it says
    kUnsuited,      // a kind that this plug-in does not take
};

// For the user; empty for Done.
const char* Describe(EBankResult result) noexcept;

}  // namespace quib
