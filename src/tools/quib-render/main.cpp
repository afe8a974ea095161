// SPDX-License-Identifier: GPL-3.0-or-later
// quib-render: renders a project to a file without a display.
#include <fmt/format.h>

#include <filesystem>

#include "devices/OutputDeviceList.h"
#include "model/plugin/CPluginWatch.h"
#include "platform/CAtomicFile.h"
#include "platform/CStandardOutput.h"
#include "platform/Clock.h"
#include "platform/EndSignals.h"
#include "platform/FatalEnd.h"
#include "project/ProjectEngine.h"
#include "project/ProjectFile.h"
#include "project/midi/MidiExport.h"
#include "tools/common/CJsonObject.h"
#include "tools/quib-render/CLivePlay.h"
#include "tools/quib-render/COfflineRender.h"
#include "tools/quib-render/LoadByName.h"
#include "tools/quib-render/Options.h"
#include "tools/quib-render/Terminal.h"

namespace quib {
namespace {

std::vector<std::string> MissingPlugins(const ProjectState& state) {
    std::vector<std::string> names;
    ForEachSlot(state, [&](const PluginSlot& slot) {
        if (slot.missing) names.push_back(slot.missing->fileName);
    });
    return names;
}

void ReportFaults(const ProjectState& state) {
    ForEachSlot(state, [](const PluginSlot& slot) {
        if (!slot.plugin) return;
        if (const EPluginCall call = slot.plugin->TakeThrown(); call != EPluginCall::kNone) {
            Say(slot.plugin->Identity().displayName + ": threw an exception while " + Describe(call));
        }
        if (!slot.plugin->TakeFaultReport()) return;
        Say(slot.plugin->Identity().displayName + ": gave samples that are no sound; it was muted where it did");
    });
}

std::string Describe(const RenderOptions& options, const RenderResult& result, const ProjectState& state,
                     const std::vector<std::string>& missing) {
    const double seconds = static_cast<double>(result.frames) / options.format.sampleRate;
    CJsonObject json;
    json.Add("frames", result.frames);
    json.Add("rate", options.format.sampleRate);
    json.Add("peak", static_cast<double>(result.statistics.Peak()));
    json.Add("rms", result.statistics.Rms());
    json.Add("seconds", seconds);
    json.Add("render_cpu_seconds", result.cpuSeconds);
    json.Add("realtime_factor", result.cpuSeconds > 0 ? seconds / result.cpuSeconds : 0.0);
    json.Add("threads", options.format.threads);
    json.Add("instruments", state.instruments.size());
    json.Add("missing_plugins", missing);
    return json.Text();
}

// Reads the project. False, with a message, when there is nothing to render.
bool Load(const RenderOptions& options, CAudio& audio, ProjectState& state) {
    CProjectPlugins plugins(options.pluginFolders);
    const PluginLoader load = [&](const PluginReference& wanted, ESlotKind kind, std::string& error) {
        return plugins.Load(wanted, kind, audio.environment, error);
    };
    std::string error;
    if (!ReadProjectFile(options.project, load, state, error)) {
        Say(error);
        return false;
    }
    for (const std::string& warning : state.warnings) Say(warning);
    return true;
}

// Makes the engine ready to play the project from its start to its end.
void Publish(ProjectState& state, const RenderOptions& options, CAudio& audio) {
    if (options.songMode) state.master.songMode = *options.songMode ? 1.0F : 0.0F;
    if (!options.play) state.master.loopOn = 0.0F;  // a render that loops would never end
    PublishProject(state, audio);
}

// How many steps a render without a length plays; 0 with a message when there is nothing.
int StepsToPlay(const RenderOptions& options, const ProjectState& state) {
    const bool song = state.master.songMode > 0.0F;
    if (song && SongSteps(state) == 0) {
        Say("the song of " + options.project.filename().string() +
            " has no entries; --mode pattern renders the patterns that are selected");
        return 0;
    }
    return options.steps.value_or(song ? SongSteps(state) : PatternModeSteps(state));
}

// Nobody has taken the file away or cut it meanwhile, and no sound was lost on the way to it.
std::string WhatIsMissing(const CLame& recorder) {
    if (!recorder.Error().empty()) return recorder.Error();
    if (recorder.DroppedFrames() > 0) return fmt::format("{} frames were lost", recorder.DroppedFrames());
    std::error_code error;
    const std::filesystem::path& path = recorder.FilePath();
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) return {};
    const auto size = std::filesystem::file_size(path, error);
    if (!error && size >= recorder.FileBytes()) return {};
    return path.string() + ": the file is not whole" + (error ? " (" + error.message() + ")" : "");
}

// Plays the loaded project into the output file. False, with a message, when the file is not whole.
bool RenderToFile(const RenderOptions& options, CAudio& audio, const ProjectState& state, RenderResult& result) {
    CLame recorder;
    std::string error;
    const int steps = StepsToPlay(options, state);
    if (steps == 0) return false;
    if (recorder.StartRecording(options.output, static_cast<int>(options.format.sampleRate)) != CLame::kStarted) {
        Say(recorder.Error());
        return false;
    }
    audio.SetRecorder(&recorder);
    const auto frames = static_cast<std::int64_t>(options.seconds.value_or(0.0) * options.format.sampleRate);
    CProgressBar bar;
    const auto progress = [&](double share) {
        bar.Show(share);
        return !EndWanted();
    };
    COfflineRender render(audio, recorder);
    result = render.Run(steps, frames, progress, error);
    audio.SetRecorder(nullptr);
    recorder.StopRecording(CLame::ELastBuffer::kWrite);
    if (error.empty()) error = WhatIsMissing(recorder);
    if (!error.empty()) Say(error);
    return error.empty();
}

bool Resave(const RenderOptions& options, const ProjectState& state) {
    std::string error;
    if (WriteProjectFile(*options.resave, state, error)) return true;
    Say(error);
    return false;
}

// The song, or the selected patterns, as notes.
bool WriteMidiFile(const RenderOptions& options, const ProjectState& state) {
    MidiExportSettings settings;
    settings.song = options.songMode.value_or(state.master.songMode > 0.0F);
    MidiFile file;
    MidiExportCounts counts;
    std::string error;
    if (!ExportMidi(state, settings, file, counts, error) ||
        !CAtomicFile().Replace(*options.midiFile, WriteMidi(file), error)) {
        Say(error);
        return false;
    }
    Say(fmt::format("{} notes on {} tracks", counts.notes, counts.tracks));
    return true;
}

// Plays the loaded project until it ends or the user ends it. False when no device could be opened.
bool PlayLive(const RenderOptions& options, CAudio& audio) {
    CLivePlay::Options live;
    live.audio.outputDevice = options.outputDevice;
    live.audio.midiInDevice = options.midiDevice;
    live.audio.sampleRate = static_cast<int>(options.format.sampleRate);
    live.audio.bufferSize = options.format.blockSize;
    live.audio.threads = options.format.threads;
    live.record = options.output;
    live.seconds = options.seconds.value_or(0.0);
    live.steps = options.steps.value_or(0);
    return CLivePlay(audio, Say).Run(live, [] { return EndWanted(); });
}

int ListDevices(const CStandardOutput& output) {
    for (const std::string& name : ListOutputDevices()) {
        if (!output.WriteLine("sound " + name)) return kCouldNot;
    }
    for (const std::string& name : CAlsaMidiInput::ListPorts()) {
        if (!output.WriteLine("MIDI " + name)) return kCouldNot;
    }
    return kDone;
}

// Nothing is saved here, so a plug-in that does not return ends the program.
void EndWithHung(const std::vector<CPluginWatch::Hang>& hung) {
    if (hung.empty()) return;
    const MarkedCall call = CallOf(hung.front().mark);
    Say(fmt::format("\"{}\" has not returned for {} s while {}", call.name, hung.front().time.count() / 1000,
                    Describe(call.call)));
    EndAtOnce(CodeAtEnd());
}

// What plug-ins do when they are closed spoils no result.
int Finished(int code) {
    TellWhatEnds(code);
    return code;
}

int Run(const RenderOptions& options) {
    const CStandardOutput output;
    if (options.list) return ListDevices(output);
    if (IsExport(options)) return RunExport(options, output);
    CAudio audio(options.seed);
    audio.Prepare(options.format);
    ProjectState state;
    if (!Load(options, audio, state)) return kCouldNot;
    const std::vector<std::string> missing = MissingPlugins(state);
    if (options.resave) {
        if (!Resave(options, state)) return kCouldNot;
    } else if (options.midiFile) {
        if (!WriteMidiFile(options, state)) return kCouldNot;
    } else if (options.play) {
        Publish(state, options, audio);
        const bool played = PlayLive(options, audio);
        ReportFaults(state);
        if (!played) return kCouldNot;
    } else {
        Publish(state, options, audio);
        RenderResult result;
        const bool whole = RenderToFile(options, audio, state, result);
        ReportFaults(state);
        if (!whole) return kCouldNot;
        if (options.json && !output.WriteLine(Describe(options, result, state, missing))) return kCouldNot;
    }
    return Finished(missing.empty() ? kDone : kPluginMissing);
}

}  // namespace
}  // namespace quib

int main(int argc, char** argv) {
    quib::CatchEndSignals();
    quib::RenderOptions options;
    if (const auto exitCode = quib::ParseOptions(argc, argv, options)) return *exitCode;
    quib::TellWhatEnds(quib::kCouldNot);
    const quib::CPluginWatch watch(quib::EndWithHung);
    try {
        return quib::Run(options);
    } catch (const std::exception& failure) {
        quib::Say(failure.what());
        return quib::kCouldNot;
    }
}
