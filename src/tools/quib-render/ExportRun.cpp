// SPDX-License-Identifier: GPL-3.0-or-later
// What quib-render does for an export.
#include <fmt/format.h>

#include <algorithm>

#include "export/CExport.h"
#include "platform/CFileBytes.h"
#include "platform/CStandardOutput.h"
#include "platform/Clock.h"
#include "platform/EndSignals.h"
#include "tools/common/CJsonObject.h"
#include "tools/quib-render/LoadByName.h"
#include "tools/quib-render/Options.h"
#include "tools/quib-render/Terminal.h"

namespace quib {

namespace {

ExportSettings SettingsOf(const RenderOptions& options) {
    const ExportOptions& wanted = options.exporting;
    ExportSettings settings;
    settings.format = wanted.format;
    settings.format.kind = FormatOf(options.output).value_or(ESoundFormat::kWave);
    settings.format.sampleRate = static_cast<int>(options.format.sampleRate);
    settings.format.bitRate = wanted.bitRate.value_or(settings.format.bitRate);
    if (wanted.loudness) settings.loudness = LoudnessTarget{*wanted.loudness, wanted.truePeak};
    settings.tailSeconds = wanted.tailSeconds;
    settings.tags = wanted.tags;
    if (wanted.loop) settings.range = EExportRange::kLoop;
    if (wanted.markers) settings.range = EExportRange::kMarkers;
    if (options.songMode) settings.range = *options.songMode ? EExportRange::kSong : EExportRange::kPatterns;
    settings.firstStep = wanted.from.value_or(0);
    if (options.steps) settings.endStep = settings.firstStep + *options.steps;
    settings.frames = static_cast<std::int64_t>(options.seconds.value_or(0.0) * options.format.sampleRate);
    settings.mixPath = options.output;
    settings.stems = options.stems.has_value();
    settings.stemPoint = wanted.afterMaster ? EStemPoint::kAfterMaster : EStemPoint::kBeforeMaster;
    settings.folder = options.stems.value_or(std::filesystem::path());
    settings.namePattern = wanted.namePattern.value_or("{number} {stem}");
    settings.seed = options.seed;
    settings.blockSize = options.format.blockSize;
    settings.threads = options.format.threads;
    return settings;
}

std::string Describe(const CExport& work, const RenderFormat& format, double cpuSeconds) {
    const double seconds = static_cast<double>(work.Frames()) / format.sampleRate;
    CJsonObject json;
    json.Add("frames", work.Frames());
    json.Add("rate", format.sampleRate);
    json.Add("peak", static_cast<double>(work.Mix().Peak()));
    json.Add("rms", work.Mix().Rms());
    json.Add("seconds", seconds);
    json.Add("render_cpu_seconds", cpuSeconds);
    json.Add("realtime_factor", cpuSeconds > 0 ? seconds / cpuSeconds : 0.0);
    json.Add("threads", format.threads);
    json.Add("instruments", work.InstrumentCount());
    if (const auto& level = work.Measured()) {
        json.Add("loudness", level->loudness);
        json.Add("true_peak", level->truePeak);
        json.Add("gain", level->gain);
    }
    std::vector<std::string> paths;
    for (const ExportFile& file : work.Files()) paths.push_back(file.path.string());
    json.Add("files", paths);
    json.Add("clipped", work.Clipped());
    json.Add("missing_plugins", work.MissingPlugins());
    return json.Text();
}

// Loads, plays and writes. False when it could not, or the user has ended it.
bool Work(CExport& work) {
    for (bool first = true; work.HasMorePasses(); first = false) {
        const bool loaded = work.Load([](float, const std::string&) { return !EndWanted(); });
        for (const std::string& warning : work.Warnings()) {
            if (first) Say(warning);
        }
        if (!loaded || !work.Render()) return false;
    }
    return work.Write();
}

}  // namespace

bool IsExport(const RenderOptions& options) {
    if (options.output.empty()) return false;
    const ESoundFormat format = FormatOf(options.output).value_or(ESoundFormat::kWave);
    return options.exporting.isAsked || options.stems ||
           (format != ESoundFormat::kWave && format != ESoundFormat::kMp3);
}

int RunExport(const RenderOptions& options, const CStandardOutput& output) {
    CFileBytes project;
    std::string error;
    if (!project.Read(options.project, error)) {
        Say(error);
        return kCouldNot;
    }
    CProjectPlugins plugins(options.pluginFolders);
    const auto load = [&](const PluginReference& wanted, ESlotKind kind, PluginEnvironment& environment,
                          std::string& reason) { return plugins.Load(wanted, kind, environment, reason); };
    CProgressBar bar;
    const auto progress = [&bar](double share, int) {
        bar.Show(share);
        return !EndWanted();
    };
    CExport work(SettingsOf(options), std::string(project.View()), load, progress);
    const std::uint64_t begun = ProcessCpuNanoseconds();
    if (!Work(work)) {
        Say(work.Error().empty() ? "stopped by the user" : work.Error());
        return kCouldNot;
    }
    const double cpuSeconds = static_cast<double>(ProcessCpuNanoseconds() - begun) * 1e-9;
    for (const std::string& name : work.Clipped()) Say(name + ": clipped, since it passes full scale");
    if (options.json && !output.WriteLine(Describe(work, options.format, cpuSeconds))) return kCouldNot;
    return work.MissingPlugins().empty() ? kDone : kPluginMissing;
}

}  // namespace quib
