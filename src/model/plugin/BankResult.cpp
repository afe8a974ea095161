// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/BankResult.h"

namespace quib {

const char* Describe(EBankResult result) noexcept {
    switch (result) {
        case EBankResult::kIncompatible:
            return "No Compatible File !";
        case EBankResult::kDamaged:
            return "the stored state is damaged";
        case EBankResult::kUnsuited:
            return "the stored state is of a kind that the plug-in does not take";
        case EBankResult::kDone:
            break;
    }
    return "";
}

}  // namespace quib
