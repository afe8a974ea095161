// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CWorkstation.h"

#include <algorithm>
#include <thread>

#include "devices/CSilentOutput.h"
#include "document/CSettings.h"
#include "document/ControlActions.h"
#include "engine/EngineNotices.h"
#include "texts/Texts.h"

namespace quib {

namespace {

COutputManager::Texts OutputTexts() {
    return {Text("Cannot open the driver").toStdString(),
            Text(" has gone away. Playing goes on without sound until it returns.").toStdString()};
}

AudioSettings ReadAudioSettings(const CSettings& settings) {
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    AudioSettings audio;
    audio.outputDevice = settings.ReadSettingString(kAudioSection, QStringLiteral("OutputDevice")).toStdString();
    audio.sampleRate = settings.ReadSettingInt(kAudioSection, QStringLiteral("SampleRate"), 44100);
    audio.bufferSize = settings.ReadSettingInt(kAudioSection, QStringLiteral("BufferSize"), 2048);
    audio.midiInDevice = settings.ReadSettingString(kAudioSection, QStringLiteral("MidiInDevice")).toStdString();
    audio.threads = std::clamp(
        settings.ReadSettingInt(kAudioSection, QStringLiteral("RenderThreads"), std::clamp(cores - 1, 1, 4)), 1, 64);
    return audio;
}

}  // namespace

CWorkstation::CWorkstation(CSettings& settingsStore, const Folders& programFolders)
    : folders(programFolders),
      output(audio, OutputTexts(),
             [this](const std::string& caption, const std::string& text) {
                 Q_EMIT Message(QString::fromStdString(caption), QString::fromStdString(text));
             }),
      context{audio,
              settingsStore,
              folders,
              changes,
              [this](const QString& caption, const QString& text) { Q_EMIT Message(caption, text); },
              [this](const QString& text) { Q_EMIT Notice(text); }} {
    audio.SetRecorder(&recorder.Lame());
    audio.settings.songMode.Set(0.0F);  // as for a new project
    connect(&changes, &CChanges::ValueMoved, this,
            [this](const void* thing, int part) { automationRecording.Touched(thing, part); });
    connect(&places, &CPluginPlaces::ParameterMoved, this, [this](const void* plugin, int parameter) {
        automationRecording.ParameterMoved(static_cast<const CPlugin*>(plugin), parameter);
    });
    connect(&places, &CPluginPlaces::ParameterTouched, this, [this](const void* plugin, int parameter, bool held) {
        automationRecording.HoldParameter(static_cast<const CPlugin*>(plugin), parameter, held);
    });
    connect(&session, &CSession::AboutToReplace, this, [this] {
        noteRecording.Abandon();
        performance.Abandon();
        automationRecording.Abandon();
    });
}

CWorkstation::~CWorkstation() {
    output.CloseOutput();
    audio.Collect();
    recorder.Finish();
    changes.Clear();  // its steps hold plug-ins, which the rest outlives
}

bool CWorkstation::OpenOutput(const QString& device) {
    forcedDevice = device;
    AudioSettings wanted = ReadAudioSettings(context.settings);
    if (!device.isEmpty()) wanted.outputDevice = device.toStdString();
    return output.OpenOutput(wanted);
}

void CWorkstation::Tick() {
    output.Poll();
    FollowNotices();
    presets.PollRecalls();
    audio.Collect();
    WatchLimits();
    places.Tick();
    recording.Tick();
    session.Tick();
    freezing.Tick();
}

void CWorkstation::FollowNotices() {
    noteRecording.Look();
    quib::FollowNotices(audio, [this](const EngineNotice& notice) { FollowNotice(notice); });
    noteRecording.Tick();
    performance.Tick();
    FollowControllers();
    automationRecording.Tick();
}

void CWorkstation::FollowControllers() {
    bool any = false;
    controllers.Tick([&](const ControlTarget& target) {
        automationRecording.ControllerMoved(target);
        any = any || !IsAction(target.kind);
    });
    if (any) changes.Touch();
}

// The render thread sets what it learns; the step of undo needs what was there before.
void CWorkstation::WatchLimits() {
    for (const auto& instrument : context.Instruments()) {
        const MidiInputSettings& midi = instrument->midi;
        if (midi.limitLearning.Get() >= 0) limitsBefore[instrument->Id()] = {midi.keyFrom.Get(), midi.keyTo.Get()};
    }
}

void CWorkstation::LimitLearned(std::uint32_t id) {
    const auto instrument = context.InstrumentById(id);
    const auto before = limitsBefore.find(id);
    const auto tell = [this, id] { changes.Tell({EChange::kInstrument, id}); };
    if (instrument && before != limitsBefore.end()) {
        MidiInputSettings& midi = instrument->midi;
        changes.ValueEdited(Part(instrument, midi.keyFrom), before->second.first, midi.keyFrom.Get(), Text("Key range"),
                            tell);
        changes.ValueEdited(Part(instrument, midi.keyTo), before->second.second, midi.keyTo.Get(), Text("Key range"),
                            tell);
        limitsBefore.erase(before);
    }
    changes.Touch();
    tell();
}

void CWorkstation::FollowNotice(const EngineNotice& notice) {
    switch (notice.kind) {
        case EngineNotice::EKind::kPresetSelected:
            presets.RecallPresets(notice.value, CPresets::EOrigin::kMidi);
            return;
        case EngineNotice::EKind::kLimitLearned:
            return LimitLearned(notice.instrument);
        case EngineNotice::EKind::kProgramSelected:
            changes.Touch();
            changes.Tell({EChange::kInstrument, notice.instrument});
            return;
        case EngineNotice::EKind::kNote:
            return noteRecording.Take(notice);
        case EngineNotice::EKind::kControlHeard:
            return controllers.Hear(notice.value);
        case EngineNotice::EKind::kControlAction:
            return RunControlAction(*this, {static_cast<EControlTarget>(notice.lane), notice.instrument, notice.value});
        case EngineNotice::EKind::kLanePoint:
            return automationRecording.PointPlayed(notice);
    }
}

}  // namespace quib
