// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What becomes of a stored state that is given to a plug-in. A value; any thread.

namespace quib {

enum class BankResult {
    Done,
    Incompatible,  // no image of this layout, another version, or of another plug-in
    Damaged,       // shorter than it says
    Unsuited,      // a kind that this plug-in does not take
};

// For the user; empty for Done.
const char* Describe(BankResult result) noexcept;

}  // namespace quib
