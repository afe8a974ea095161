// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ParameterChange.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/edits/BallEdits.h"

namespace quib {

namespace {

void PlayMixLanes(CInstrument& instrument, int slot, float position, double sampleRate) noexcept {
    for (const CEventLanes::Lane& lane : instrument.mixLanes.ForRender().Lanes(slot)) {
        if (!IsMixLane(lane.index)) continue;
        const auto index = static_cast<std::size_t>(lane.index);
        if ((instrument.heldMix.Get() >> index & 1U) != 0) {
            instrument.play.lastMixValue[index] = std::numeric_limits<float>::quiet_NaN();
            continue;
        }
        const auto value = ValueAt(*lane.points, position, MixParameters()[index].kind);
        if (!value || *value == instrument.play.lastMixValue[index]) continue;
        instrument.play.lastMixValue[index] = *value;
        ChangeMixValue(instrument, lane.index, *value, sampleRate);
    }
}

void PlayPluginLanes(CPlugin* plugin, int slot, float position) noexcept {
    if (plugin == nullptr) return;
    for (const CEventLanes::Lane& lane : plugin->lanes.ForRender().Lanes(slot)) {
        if (const auto value = ValueAt(*lane.points, position, ELaneKind::kContinuous)) {
            plugin->AutomateParameter(lane.index, *value);
        }
    }
}

BlockEvent MidiLaneEvent(int lane, int value) noexcept {
    const auto byte = static_cast<std::uint8_t>(value);
    switch (lane) {
        case kPitchBendLane:
            return {kPitchBend, 0, byte, 0};
        case kModulationWheelLane:
            return {kControlChange, 1, byte, 0};
        case kAftertouchLane:
            return {kChannelPressure, byte, 0, 0};
        default:
            return {kProgramChange, byte, 0, 0};
    }
}

void PlayMidiLanes(CInstrument& instrument, int slot, float position) noexcept {
    for (const CEventLanes::Lane& lane : instrument.midiLanes.ForRender().Lanes(slot)) {
        if (lane.index >= kMidiLaneCount) break;
        const auto index = static_cast<std::size_t>(lane.index);
        const auto value = ValueAt(*lane.points, position, MidiLanes()[index].kind);
        if (!value) continue;
        const int sent = TruncateWithin(*value, 0, 127);
        float& last = instrument.play.lastMidiValue[index];
        if (last == static_cast<float>(sent)) continue;
        last = static_cast<float>(sent);
        instrument.play.blockEvents.Add(MidiLaneEvent(lane.index, sent));
    }
}

}  // namespace

void ChangeMixValue(CInstrument& instrument, int lane, float value, double sampleRate) noexcept {
    const StripSetting* const setting = SetMixValue(instrument.strip, lane, value);
    if (setting == nullptr || setting->eqBand < 0) return;
    ApplyEqUpdate(instrument.play.strip, DesignEqBand(instrument.strip, setting->eqBand, sampleRate));
}

void MoveBall(BlockInstrument& entry, const std::vector<BallAssignment>& assignments, float place,
              double sampleRate) noexcept {
    for (const BallAssignment& assignment : assignments) {
        const float value = BallShare(assignment, place);
        switch (assignment.target) {
            case EBallTarget::kPlugin:
                entry.plugin->PlayParameter(assignment.parameter, value);
                break;
            case EBallTarget::kMix:
                if (const auto scaled = MixValueOf(assignment.parameter, value)) {
                    ChangeMixValue(*entry.instrument, assignment.parameter, *scaled, sampleRate);
                }
                break;
            case EBallTarget::kInsert1:
            case EBallTarget::kInsert2: {
                CPlugin* const insert = entry.inserts[assignment.target == EBallTarget::kInsert1 ? 0 : 1];
                if (insert != nullptr) insert->PlayParameter(assignment.parameter, value);
                break;
            }
        }
    }
}

void PlayInstrumentAutomation(BlockInstrument& entry, const BlockContext& block) noexcept {
    if (!block.playing) return;
    CInstrument& instrument = *entry.instrument;
    const auto play = [&](int slot, float position) {
        PlayMixLanes(instrument, slot, position, block.sampleRate);
        PlayPluginLanes(entry.plugin, slot, position);
        for (CPlugin* const insert : entry.inserts) PlayPluginLanes(insert, slot, position);
    };
    if (block.songMode) play(CEventLanes::kSongSlot, block.songPosition);
    if (instrument.play.currentStep < 0) return;
    const float position = static_cast<float>(instrument.play.currentStep) + block.stepFraction;
    play(instrument.play.currentPattern, position);
    PlayMidiLanes(instrument, instrument.play.currentPattern, position);
}

void ForgetAutomation(BlockContext& block) noexcept {
    const auto forget = [](CPlugin* plugin) {
        if (plugin != nullptr) plugin->ForgetAutomation();
    };
    for (BlockInstrument& entry : block.instruments) {
        entry.instrument->play.ForgetAutomation();
        forget(entry.plugin);
        for (CPlugin* const insert : entry.inserts) forget(insert);
    }
    for (CPlugin* const insert : block.masterInserts) forget(insert);
    for (CPlugin* const effect : block.sharedEffects) forget(effect);
}

void PlayMasterAutomation(BlockContext& block, EngineSettings& settings) noexcept {
    if (!block.playing || !block.songMode) return;
    for (const CEventLanes::Lane& lane : block.masterLanes->Lanes(CEventLanes::kSongSlot)) {
        CValue* const setting = EngineSetting(settings, lane.index);
        if (setting == nullptr) break;
        const LaneDescription& range = MasterLanes()[static_cast<std::size_t>(lane.index)];
        if (const auto value = ValueAt(*lane.points, block.songPosition, range.kind)) {
            setting->Set(std::clamp(*value, range.minimum, range.maximum));
        }
    }
    for (CPlugin* const insert : block.masterInserts)
        PlayPluginLanes(insert, CEventLanes::kSongSlot, block.songPosition);
    for (CPlugin* const effect : block.sharedEffects)
        PlayPluginLanes(effect, CEventLanes::kSongSlot, block.songPosition);
}

}  // namespace quib
