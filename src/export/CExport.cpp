// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/CExport.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "export/CBounce.h"
#include "project/ProjectEngine.h"

namespace quib {

namespace {
constexpr double kWritingShare = 0.2;  // of the whole work, where sound waits for its gain
}

// The state goes first: its plug-ins know the engine's environment.
struct CExport::Engine {
    explicit Engine(std::uint32_t seed) : audio(seed) {}

    CAudio audio;
    ProjectState state;
};

CExport::CExport(ExportSettings exportSettings, std::string projectBytes, Loader pluginLoader, Progress tellProgress)
    : settings(std::move(exportSettings)),
      project(std::move(projectBytes)),
      load(std::move(pluginLoader)),
      progress(std::move(tellProgress)) {}

CExport::~CExport() = default;

bool CExport::Fail(const std::string& reason) {
    if (error.empty()) error = reason;
    return false;
}

bool CExport::Load(const LoadProgress& loading) {
    if (const std::string refusal = RefusalOf(settings.format); !refusal.empty()) return Fail(refusal);
    engine.reset();
    engine = std::make_unique<Engine>(settings.seed);
    CAudio& audio = engine->audio;
    audio.Prepare({static_cast<double>(settings.format.sampleRate), settings.blockSize, settings.threads, false});
    audio.settings.stepsPerBeat.Set(settings.stepsPerBeat);
    audio.settings.beatsPerBar.Set(settings.tags.beatsPerBar);
    ProjectState& state = engine->state;
    const PluginLoader loadHere = [&](const PluginReference& wanted, ESlotKind kind, std::string& reason) {
        return load(wanted, kind, audio.environment, reason);
    };
    if (!ReadProject(project, loadHere, state, error, loading)) return false;
    if (nextPass == 0) ChooseSpan();
    if (settings.frames == 0 && settings.endStep <= settings.firstStep) return Fail("there is nothing to play");
    state.master.songMode = settings.range == EExportRange::kPatterns ? 0.0F : 1.0F;
    state.master.loopOn = 0;  // a render that loops would never end
    PublishProject(state, audio);
    if (nextPass == 0 && !OpenOutputs()) return false;
    if (SoloFile() != kAll) MuteOthers(files[static_cast<std::size_t>(SoloFile())].index);
    return true;
}

// What was left to the project.
void CExport::ChooseSpan() {
    const ProjectState& state = engine->state;
    if (!settings.range) settings.range = state.master.songMode > 0 ? EExportRange::kSong : EExportRange::kPatterns;
    if (settings.endStep == 0) {
        const ExportSteps steps = StepsOf(*settings.range, state);
        settings.firstStep = std::max(settings.firstStep, steps.first);
        settings.endStep = steps.end;
    }
    if (settings.tags.tempo <= 0) settings.tags.tempo = static_cast<double>(state.master.tempo);
}

// Each stem that plays alone wants a pass of its own; all the rest is one, and what the gain is measured on.
void CExport::ChoosePasses() {
    passes.clear();
    bool isAllWanted = settings.loudness.has_value();
    for (const ExportFile& file : files) isAllWanted |= file.source == ExportFile::ESource::kMix;
    if (!IsSolo() || isAllWanted) passes.push_back(kAll);
    for (std::size_t index = 0; IsSolo() && index < files.size(); ++index) {
        if (files[index].source != ExportFile::ESource::kMix) passes.push_back(static_cast<int>(index));
    }
}

bool CExport::OpenOutputs() {
    warnings = engine->state.warnings;
    files = PlanFiles(engine->state, settings);
    if (files.empty()) return Fail("there is no stem to write");
    ChoosePasses();
    if (settings.loudness) meter = std::make_unique<CLoudness>(settings.format.sampleRate);
    left.resize(static_cast<std::size_t>(settings.blockSize));
    right.resize(left.size());
    int strip = 0;
    std::vector<int> strips;
    for (const auto& instrument : engine->state.instruments) strips.push_back(Sounds(*instrument) ? strip++ : -1);
    for (const ExportFile& file : files) {
        Output& output = outputs.emplace_back();
        if (file.source == ExportFile::ESource::kInstrument)
            output.strip = strips[static_cast<std::size_t>(file.index)];
        output.file = std::make_unique<CSoundFile>(file.path, settings.format, settings.tags);
        if (settings.loudness) {
            output.spool = std::make_unique<CFrameSpool>(file.path);
            if (!output.spool->Open(error)) return false;
        } else if (!output.file->Open()) {
            return Fail(output.file->Error());
        }
    }
    return true;
}

void CExport::MuteOthers(int instrument) {
    const InstrumentList& instruments = engine->state.instruments;
    for (std::size_t index = 0; index < instruments.size(); ++index) {
        instruments[index]->strip.soloMuted.Set(static_cast<int>(index) == instrument ? 0.0F : 1.0F);
    }
}

bool CExport::Render() {
    CBounce bounce(engine->audio);
    const double rendering = settings.loudness ? 1.0 - kWritingShare : 1.0;
    const bool done = bounce.Run(
        {settings.firstStep, settings.endStep, settings.frames, settings.tailSeconds},
        [this](int count) { return TakeBlock(count); },
        [&](double part) {
            const double played = static_cast<double>(nextPass) + part;
            return progress(rendering * played / static_cast<double>(passes.size()), SoloFile());
        },
        error);
    if (!done) return false;
    frames = std::max(frames, bounce.Frames());
    ++nextPass;
    return true;
}

bool CExport::TakeBlock(int count) {
    const int solo = SoloFile();
    if (solo != kAll) return TakeInto(static_cast<std::size_t>(solo), count);
    for (const int channel : {0, 1}) mix.Add(engine->audio.Master(channel), count);
    if (meter) meter->Add(engine->audio.Master(0), engine->audio.Master(1), count);
    for (std::size_t index = 0; index < files.size(); ++index) {
        const bool plays = !IsSolo() || files[index].source == ExportFile::ESource::kMix;
        if (plays && !TakeInto(index, count)) return false;
    }
    return true;
}

bool CExport::TakeInto(std::size_t index, int count) {
    const CAudio& audio = engine->audio;
    const ExportFile& file = files[index];
    Output& output = outputs[index];
    const float* fromLeft = audio.Master(0);
    const float* fromRight = audio.Master(1);
    if (!IsSolo() && file.source == ExportFile::ESource::kInstrument) {
        const StripJob& strip = audio.Strips()[static_cast<std::size_t>(output.strip)];
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            left[i] = strip.mixLeft[i] * strip.mixGainLeft;
            right[i] = strip.mixRight[i] * strip.mixGainRight;
        }
    } else if (file.source == ExportFile::ESource::kEffect) {
        const CPlugin& effect = *engine->state.effects[static_cast<std::size_t>(file.index)]->plugin;
        const auto [first, end] = audio.EffectSpan(file.index);
        std::fill(left.begin(), left.end(), 0.0F);
        std::fill(right.begin(), right.end(), 0.0F);
        std::copy(effect.Left() + first, effect.Left() + end, left.begin() + first);
        std::copy(effect.Right() + first, effect.Right() + end, right.begin() + first);
    }
    if (!IsSolo() && file.source != ExportFile::ESource::kMix) {
        fromLeft = left.data();
        fromRight = right.data();
    }
    if (output.spool) return output.spool->Write(fromLeft, fromRight, count, error);
    return output.file->Write(fromLeft, fromRight, count) || Fail(output.file->Error());
}

