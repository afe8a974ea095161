// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CPresets.h"

#include <algorithm>
#include <utility>

#include "model/files/InstrumentFile.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kVelocity = 100;  // of keys that a preset holds
}

void CPresets::SetPresets(const std::shared_ptr<CInstrument>& instrument, std::vector<Preset> next,
                          const QString& name) {
    const auto set = [this, instrument](const std::vector<Preset>& list) {
        instrument->presets = list;
        context.changes.Tell({EChange::kPresets, instrument->Id()});
    };
    context.changes.Push(
        name, [set, next = std::move(next)] { set(next); }, [set, before = instrument->presets] { set(before); });
}

void CPresets::AddPreset(int index) {
    const auto instrument = context.Instrument(index);
    if (!instrument || instrument->presets.size() >= kMaximumPresets) return;
    std::vector<Preset> next = instrument->presets;
    next.push_back(TakePreset(*instrument, stack.HeldKeysOf(*instrument)));
    SetPresets(instrument, std::move(next), Text("Add preset"));
}

void CPresets::PastePreset(int index, int preset) {
    const auto instrument = context.Instrument(index);
    if (!instrument || preset < 0 || preset >= static_cast<int>(instrument->presets.size())) return;
    std::vector<Preset> next = instrument->presets;
    next[static_cast<std::size_t>(preset)] = TakePreset(*instrument, stack.HeldKeysOf(*instrument));
    SetPresets(instrument, std::move(next), Text("Paste to preset"));
}

void CPresets::RemovePreset(int index, int preset) {
    const auto instrument = context.Instrument(index);
    if (!instrument || preset < 0 || preset >= static_cast<int>(instrument->presets.size())) return;
    std::vector<Preset> next = instrument->presets;
    next.erase(next.begin() + preset);
    SetPresets(instrument, std::move(next), Text("Remove preset"));
}

void CPresets::ApplyPreset(const std::shared_ptr<CInstrument>& instrument, const Preset& preset, int number) {
    std::erase_if(recalls, [&](const Recall& recall) { return recall.instrument == instrument; });
    recalls.push_back({instrument, std::make_unique<CPresetRecall>(*instrument, preset, context.changes.Graveyard(),
                                                                   context.audio.Format().sampleRate)});
    context.audio.Post({EngineCommand::EKind::kSelectPattern, instrument->Id(), preset.patternSelected});
    PressKeys(*instrument, preset.keyboardKeys);
    recalled[instrument->Id()] = number;
    TellRecalled(*instrument);
}

// Keys that the preset holds go down. Those of the preset before come up; what the user holds is the user's.
void CPresets::PressKeys(const CInstrument& instrument, const std::vector<std::int32_t>& keys) {
    const auto held = stack.HeldKeysOf(instrument);
    const auto isIn = [](const std::vector<std::int32_t>& list, std::int32_t key) {
        return std::find(list.begin(), list.end(), key) != list.end();
    };
    std::vector<std::int32_t>& pressed = pressedKeys[instrument.Id()];
    for (const std::int32_t key : pressed) {
        if (!isIn(keys, key)) transport.PlayKey(instrument.Id(), key, 0);
    }
    std::erase_if(pressed, [&](std::int32_t key) { return !isIn(keys, key); });
    for (const std::int32_t key : keys) {
        if (isIn(held, key) || isIn(pressed, key)) continue;
        transport.PlayKey(instrument.Id(), key, kVelocity);
        pressed.push_back(key);
    }
}

bool CPresets::RecallPreset(int index, int preset) {
    const auto instrument = context.Instrument(index);
    if (!instrument || preset < 0 || preset >= static_cast<int>(instrument->presets.size())) return false;
    auto wanted = std::make_shared<const Preset>(instrument->presets[static_cast<std::size_t>(preset)]);
    auto before = std::make_shared<const Preset>(TakePreset(*instrument, stack.HeldKeysOf(*instrument)));
    const int numberBefore = Recalled(instrument->Id());
    context.changes.Push(
        Text("Recall preset"),
        [this, instrument, wanted = std::move(wanted), preset] { ApplyPreset(instrument, *wanted, preset + 1); },
        [this, instrument, before = std::move(before), numberBefore] {
            ApplyPreset(instrument, *before, numberBefore);
        });
    return true;
}

int CPresets::Recalled(std::uint32_t instrument) const {
    const auto known = recalled.find(instrument);
    return known != recalled.end() ? known->second : 0;
}

bool CPresets::RecallPresets(int preset, EOrigin origin) {
    const bool isOn = context.settings.IsOn(QStringLiteral("PresetOn"));
    if (!isOn && (origin == EOrigin::kUser || !toldOff)) {
        context.notice(Text("Presets are switched off: Settings > Presets On lets the console and MIDI recall them."));
    }
    toldOff = !isOn;
    if (!isOn || preset < 0 || preset >= PresetCount()) return false;
    const CChanges::CMacro step(context.changes, Text("Select preset"));
    const float before = presetSelected.Get();
    presetSelected.Set(static_cast<float>(preset + 1));
    context.changes.ValueEdited(EnginePart(presetSelected), before, presetSelected.Get(), Text("Select preset"));
    // Taking what there is may last longer than a block: their patterns begin together all the same.
    context.audio.Post({EngineCommand::EKind::kHoldLaunch, 0, 1});
    for (int index = 0; index < static_cast<int>(context.Instruments().size()); ++index) RecallPreset(index, preset);
    context.audio.Post({EngineCommand::EKind::kHoldLaunch, 0, 0});
    return true;
}

int CPresets::PresetCount() const {
    std::size_t most = 0;
    for (const auto& instrument : context.Instruments()) most = std::max(most, instrument->presets.size());
    return static_cast<int>(most);
}

void CPresets::SetPresetMidi(int channel, int baseNote, int mode) {
    using Assignment = std::array<int, 3>;
    const auto set = [this](const Assignment& values) {
        context.audio.presetSelection.channel.Set(values[0]);
        context.audio.presetSelection.baseNote.Set(values[1]);
        context.audio.presetSelection.mode.Set(values[2]);
        context.changes.Tell({EChange::kPresets});
    };
    const PresetSelection& now = context.audio.presetSelection;
    const Assignment before = {now.channel.Get(), now.baseNote.Get(), now.mode.Get()};
    const Assignment next = {std::clamp(channel, 0, 17), std::clamp(baseNote, 0, 127), std::clamp(mode, 0, 1)};
    if (before == next) return;
    context.changes.Push(
        Text("Preset MIDI assignment"), [set, next] { set(next); }, [set, before] { set(before); });
}

// It may have brought other notes, points and settings.
void CPresets::TellRecalled(const CInstrument& instrument) {
    for (const EChange kind : {EChange::kPattern, EChange::kLanes, EChange::kInstrument}) {
        context.changes.Tell({kind, instrument.Id()});
    }
}

void CPresets::PollRecalls() {
    std::erase_if(recalls, [this](const Recall& recall) {
        if (!recall.work->Poll()) return false;
        for (const std::string& warning : recall.work->Warnings()) {
            context.tell(QStringLiteral("QUIB"), QString::fromStdString(warning));
        }
        TellRecalled(*recall.instrument);
        return true;
    });
}

void CPresets::ProjectReplaced(float selected) {
    recalls.clear();
    recalled.clear();
    pressedKeys.clear();
    presetSelected.Set(selected);
}

}  // namespace quib
