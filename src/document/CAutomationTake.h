// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Points of automation that come in while it is recorded: they sound at once, and all of one pass become
// one step of undo when it ends. User-interface thread.

#include <QString>
#include <memory>
#include <vector>

#include "model/CInstrument.h"

namespace quib {

class CChanges;

class CAutomationTake {
public:
    // The instrument's MIDI lanes are about to take points.
    void WillRecord(const std::shared_ptr<CInstrument>& instrument);
    bool IsEmpty() const noexcept { return recorded.empty(); }
    void Finish(const QString& name, CChanges& changes);

private:
    struct Recorded {
        std::shared_ptr<CInstrument> instrument;
        std::shared_ptr<const CEventLanes> before;
    };
    std::vector<Recorded> recorded;
};

}  // namespace quib
