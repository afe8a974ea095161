// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CNoteRecording.h"

#include <algorithm>
#include <cmath>

#include "texts/Texts.h"

namespace quib {

namespace {

constexpr const char* kReplace = "NoteRecordReplace";
// Hundredths of a step and per cent.
constexpr const char* kGrid = "NoteRecordGrid";
constexpr const char* kStrength = "NoteRecordStrength";

}  // namespace

CNoteRecording::CNoteRecording(const DocumentContext& document, const CSelection& shownSelection)
    : context(document), selection(shownSelection), take(std::make_unique<CNoteTake>(document.changes)) {
    const auto read = [this](const char* name, int missing) {
        return context.settings.ReadSettingInt(kSettingsSection, QLatin1String(name), missing);
    };
    options.replace = read(kReplace, 0) == 1;
    options.grid = std::clamp(read(kGrid, 100), 0, 100'000) / 100.0;
    options.strength = static_cast<float>(std::clamp(read(kStrength, 100), 0, 100)) / 100;
}

void CNoteRecording::SetOptions(const NoteTakeOptions& next) {
    options = next;
    const auto write = [this](const char* name, int value) {
        context.settings.WriteSettingInt(kSettingsSection, QLatin1String(name), value);
    };
    write(kReplace, options.replace ? 1 : 0);
    write(kGrid, static_cast<int>(std::lround(options.grid * 100)));
    write(kStrength, static_cast<int>(std::lround(options.strength * 100)));
}

void CNoteRecording::ArmSwitched() {
    if (!Armed().IsOn() || context.audio.Picture().playing) return;
    now.running = false;  // the end of what played before is not that of this
    context.audio.Post({EngineCommand::EKind::kPlay});
}

void CNoteRecording::Look() {
    const PlayPicture& picture = context.audio.Picture();
    if (now.running && !picture.playing) Armed().Set(0.0F);
    now = {picture.playing, picture.sampleCounter};
    const auto current = selection.CurrentInstrument();
    for (std::size_t index = 0; current && index < picture.instrumentCount; ++index) {
        const InstrumentPicture& shown = picture.instruments[index];
        if (shown.id != current->Id()) continue;
        now.pattern = shown.pattern;
        now.step = shown.step;
    }
    if (take->IsDisturbed()) take->Finish(Text("Record notes"), 0);
}

void CNoteRecording::Take(const EngineNotice& notice) {
    const auto current = selection.CurrentInstrument();
    const bool isCurrent = current && current->Id() == notice.instrument;
    const bool ends = notice.lane == 0;
    if (!isCurrent && !ends) return;
    if ((notice.x < 0 || ends) && onStepEntry) onStepEntry(notice.value, notice.lane);
    if (notice.x >= 0) take->Take(notice, current, options);
}

void CNoteRecording::Tick() {
    const bool recording = now.running && Armed().IsOn();
    const auto current = selection.CurrentInstrument();
    if (recording && options.replace && current && now.pattern >= 0) take->Sweep(current, now.pattern, now.step);
    if (take->IsEmpty()) return;
    const std::int64_t heard = now.rendered - context.audio.KeyDelay();
    if (recording) {
        take->Publish(now.rendered, heard);
    } else {
        take->Finish(Text("Record notes"), heard);
    }
}

void CNoteRecording::Abandon() { take = std::make_unique<CNoteTake>(context.changes); }

}  // namespace quib
