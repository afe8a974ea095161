// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CAutomationTake.h"

#include <algorithm>

#include "document/CChanges.h"
#include "document/CGesture.h"
#include "model/MixLanes.h"
#include "model/edits/LaneShapes.h"

namespace quib {

namespace {

constexpr float kSamePass = 0.5F;  // steps by which messages may be out of order

std::shared_ptr<const PointList> PointsOf(const CInstrument& instrument, const CAutomationTake::Lane& lane) {
    for (const CEventLanes::Lane& known : instrument.midiLanes.ForEdit()->Lanes(lane.pattern)) {
        if (known.index == lane.index) return known.points;
    }
    return nullptr;
}

}  // namespace

void CAutomationTake::Take(const std::shared_ptr<CInstrument>& instrument, const Lane& lane, const Point& point) {
    if (lane.pattern < 0 || lane.pattern >= kPatternCount || lane.index < 0 || lane.index >= kMidiLaneCount) return;
    const auto known = std::find_if(movements.begin(), movements.end(), [&](const Movement& movement) {
        return movement.instrument == instrument && movement.lane == lane;
    });
    if (known == movements.end()) return Begin(instrument, lane, point);
    const float last = known->samples.back().x;
    if (point.x > last) {
        known->samples.push_back(point);
        known->restingTicks = kRestingTicks;
        known->isNew = true;
    } else if (point.x < last - kSamePass) {
        Begin(instrument, lane, point);
    }
}

void CAutomationTake::Begin(const std::shared_ptr<CInstrument>& instrument, const Lane& lane, const Point& point) {
    movements.insert(movements.begin(), {instrument, lane, nullptr, nullptr, {point}});
}

bool CAutomationTake::IsWriting(int lane) const noexcept {
    return std::any_of(movements.begin(), movements.end(),
                       [lane](const Movement& movement) { return movement.lane.index == lane; });
}

bool CAutomationTake::GoOn(Movement& movement, const PlayPicture& picture) {
    const LanePlace now = LanePlaceOf(picture, movement.instrument->Id(), false);
    const Point last = movement.samples.back();
    if (now.slot != movement.lane.pattern || now.step < last.x - kSamePass) return false;
    if (now.step <= last.x) return true;
    movement.samples.push_back({now.step, last.y});
    movement.isNew = true;
    return true;
}

// Upon what the lane was when it began, so that it has as few points as it needs; whoever has changed the lane since
// then is left in his right.
void CAutomationTake::Publish(Movement& movement, CGraveyard& graveyard) {
    CInstrument& instrument = *movement.instrument;
    const auto& lanes = instrument.midiLanes.ForEdit();
    if (const auto points = PointsOf(instrument, movement.lane); !movement.published || points != movement.published) {
        if (movement.published) movement.samples.erase(movement.samples.begin(), movement.samples.end() - 1);
        movement.before = points ? points : std::make_shared<const PointList>();
    }
    const bool isKnown = std::any_of(recorded.begin(), recorded.end(),
                                     [&](const Recorded& entry) { return entry.instrument == movement.instrument; });
    if (!isKnown) recorded.push_back({movement.instrument, lanes});
    const LaneDescription& range = MidiLanes()[static_cast<std::size_t>(movement.lane.index)];
    const LaneLimits limits = {range.minimum, range.maximum, range.kind, static_cast<float>(kMaximumSongStep)};
    const PointList shape = Thinned(movement.samples, limits, kRecordingTolerance * limits.Range());
    movement.isNew = false;
    const PointList points = *ReplaceSpan({movement.before, {}}, limits, shape, false).points;
    instrument.midiLanes.Publish(
        std::make_shared<const CEventLanes>(lanes->With(movement.lane.pattern, movement.lane.index, points)),
        graveyard);
    movement.published = PointsOf(instrument, movement.lane);
}

// The older ones first: they stand behind.
void CAutomationTake::Tick(const PlayPicture& picture, bool replaces, CGraveyard& graveyard) {
    for (std::size_t rest = movements.size(); rest > 0; --rest) {
        Movement& movement = movements[rest - 1];
        const bool isLast = std::none_of(
            movements.begin(), movements.begin() + static_cast<std::ptrdiff_t>(rest) - 1, [&](const Movement& later) {
                return later.instrument == movement.instrument && later.lane == movement.lane;
            });
        bool goesOn = isLast && --movement.restingTicks > 0;
        if (isLast && replaces && !movement.isNew) goesOn = GoOn(movement, picture);
        if (movement.isNew) Publish(movement, graveyard);
        if (!goesOn) movements.erase(movements.begin() + static_cast<std::ptrdiff_t>(rest) - 1);
    }
}

// The gesture goes back to what was there before the first of them.
void CAutomationTake::AddTo(CGesture& gesture) {
    movements.clear();
    for (const Recorded& entry : recorded) {
        const Place<CEventLanes> place{Part(entry.instrument, entry.instrument->midiLanes),
                                       {EChange::kLanes, entry.instrument->Id()}};
        gesture.Replace(place, entry.before, place.target->ForEdit());
    }
    recorded.clear();
}

void CAutomationTake::Forget() {
    movements.clear();
    recorded.clear();
}

}  // namespace quib
