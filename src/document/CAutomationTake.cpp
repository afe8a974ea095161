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

void CAutomationTake::Finish(const QString& name, CChanges& changes) {
    const CChanges::CMacro step(changes, name);
    for (const Recorded& entry : recorded) {
        const Place<CEventLanes> place{Part(entry.instrument, entry.instrument->midiLanes),
                                       {EChange::kLanes, entry.instrument->Id()}};
        const auto publish = [place, &changes](const std::shared_ptr<const CEventLanes>& content) {
            place.target->Publish(content, changes.Graveyard());
            changes.Tell(place.change);
        };
        changes.PushDone(
            name, [publish, after = place.target->ForEdit()] { publish(after); },
            [publish, before = entry.before] { publish(before); });
    }
    recorded.clear();
}

}  // namespace quib
