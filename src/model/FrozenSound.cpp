// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/FrozenSound.h"

#include <algorithm>

#include "model/CInstrument.h"
#include "model/plugin/CPlugin.h"

namespace quib {

namespace {

bool SwitchesInsert(int lane) noexcept {
    return std::ranges::any_of(kStripSettings, [lane](const StripSetting& setting) {
        const bool isInsert = setting.part == EStripPart::kInsert1 || setting.part == EStripPart::kInsert2;
        return isInsert && setting.lane.index == lane;
    });
}

const CPublished<PluginSlot>& SlotOf(const CInstrument& instrument, std::size_t index) noexcept {
    return index == 0 ? instrument.plugin : instrument.inserts[index - 1];
}

bool IsFrom(const CPublished<PluginSlot>& published, const FrozenSource& source, std::size_t index) noexcept {
    const PluginSlot& slot = published.ForRender();
    if (&slot != source.slots[index].get()) return false;
    if (!slot.plugin) return true;
    return &slot.plugin->lanes.ForRender() == source.lanes[index].get() && slot.plugin->Edits() == source.edits[index];
}

// Switches that lanes move are as the lanes say.
bool AreInsertsFrom(const CInstrument& instrument, const FrozenSource& source) noexcept {
    const CEventLanes& lanes = instrument.mixLanes.ForRender();
    if (source.switchLanes) return &lanes == source.switchLanes.get();
    for (std::size_t index = 0; index < kInsertCount; ++index) {
        if (instrument.strip.insertOn[index].Get() != source.insertOn[index]) return false;
    }
    return !SwitchesInserts(lanes);
}

}  // namespace

bool SwitchesInserts(const CEventLanes& mixLanes) noexcept {
    for (int slot = 0; slot < CEventLanes::kSlotCount; ++slot) {
        for (const CEventLanes::Lane& lane : mixLanes.Lanes(slot)) {
            if (SwitchesInsert(lane.index)) return true;
        }
    }
    return false;
}

FrozenSource SourceOf(const CInstrument& instrument) {
    FrozenSource source;
    for (std::size_t index = 0; index < FrozenSource::kPlugins; ++index) {
        source.slots[index] = SlotOf(instrument, index).ForEdit();
        const auto& plugin = source.slots[index]->plugin;
        if (!plugin) continue;
        source.lanes[index] = plugin->lanes.ForEdit();
        source.edits[index] = plugin->Edits();
    }
    std::ranges::transform(instrument.patterns, source.patterns.begin(),
                           [](const auto& pattern) { return pattern.ForEdit(); });
    source.playlist = instrument.playlist.ForEdit();
    source.midiLanes = instrument.midiLanes.ForEdit();
    const auto& mixLanes = instrument.mixLanes.ForEdit();
    if (SwitchesInserts(*mixLanes)) source.switchLanes = mixLanes;
    std::ranges::transform(instrument.strip.insertOn, source.insertOn.begin(),
                           [](const CValue& on) { return on.Get(); });
    source.swing = instrument.swing.Get();
    return source;
}

bool IsFrom(const CInstrument& instrument, const FrozenSource& source) noexcept {
    for (std::size_t index = 0; index < FrozenSource::kPlugins; ++index) {
        if (!IsFrom(SlotOf(instrument, index), source, index)) return false;
    }
    for (std::size_t index = 0; index < instrument.patterns.size(); ++index) {
        if (&instrument.patterns[index].ForRender() != source.patterns[index].get()) return false;
    }
    return &instrument.playlist.ForRender() == source.playlist.get() &&
           &instrument.midiLanes.ForRender() == source.midiLanes.get() && instrument.swing.Get() == source.swing &&
           AreInsertsFrom(instrument, source);
}

}  // namespace quib
