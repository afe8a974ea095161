// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Points of automation that come in while it is recorded: they sound at once, and all of one pass become
// one step of undo when it ends. User-interface thread.

#include <QString>
#include <memory>
#include <vector>

#include "model/CInstrument.h"

class QUndoStack;

namespace quib {

class CAutomationTake {
public:
    // The instrument's MIDI lanes are about to take points.
    void WillRecord(const std::shared_ptr<CInstrument>& instrument);
    bool IsEmpty() const noexcept { return changes.empty(); }
    void Finish(const QString& name, QUndoStack& undo, CGraveyard& graveyard);

private:
    struct Change {
        std::shared_ptr<CInstrument> instrument;
        std::shared_ptr<const CEventLanes> before;
    };
    std::vector<Change> changes;
};

}  // namespace quib
