// SPDX-License-Identifier: GPL-3.0-or-later
// Presets of the instruments, alone and all together.
#include <algorithm>
#include <utility>

#include "document/CSettings.h"
#include "document/CWorkstation.h"
#include "model/files/InstrumentFile.h"
#include "texts/Texts.h"

namespace quib {

// The engine pictures them for instruments that play; the others hold what they were loaded with.
std::vector<std::int32_t> CWorkstation::HeldKeysOf(const CInstrument& instrument) {
    const PlayPicture& picture = audio.Picture();
    for (std::size_t i = 0; i < picture.instrumentCount; ++i) {
        const InstrumentPicture& shown = picture.instruments[i];
        if (shown.id != instrument.Id()) continue;
        const std::size_t count = std::min<std::size_t>(shown.heldKeyCount, shown.heldKeys.size());
        return {shown.heldKeys.begin(), shown.heldKeys.begin() + static_cast<std::ptrdiff_t>(count)};
    }
    const auto loaded = loadedKeys.find(instrument.Id());
    return loaded != loadedKeys.end() ? loaded->second : std::vector<std::int32_t>();
}

void CWorkstation::SetPresets(const Instrumented& instrument, std::vector<Preset> next, const QString& name) {
    const auto set = [this, instrument](const std::vector<Preset>& list) {
        instrument->presets = list;
        Q_EMIT InstrumentChanged(instrument->Id());
    };
    PushChange(
        name, [set, next = std::move(next)] { set(next); }, [set, before = instrument->presets] { set(before); });
}

void CWorkstation::AddPreset(int index) {
    const auto instrument = Instrument(index);
    if (!instrument || instrument->presets.size() >= kMaximumPresets) return;
    std::vector<Preset> next = instrument->presets;
    next.push_back(TakePreset(*instrument, HeldKeysOf(*instrument)));
    SetPresets(instrument, std::move(next), Text("Add preset"));
}

void CWorkstation::PastePreset(int index, int preset) {
    const auto instrument = Instrument(index);
    if (!instrument || preset < 0 || preset >= static_cast<int>(instrument->presets.size())) return;
    std::vector<Preset> next = instrument->presets;
    next[static_cast<std::size_t>(preset)] = TakePreset(*instrument, HeldKeysOf(*instrument));
    SetPresets(instrument, std::move(next), Text("Paste to preset"));
}

void CWorkstation::RemovePreset(int index, int preset) {
    const auto instrument = Instrument(index);
    if (!instrument || preset < 0 || preset >= static_cast<int>(instrument->presets.size())) return;
    std::vector<Preset> next = instrument->presets;
    next.erase(next.begin() + preset);
    SetPresets(instrument, std::move(next), Text("Remove preset"));
}

void CWorkstation::ApplyPreset(const Instrumented& instrument, const Preset& preset) {
    std::erase_if(recalls, [&](const Recall& recall) { return recall.instrument == instrument; });
    recalls.push_back(
        {instrument, std::make_unique<CPresetRecall>(*instrument, preset, audio.graveyard, audio.Format().sampleRate)});
    audio.Post({EngineCommand::EKind::kSelectPattern, instrument->Id(), preset.patternSelected});
    Q_EMIT InstrumentChanged(instrument->Id());
}

void CWorkstation::RecallPreset(int index, int preset) {
    const auto instrument = Instrument(index);
    if (!instrument || preset < 0 || preset >= static_cast<int>(instrument->presets.size())) return;
    auto wanted = std::make_shared<const Preset>(instrument->presets[static_cast<std::size_t>(preset)]);
    auto before = std::make_shared<const Preset>(TakePreset(*instrument, HeldKeysOf(*instrument)));
    PushChange(
        Text("Recall preset"), [this, instrument, wanted = std::move(wanted)] { ApplyPreset(instrument, *wanted); },
        [this, instrument, before = std::move(before)] { ApplyPreset(instrument, *before); });
}

void CWorkstation::RecallPresets(int preset) {
    if (!settings.IsOn(QStringLiteral("PresetOn")) || preset < 0 || preset >= PresetCount()) return;
    undo.beginMacro(Text("Select preset"));
    const float before = presetSelected.Get();
    presetSelected.Set(static_cast<float>(preset));
    ValueEdited(presetSelected, before, presetSelected.Get(), Text("Select preset"));
    for (int index = 0; index < static_cast<int>(Instruments().size()); ++index) RecallPreset(index, preset);
    undo.endMacro();
}

int CWorkstation::PresetCount() const {
    std::size_t most = 0;
    for (const auto& instrument : Instruments()) most = std::max(most, instrument->presets.size());
    return static_cast<int>(most);
}

void CWorkstation::SetPresetMidi(int channel, int baseNote, int mode) {
    using Assignment = std::array<int, 3>;
    const auto set = [this](const Assignment& values) {
        audio.presetSelection.channel.Set(values[0]);
        audio.presetSelection.baseNote.Set(values[1]);
        audio.presetSelection.mode.Set(values[2]);
        Q_EMIT InstrumentChanged(0);
    };
    const PresetSelection& now = audio.presetSelection;
    const Assignment before = {now.channel.Get(), now.baseNote.Get(), now.mode.Get()};
    const Assignment next = {std::clamp(channel, 0, 17), std::clamp(baseNote, 0, 127), std::clamp(mode, 0, 1)};
    if (before == next) return;
    PushChange(
        Text("Preset MIDI assignment"), [set, next] { set(next); }, [set, before] { set(before); });
}

void CWorkstation::PollRecalls() {
    std::erase_if(recalls, [this](const Recall& recall) {
        if (!recall.work->Poll()) return false;
        for (const std::string& warning : recall.work->Warnings()) {
            Q_EMIT Message(QStringLiteral("QUIB"), QString::fromStdString(warning));
        }
        Q_EMIT InstrumentChanged(recall.instrument->Id());
        return true;
    });
}

}  // namespace quib
