// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CLaneSource.h"

#include <algorithm>

#include "editors/automation/CEventCtrl.h"
#include "texts/Texts.h"

namespace quib {

void CLaneSource::Look(const std::shared_ptr<CInstrument>& instrument, int number) {
    owner = instrument;
    slot = number;
    lanes = document.Lanes().Lanes(owner, slot == CEventLanes::kSongSlot);
    if (Entry(chosen) == nullptr) chosen.reset();
}

void CLaneSource::Choose(const std::optional<LaneKey>& key) {
    if (!key || Entry(key) != nullptr) chosen = key;
}

void CLaneSource::MarkShown() {
    if (!chosen || chosen->group != ELaneGroup::kPlugin || !owner) return;
    auto& parameters = owner->eventPluginParameters;
    if (std::ranges::find(parameters, chosen->index) != parameters.end()) return;
    parameters.push_back(chosen->index);
    document.Changes().Touch();
}

const LaneEntry* CLaneSource::Entry(const std::optional<LaneKey>& key) const {
    const auto found = std::find_if(lanes.begin(), lanes.end(), [&](const LaneEntry& lane) { return lane.key == key; });
    return found == lanes.end() ? nullptr : &*found;
}

std::shared_ptr<const PointList> CLaneSource::PointsOf(const LaneKey& key) const {
    const Place<CEventLanes> place = document.Lanes().PlaceOf(owner, key.group);
    if (!place.target) return nullptr;
    for (const CEventLanes::Lane& lane : place.target->ForEdit()->Lanes(slot)) {
        if (lane.index == key.index) return lane.points;
    }
    return nullptr;
}

std::vector<LaneEntry> CLaneSource::Used() const {
    std::vector<LaneEntry> used;
    std::ranges::copy_if(lanes, std::back_inserter(used),
                         [this](const LaneEntry& lane) { return PointsOf(lane.key) != nullptr; });
    return used;
}

void CLaneSource::Serve(CEventCtrl& curve) {
    curve.valueNow = [this] { return chosen ? document.Lanes().ValueNow(owner, *chosen) : std::nullopt; };
    curve.Edit().onPreview = [this](const LaneState& state) { Publish(state); };
    curve.Edit().onFinish = [this](const char* name) { Finish(name); };
    curve.Edit().onCancel = [this] { gesture.reset(); };
}

void CLaneSource::Show(CEventCtrl& curve, float end) {
    curve.Edit().Settle();
    gesture.reset();
    const LaneEntry* const entry = Entry(chosen);
    LaneLimits limits;
    if (entry != nullptr) {
        const LaneDescription& range = entry->description;
        limits = {range.minimum, range.maximum, range.kind, end};
    }
    curve.ShowLane(entry != nullptr ? std::optional(*entry) : std::nullopt, limits);
    ShowPoints(curve);
}

void CLaneSource::ShowPoints(CEventCtrl& curve) {
    gesture.reset();
    const auto points = chosen ? PointsOf(*chosen) : nullptr;
    const LaneState& before = curve.Edit().State();
    const PointSelection kept = points && points->size() == before.points->size() ? before.selection : PointSelection();
    curve.ShowPoints({points ? points : std::make_shared<const PointList>(), kept});
}

void CLaneSource::Publish(const LaneState& state) {
    if (!chosen) return;
    const Place<CEventLanes> place = document.Lanes().PlaceOf(owner, chosen->group);
    if (!place.target) return;
    if (!gesture) gesture = std::make_unique<CGesture>(document.Changes());
    publishing = true;
    gesture->Publish(
        place, std::make_shared<const CEventLanes>(place.target->ForEdit()->With(slot, chosen->index, *state.points)));
    publishing = false;
}

void CLaneSource::Finish(const char* name) {
    if (!gesture) return;
    gesture->Finish(Text(name));
    gesture.reset();
    if (onFinished) onFinished();
}

}  // namespace quib