void CExport::MeasureGain() {
    const double loudness = meter->Integrated();
    const double truePeak = meter->TruePeak();
    level = Level{loudness, truePeak, GainTowards(*settings.loudness, loudness, truePeak)};
}

bool CExport::Write() {
    if (meter) MeasureGain();
    for (std::size_t index = 0; index < files.size(); ++index) {
        CSoundFile& file = *outputs[index].file;
        if (outputs[index].spool && !WriteScaled(index, static_cast<float>(std::pow(10.0, level->gain / 20.0))))
            return false;
        if (!file.Finish()) return Fail(file.Error());
    }
    for (const Output& output : outputs) {
        if (!output.file->Keep()) return Fail(output.file->Error());
    }
    return true;
}

bool CExport::WriteScaled(std::size_t index, float gain) {
    CFrameSpool& spool = *outputs[index].spool;
    CSoundFile& file = *outputs[index].file;
    if (!file.Open()) return Fail(file.Error());
    if (!spool.Rewind(error)) return false;
    std::int64_t written = 0;
    while (const int count = spool.Read()) {
        for (int i = 0; i < count; ++i) {
            spool.Left()[i] *= gain;
            spool.Right()[i] *= gain;
        }
        if (!file.Write(spool.Left(), spool.Right(), count)) return Fail(file.Error());
        written += count;
        const double part = static_cast<double>(index) + static_cast<double>(written) / static_cast<double>(frames);
        const double share = 1.0 - kWritingShare + kWritingShare * part / static_cast<double>(files.size());
        if (!progress(share, static_cast<int>(index))) return false;
    }
    outputs[index].spool.reset();
    return true;
}

std::size_t CExport::InstrumentCount() const noexcept { return engine->state.instruments.size(); }

std::vector<std::string> CExport::MissingPlugins() const {
    std::vector<std::string> names;
    ForEachSlot(engine->state, [&](const PluginSlot& slot) {
        if (slot.missing) names.push_back(slot.missing->fileName);
    });
    return names;
}

std::vector<std::string> CExport::Clipped() const {
    std::vector<std::string> names;
    for (std::size_t index = 0; index < outputs.size(); ++index) {
        if (outputs[index].file->HasClipped()) names.push_back(files[index].path.filename().string());
    }
    return names;
}

}  // namespace quib
