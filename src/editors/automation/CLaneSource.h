// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The lanes of a pattern or of the song, and the one of them that a curve shows: publishes what the hands make of
// it, each gesture one step of undo. User-interface thread.

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "document/CGesture.h"
#include "document/CWorkstation.h"
#include "model/edits/LaneEdits.h"

namespace quib {

class CEventCtrl;

class CLaneSource {
public:
    explicit CLaneSource(CWorkstation& workstation) : document(workstation) {}

    // `number`: of the pattern, or CEventLanes::kSongSlot. What was chosen stays while there is such a lane.
    void Look(const std::shared_ptr<CInstrument>& instrument, int number);
    const std::vector<LaneEntry>& Lanes() const noexcept { return lanes; }
    const std::optional<LaneKey>& Chosen() const noexcept { return chosen; }
    // Nothing happens where there is no such lane.
    void Choose(const std::optional<LaneKey>& key);
    // Which parameters of the plug-in have a lane shown is part of the project: the chosen one is one of them now.
    void MarkShown();
    // Null when there is none.
    const LaneEntry* Entry(const std::optional<LaneKey>& key) const;
    std::shared_ptr<const PointList> PointsOf(const LaneKey& key) const;
    std::vector<LaneEntry> Used() const;

    // What the hands do in the curve goes to the lane that is chosen.
    void Serve(CEventCtrl& curve);
    // Shows the chosen lane, up to `end` steps, and its points; a gesture that goes on is given up.
    void Show(CEventCtrl& curve, float end);
    void ShowPoints(CEventCtrl& curve);
    void GiveUp() { gesture.reset(); }
    // The change that is told is one of this.
    bool IsPublishing() const noexcept { return publishing; }
    // After a step.
    std::function<void()> onFinished;

private:
    void Publish(const LaneState& state);
    void Finish(const char* name);

    CWorkstation& document;
    std::shared_ptr<CInstrument> owner;
    int slot = 0;
    std::vector<LaneEntry> lanes;
    std::optional<LaneKey> chosen;
    std::unique_ptr<CGesture> gesture;
    bool publishing = false;
};

}  // namespace quib
