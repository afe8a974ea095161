// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CAutomationTake.h"

#include <algorithm>

#include "document/CChanges.h"

namespace quib {

void CAutomationTake::WillRecord(const std::shared_ptr<CInstrument>& instrument) {
    const bool isKnown = std::any_of(recorded.begin(), recorded.end(),
                                     [&](const Recorded& entry) { return entry.instrument == instrument; });
    if (!isKnown) recorded.push_back({instrument, instrument->midiLanes.ForEdit()});
}

// The gesture goes back to what was there before the first of them.
void CAutomationTake::AddTo(CGesture& gesture) {
    for (const Recorded& entry : recorded) {
        const Place<CEventLanes> place{Part(entry.instrument, entry.instrument->midiLanes),
                                       {EChange::kLanes, entry.instrument->Id()}};
        gesture.Replace(place, entry.before, place.target->ForEdit());
    }
    recorded.clear();
}

}  // namespace quib
