// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Presets.h"

#include <cmath>
#include <utility>

#include "model/plugin/CPlugin.h"

namespace quib {

namespace {

std::shared_ptr<const StateImage> StateOf(const PluginSlot& slot) {
    if (slot.plugin) return std::make_shared<const StateImage>(slot.plugin->SaveBank());
    return slot.missing ? slot.missing->state : nullptr;
}

// The points of the preset's patterns; those of the song stay as they are.
void PublishLanes(CPublished<CEventLanes>& lanes, const CEventLanes& patterns, CGraveyard& graveyard) {
    const CEventLanes& song = *lanes.ForEdit();
    lanes.Publish(std::make_shared<const CEventLanes>(patterns.WithSlotOf(song, CEventLanes::kSongSlot)), graveyard);
}

CEventLanes PatternPoints(const CEventLanes& lanes) { return lanes.WithSlotOf(CEventLanes(), CEventLanes::kSongSlot); }

void RecallPatterns(CInstrument& instrument, const Preset& preset, CGraveyard& graveyard) {
    const auto empty = std::make_shared<const CPattern>();
    for (std::size_t i = 0; i < preset.patterns.size(); ++i) {
        instrument.patterns[i].Publish(preset.patterns[i] ? preset.patterns[i] : empty, graveyard);
        instrument.patternUsed[i].Set(preset.patternUsed[i]);
    }
    instrument.stepNumber.Set(preset.stepNumber);
    SelectStepNumberMode(instrument, static_cast<EStepNumberMode>(preset.stepNumberMode));
    instrument.swing.Set(preset.stepNumberModeValue);
    instrument.patternSelected.Set(preset.patternSelected);
    PublishLanes(instrument.midiLanes, preset.midiLanes, graveyard);
    PublishLanes(instrument.mixLanes, preset.mixLanes, graveyard);
    if (const auto& plugin = instrument.plugin.ForEdit()->plugin) {
        PublishLanes(plugin->lanes, preset.pluginLanes, graveyard);
    }
}

}  // namespace

Preset TakePreset(CInstrument& instrument, std::span<const std::int32_t> heldKeys) {
    Preset preset;
    preset.strip = ValuesOf(instrument.strip);
    preset.stepNumber = instrument.stepNumber.Get();
    preset.stepNumberMode = static_cast<std::int32_t>(SelectedStepNumberMode(instrument));
    preset.stepNumberModeValue = instrument.swing.Get();
    preset.patternSelected = instrument.patternSelected.Get();
    for (std::size_t i = 0; i < preset.patterns.size(); ++i) {
        preset.patterns[i] = instrument.patterns[i].ForEdit();
        preset.patternUsed[i] = instrument.patternUsed[i].Get();
    }
    preset.midiLanes = PatternPoints(*instrument.midiLanes.ForEdit());
    preset.mixLanes = PatternPoints(*instrument.mixLanes.ForEdit());
    const PluginSlot& slot = *instrument.plugin.ForEdit();
    if (slot.plugin) preset.pluginLanes = PatternPoints(*slot.plugin->lanes.ForEdit());
    preset.eventPluginParameters = instrument.eventPluginParameters;
    preset.ballSounds = *instrument.ballSounds.ForEdit();
    preset.keyboardOn = instrument.keyboardOn.IsOn() ? 1 : 0;
    preset.keyboardPosition = instrument.keyboardPosition;
    preset.keyboardKeys.assign(heldKeys.begin(), heldKeys.end());
    preset.pluginState = StateOf(slot);
    for (std::size_t i = 0; i < preset.insertState.size(); ++i) {
        preset.insertState[i] = StateOf(*instrument.inserts[i].ForEdit());
    }
    return preset;
}

CPresetRecall::CPresetRecall(CInstrument& instrument, const Preset& preset, CGraveyard& graveyard, double sampleRate) {
    SetValues(instrument.strip, preset.strip);
    for (int band = 0; band < kEqBandCount; ++band) (void)UpdateEqualizer(instrument, band, sampleRate);
    RecallPatterns(instrument, preset, graveyard);
    instrument.eventPluginParameters = preset.eventPluginParameters;
    instrument.ballSounds.Publish(std::make_shared<const BallSoundList>(preset.ballSounds), graveyard);
    instrument.keyboardOn.Set(static_cast<float>(preset.keyboardOn));
    instrument.keyboardPosition = preset.keyboardPosition;
    AddState(*instrument.plugin.ForEdit(), preset.pluginState);
    for (std::size_t i = 0; i < preset.insertState.size(); ++i) {
        AddState(*instrument.inserts[i].ForEdit(), preset.insertState[i]);
    }
}

// A plug-in that is in the wanted state already is left alone. One whose images differ from time to
// time is set once too often, which is no harm.
void CPresetRecall::AddState(const PluginSlot& slot, const std::shared_ptr<const StateImage>& image) {
    if (!slot.plugin || !image || image->empty() || slot.plugin->SaveBank() == *image) return;
    slot.plugin->FadeOut();
    pending.push_back({slot.plugin, image});
}

void CPresetRecall::SetState(const PendingState& state) {
    const EBankResult result = state.plugin->LoadBank(*state.image);
    if (result != EBankResult::kDone)
        warnings.push_back(state.plugin->Identity().displayName + ": " + Describe(result));
    state.plugin->FadeIn();
}

bool CPresetRecall::Poll() {
    const bool patient = ++polls < kPatience;
    std::erase_if(pending, [this, patient](const PendingState& state) {
        if (patient && !state.plugin->IsFadedOut()) return false;
        SetState(state);
        return true;
    });
    return pending.empty();
}

void CPresetRecall::Finish() {
    for (const PendingState& state : pending) SetState(state);
    pending.clear();
}

}  // namespace quib
