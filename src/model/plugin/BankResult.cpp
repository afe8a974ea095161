// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/BankResult.h"

namespace quib {

const char* Describe(BankResult result) noexcept {
    switch (result) {
        case BankResult::Incompatible:
            return "No Compatible File !";
        case BankResult::Damaged:
            return "the stored state is damaged";
        case BankResult::Unsuited:
            return "the stored state is of a kind that the plug-in does not take";
        case BankResult::Done:
            break;
    }
    return "";
}

}  // namespace quib
