// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Points of MIDI lanes that come in while automation is recorded: they sound at once, and all from the start of playing
// to its end become a part of one step of undo. What a controller does without a rest in one pass of the
// pattern is a movement: it takes the place of what stood in its span, with few points; the rest of the lane stays.
// User-interface thread.

#include <memory>
#include <vector>

#include "engine/PlayPicture.h"
#include "model/CInstrument.h"

namespace quib {

class CGesture;

class CAutomationTake {
public:
    // Of 40 ms, after which what rests is no more held.
    static constexpr int kRestingTicks = 8;

    struct Lane {
        int pattern = 0;
        int index = 0;

        bool operator==(const Lane&) const = default;
    };
    // A point within a pass that is not after the last one is dropped; one that is much earlier begins a new pass.
    void Take(const std::shared_ptr<CInstrument>& instrument, const Lane& lane, const Point& point);
    // Publishes what has come in. `replaces`: a movement goes on to the end of its pass.
    void Tick(const PlayPicture& picture, bool replaces, CGraveyard& graveyard);
    // A controller moves that lane of whatever instrument.
    bool IsWriting(int lane) const noexcept;
    // What has come in since the last time; movements end.
    void AddTo(CGesture& gesture);
    void Forget();

private:
    struct Movement {
        std::shared_ptr<CInstrument> instrument;
        Lane lane;
        std::shared_ptr<const PointList> before;  // the lane at its begin; null: none
        std::shared_ptr<const PointList> published;
        PointList samples;
        int restingTicks = kRestingTicks;
        bool isNew = true;  // some of it is not published yet
    };
    struct Recorded {
        std::shared_ptr<CInstrument> instrument;
        std::shared_ptr<const CEventLanes> before;
    };

    void Begin(const std::shared_ptr<CInstrument>& instrument, const Lane& lane, const Point& point);
    // Goes on with its last value where playing is; false when it has come to the end of its pass.
    static bool GoOn(Movement& movement, const PlayPicture& picture);
    void Publish(Movement& movement, CGraveyard& graveyard);

    std::vector<Movement> movements;
    std::vector<Recorded> recorded;
};

}  // namespace quib
