// SPDX-License-Identifier: GPL-3.0-or-later
// Construction, output, transport, and the work of the timer.
#include "document/CWorkstation.h"

#include <algorithm>
#include <cmath>
#include <thread>

#include "devices/CSilentOutput.h"
#include "document/CAutomationTake.h"
#include "document/CSettings.h"
#include "document/EditCommands.h"
#include "engine/EngineNotices.h"
#include "model/plugin/PluginBank.h"
#include "platform/Clock.h"
#include "platform/Paths.h"
#include "texts/Texts.h"

namespace quib {

namespace fs = std::filesystem;

namespace {

constexpr int kUndoSteps = 500;
constexpr std::uint64_t kLongestTap = 3'000'000'000;  // nanoseconds
constexpr std::size_t kMostTaps = 8;
constexpr float kSlowest = 20.0F;
constexpr float kFastest = 300.0F;

COutputManager::Texts OutputTexts() {
    return {Text("Cannot open the driver").toStdString(),
            Text(" has gone away. Playing goes on without sound until it returns.").toStdString()};
}

// Built-in plug-ins stand beside the program wherever its folder is.
CPluginFinder MakeFinder(const Folders& folders, const CSettings& settings) {
    const fs::path program = ExecutableFolder();
    std::vector<fs::path> users = {program / "PluginInstruments", program / "PluginEffects"};
    for (const QString& folder : AddedPluginFolders(settings)) users.emplace_back(folder.toStdString());
    return CPluginFinder(folders.program.toStdString(), std::move(users), SystemPluginFolders());
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
    : settings(settingsStore),
      folders(programFolders),
      output(audio, OutputTexts(),
             [this](const std::string& caption, const std::string& text) {
                 Q_EMIT Message(QString::fromStdString(caption), QString::fromStdString(text));
             }),
      finder(MakeFinder(programFolders, settingsStore)),
      take(std::make_unique<CAutomationTake>()) {
    audio.SetRecorder(&recorder.Lame());
    ConnectEnvironment();
    undo.setUndoLimit(kUndoSteps);
    connect(&undo, &QUndoStack::indexChanged, this, &CWorkstation::TellModified);
    connect(&undo, &QUndoStack::cleanChanged, this, &CWorkstation::TellModified);
}

CWorkstation::~CWorkstation() {
    undo.disconnect(this);
    output.CloseOutput();
    audio.Collect();
    recorder.Finish();
}

void CWorkstation::ConnectEnvironment() {
    PluginEnvironment& environment = audio.environment;
    environment.applicationFolder = folders.program.toStdString();
    environment.showMessage = [this](const std::string& text, const std::string& caption) {
        messageShown = true;
        Q_EMIT Message(QString::fromStdString(caption), QString::fromStdString(text));
    };
    environment.idle = [this] { IdlePlugins(); };
    environment.parameterChanged = [this](CPlugin& plugin, int parameter, float value) {
        ParameterMovedInWindow(plugin, parameter, value);
    };
    environment.sizeWindow = [this](CPlugin& plugin, int width, int height) {
        Q_EMIT EditorSizeWanted(&plugin, width, height);
        return true;
    };
    environment.currentTime = [this](vst2::VstTimeInfo& time) { time = audio.Picture().time; };
}

void CWorkstation::ReadPluginFolders() { finder = MakeFinder(folders, settings); }

bool CWorkstation::OpenOutput(const QString& device) {
    forcedDevice = device;
    AudioSettings wanted = ReadAudioSettings(settings);
    if (!device.isEmpty()) wanted.outputDevice = device.toStdString();
    return output.OpenOutput(wanted);
}

void CWorkstation::Play() { audio.Post({EngineCommand::Kind::Play}); }

void CWorkstation::Stop() { audio.Post({EngineCommand::Kind::Stop}); }

void CWorkstation::Locate(int step) {
    audio.Post({EngineCommand::Kind::Locate, 0, std::clamp(step, 0, kMaximumSongStep)});
}

void CWorkstation::TapTempo() {
    const std::uint64_t now = Nanoseconds();
    if (!taps.empty() && now - taps.back() > kLongestTap) taps.clear();
    taps.push_back(now);
    if (taps.size() > kMostTaps) taps.erase(taps.begin());
    if (taps.size() < 2) return;
    const double beat = static_cast<double>(now - taps.front()) * 1e-9 / static_cast<double>(taps.size() - 1);
    const float before = audio.settings.tempo.Get();
    const float tempo = std::clamp(std::round(static_cast<float>(600.0 / beat)) / 10.0F, kSlowest, kFastest);
    audio.settings.tempo.Set(tempo);
    ValueEdited(audio.settings.tempo, before, tempo, Text("Tempo"));
}

bool CWorkstation::StartRecording(const QString& path) {
    reportedRecorderError.clear();
    recordedRate = static_cast<int>(audio.Format().sampleRate);
    return recorder.Start(path.toStdString(), recordedRate);
}

QString CWorkstation::RecorderText() const { return Text(recorder.Now().text.c_str()); }

void CWorkstation::Tick() {
    output.Poll();
    FollowNotices();
    PollRecalls();
    audio.Collect();
    IdlePlugins();
    ReportFaults();
    WatchRecorder();
    saver.Poll();
}

void CWorkstation::FollowNotices() {
    quib::FollowNotices(
        audio, [this](const EngineNotice& notice) { FollowNotice(notice); },
        [this](const std::shared_ptr<CInstrument>& instrument) { take->WillRecord(instrument); });
    if (take->IsEmpty() || (audio.recordAutomation.IsOn() && IsPlaying())) return;
    take->Finish(Text("Record automation"), undo, audio.graveyard);
}

void CWorkstation::FollowNotice(const EngineNotice& notice) {
    switch (notice.kind) {
        case EngineNotice::Kind::PresetSelected:
            return RecallPresets(notice.value);
        case EngineNotice::Kind::ProgramSelected:
        case EngineNotice::Kind::LimitLearned:
            Touch();
            Q_EMIT InstrumentChanged(notice.instrument);
            return;
        case EngineNotice::Kind::LanePoint:
            return;
    }
}

void CWorkstation::IdlePlugins() {
    static bool inside = false;  // a plug-in that idles may ask for more of it
    if (inside) return;
    inside = true;
    ForEachSlot([](const PluginSlot& slot, const SlotPlace&) {
        if (slot.plugin && slot.plugin->NeedsIdle()) slot.plugin->Dispatch(vst2::effIdle);
    });
    inside = false;
}

void CWorkstation::ReportFaults() {
    ForEachSlot([this](const PluginSlot& slot, const SlotPlace&) {
        if (!slot.plugin || !slot.plugin->TakeFaultReport()) return;
        Q_EMIT Message(QStringLiteral("QUIB"), QString::fromStdString(slot.plugin->Identity().displayName) +
                                                   QStringLiteral(": ") +
                                                   Text("gave samples that are no sound; it is muted while it does."));
    });
}

void CWorkstation::WatchRecorder() {
    const CRecorder::Progress now = recorder.Now();
    // A file has one rate.
    if (now.recording && recordedRate != static_cast<int>(audio.Format().sampleRate)) recorder.Stop();
    if (now.error.empty() || now.error == reportedRecorderError) return;
    reportedRecorderError = now.error;
    Q_EMIT Message(QStringLiteral("QUIBBOX"), QString::fromStdString(now.error));
}

void CWorkstation::PushChange(const QString& name, std::function<void()> forth, std::function<void()> back,
                              bool isDone) {
    undo.push(new CChangeCommand(name, std::move(forth), std::move(back), isDone));
}

void CWorkstation::Touch() {
    touched = true;
    TellModified();
}

void CWorkstation::TellModified() {
    if (toldModified == IsModified()) return;
    toldModified = IsModified();
    Q_EMIT ModifiedChanged(toldModified);
}

}  // namespace quib
