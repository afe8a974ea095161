// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CSelection.h"

#include <algorithm>

namespace quib {

void CSelection::SetCurrent(int index) {
    const int limited = std::clamp(index, -1, static_cast<int>(context.Instruments().size()) - 1);
    if (limited == current) return;
    current = limited;
    Q_EMIT CurrentChanged(current);
}

void CSelection::Renew(int index) {
    current = -2;
    SetCurrent(index);
}

int CSelection::CurrentPattern() const {
    const auto instrument = CurrentInstrument();
    return instrument ? std::clamp(instrument->patternSelected.Get(), 0, kPatternCount - 1) : 0;
}

}  // namespace quib
