// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Points of MIDI lanes that come in while automation is recorded: they sound at once, and all of one pass become a
// part of one step of undo when it ends. User-interface thread.

#include <memory>
#include <vector>

#include "model/CInstrument.h"

namespace quib {

class CGesture;

class CAutomationTake {
public:
    // The instrument's MIDI lanes are about to take points.
    void WillRecord(const std::shared_ptr<CInstrument>& instrument);
    bool IsEmpty() const noexcept { return recorded.empty(); }
    // What has come in since the last time.
    void AddTo(CGesture& gesture);
    void Forget() { recorded.clear(); }

private:
    struct Recorded {
        std::shared_ptr<CInstrument> instrument;
        std::shared_ptr<const CEventLanes> before;
    };
    std::vector<Recorded> recorded;
};

}  // namespace quib
