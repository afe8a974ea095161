// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CLanes.h"

#include <algorithm>
#include <array>

#include "engine/CAudio.h"
#include "engine/ControlPorts.h"
#include "model/MixLanes.h"

namespace quib {

namespace {

bool IsEffect(ELaneGroup group) noexcept { return group >= ELaneGroup::kEffect1; }
bool IsOfMaster(ELaneGroup group) noexcept { return group >= ELaneGroup::kMaster; }

SlotPlace SlotOf(ELaneGroup group, std::uint32_t instrument) noexcept {
    using EKind = SlotPlace::EKind;
    if (IsEffect(group)) return {EKind::kEffect, 0, static_cast<int>(group) - static_cast<int>(ELaneGroup::kEffect1)};
    if (group >= ELaneGroup::kMasterInsert1) return {EKind::kMasterInsert, 0, group == ELaneGroup::kMasterInsert2};
    if (group >= ELaneGroup::kInsert1) return {EKind::kInsert, instrument, group == ELaneGroup::kInsert2};
    return {EKind::kInstrument, instrument, 0};
}

ELaneGroup GroupOf(const SlotPlace& place) noexcept {
    using EKind = SlotPlace::EKind;
    const auto from = [&place](ELaneGroup first) {
        return static_cast<ELaneGroup>(static_cast<int>(first) + place.index);
    };
    if (place.kind == EKind::kInstrument) return ELaneGroup::kPlugin;
    if (place.kind == EKind::kInsert) return from(ELaneGroup::kInsert1);
    return from(place.kind == EKind::kMasterInsert ? ELaneGroup::kMasterInsert1 : ELaneGroup::kEffect1);
}

}  // namespace

ELaneGroup GroupOf(EBallTarget target) noexcept {
    constexpr std::array kGroups = {ELaneGroup::kPlugin, ELaneGroup::kMix, ELaneGroup::kInsert1, ELaneGroup::kInsert2};
    return kGroups[static_cast<std::size_t>(std::clamp(static_cast<int>(target), 0, 3))];
}

EBallTarget TargetOf(ELaneGroup group) noexcept {
    if (group == ELaneGroup::kPlugin) return EBallTarget::kPlugin;
    if (group == ELaneGroup::kMix) return EBallTarget::kMix;
    return group == ELaneGroup::kInsert1 ? EBallTarget::kInsert1 : EBallTarget::kInsert2;
}

std::optional<InstrumentLane> LaneOf(const ControlTarget& target, const std::shared_ptr<CInstrument>& instrument) {
    const auto lane = [&](ELaneGroup first, EControlTarget from) {
        const int group = static_cast<int>(first) + static_cast<int>(target.kind) - static_cast<int>(from);
        return InstrumentLane{instrument, {static_cast<ELaneGroup>(group), target.index}};
    };
    if (target.kind == EControlTarget::kStrip && !IsMixLane(target.index)) return std::nullopt;
    if (target.kind <= EControlTarget::kInsert2) return lane(ELaneGroup::kMix, EControlTarget::kStrip);
    if (target.kind == EControlTarget::kMaster) {
        const auto index = static_cast<std::size_t>(target.index);
        if (index >= MasterControls().size() || MasterControls()[index].lane < 0) return std::nullopt;
        return InstrumentLane{nullptr, {ELaneGroup::kMaster, MasterControls()[index].lane}};
    }
    if (IsPluginParameter(target.kind)) return lane(ELaneGroup::kMasterInsert1, EControlTarget::kMasterInsert1);
    return std::nullopt;
}

void CLanes::AddPlugin(std::vector<LaneEntry>& lanes, const std::shared_ptr<CInstrument>& instrument,
                       ELaneGroup group) const {
    const auto plugin = PluginOf(instrument, group);
    if (!plugin) return;
    const auto first = static_cast<std::ptrdiff_t>(lanes.size());
    for (const PluginParameter& parameter : plugin->Parameters()) {
        const int index = static_cast<int>(lanes.size()) - static_cast<int>(first);
        lanes.push_back({{group, index}, {parameter.name, 0, 1, 0, ELaneKind::kContinuous}});
    }
    std::stable_sort(lanes.begin() + first, lanes.end(),
                     [](const LaneEntry& a, const LaneEntry& b) { return a.description.name < b.description.name; });
}

std::vector<LaneEntry> CLanes::Lanes(const std::shared_ptr<CInstrument>& instrument, bool song) const {
    std::vector<LaneEntry> lanes;
    const auto add = [&lanes](ELaneGroup group, const auto& descriptions, int count) {
        for (int index = 0; index < count; ++index) {
            lanes.push_back({{group, index}, descriptions[static_cast<std::size_t>(index)]});
        }
    };
    if (instrument) {
        if (!song) add(ELaneGroup::kMidi, MidiLanes(), kMidiLaneCount);
        add(ELaneGroup::kMix, MixParameters(), kMixLaneCount);
        AddPlugin(lanes, instrument, ELaneGroup::kPlugin);
    }
    if (!song) return lanes;
    for (const ELaneGroup group : {ELaneGroup::kInsert1, ELaneGroup::kInsert2}) {
        if (instrument) AddPlugin(lanes, instrument, group);
    }
    add(ELaneGroup::kMaster, MasterLanes(), kMasterLaneCount);
    for (int group = static_cast<int>(ELaneGroup::kMasterInsert1); group <= static_cast<int>(ELaneGroup::kEffect4);
         ++group) {
        AddPlugin(lanes, instrument, static_cast<ELaneGroup>(group));
    }
    return lanes;
}

std::shared_ptr<CPlugin> CLanes::PluginOf(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const {
    if (group == ELaneGroup::kMidi || group == ELaneGroup::kMix || group == ELaneGroup::kMaster) return nullptr;
    if (!IsOfMaster(group) && !instrument) return nullptr;
    const auto slot = places.Slot(SlotOf(group, instrument ? instrument->Id() : 0));
    return slot ? slot->plugin : nullptr;
}

Place<CEventLanes> CLanes::PlaceOf(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const {
    if (group == ELaneGroup::kMaster) return {EnginePart(context.audio.masterLanes), {EChange::kLanes}};
    if (IsOfMaster(group)) {
        const auto plugin = PluginOf(instrument, group);
        return {plugin ? Part(plugin, plugin->lanes) : nullptr, {EChange::kLanes}};
    }
    if (!instrument) return {};
    constexpr std::array kFamilies = {ELanes::kMidi, ELanes::kMix, ELanes::kPlugin, ELanes::kInsert1, ELanes::kInsert2};
    return contents.LanesPlace(instrument, kFamilies[static_cast<std::size_t>(group)]);
}

std::optional<float> CLanes::ValueNow(const std::shared_ptr<CInstrument>& instrument, const LaneKey& key) const {
    if (key.group == ELaneGroup::kMaster) {
        const CValue* const setting = EngineSetting(context.audio.settings, key.index);
        return setting != nullptr ? std::optional(setting->Get()) : std::nullopt;
    }
    if (key.group == ELaneGroup::kMix && instrument) {
        const StripSetting* const setting = MixSetting(key.index);
        return setting != nullptr ? std::optional(setting->member(instrument->strip).Get()) : std::nullopt;
    }
    const auto plugin = PluginOf(instrument, key.group);
    return plugin ? std::optional(plugin->Parameter(key.index)) : std::nullopt;
}

std::optional<InstrumentLane> CLanes::Find(const void* setting) const {
    for (const auto& instrument : context.Instruments()) {
        for (int lane = 0; lane < kMixLaneCount; ++lane) {
            if (IsMixLane(lane) && &MixSetting(lane)->member(instrument->strip) == setting)
                return InstrumentLane{instrument, {ELaneGroup::kMix, lane}};
        }
    }
    for (int lane = 0; lane < kMasterLaneCount; ++lane) {
        if (EngineSetting(context.audio.settings, lane) == setting)
            return InstrumentLane{nullptr, {ELaneGroup::kMaster, lane}};
    }
    return std::nullopt;
}

std::optional<InstrumentLane> CLanes::Find(const CPlugin* plugin, int parameter) const {
    SlotPlace place;
    if (parameter < 0 || !places.FindPlugin(plugin, place)) return std::nullopt;
    return InstrumentLane{context.InstrumentById(place.instrument), {GroupOf(place), parameter}};
}

}  // namespace quib
