// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/freeze/CFreezeRender.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "export/freeze/CFrozenFile.h"
#include "project/ProjectEngine.h"

namespace quib {

namespace {

constexpr int kFreezeBlock = 2048;      // frames
constexpr double kEndingSilence = 0.5;  // that end what sounds on behind the song,
constexpr double kLongestTail = 20;     // which is no longer than that, seconds
constexpr float kUnheard = 1e-6F;

bool IsSilent(const float* samples, int count) {
    return samples == nullptr ||
           std::all_of(samples, samples + count, [](float sample) { return std::abs(sample) < kUnheard; });
}

int ChannelsOf(const CPlugin& plugin) {
    const bool feedsSends = plugin.FeedsSends() && plugin.OutputCount() >= CFrozenTake::kMaximumChannels;
    return feedsSends ? CFrozenTake::kMaximumChannels : 2;
}

}  // namespace

// The state goes first: its plug-ins know the engine's environment.
struct CFreezeRender::Engine {
    CAudio audio;
    std::shared_ptr<CInstrument> instrument;
};

CFreezeRender::CFreezeRender(FreezeSettings freezeSettings, CExport::Loader pluginLoader, Progress tellProgress)
    : settings(std::move(freezeSettings)), load(std::move(pluginLoader)), progress(std::move(tellProgress)) {}

CFreezeRender::~CFreezeRender() = default;

bool CFreezeRender::Fail(const std::string& reason) {
    error = reason;
    return false;
}

bool CFreezeRender::Load() {
    engine = std::make_unique<Engine>();
    CAudio& audio = engine->audio;
    audio.Prepare({settings.sampleRate, kFreezeBlock, 1, false});
    audio.settings.stepsPerBeat.Set(settings.stepsPerBeat);
    engine->instrument = settings.project.instruments.at(0);
    if (!LoadInto(engine->instrument->plugin, ESlotKind::kInstrument)) return false;
    for (auto& insert : engine->instrument->inserts) {
        if (!LoadInto(insert, ESlotKind::kEffect)) return false;
    }
    PublishProject(settings.project, audio);
    settings.project = {};
    return true;
}

bool CFreezeRender::LoadInto(CPublished<PluginSlot>& slot, ESlotKind kind) {
    const auto named = slot.ForEdit()->missing;
    if (!named) return true;
    auto plugin = load({named->fileName, named->identity}, kind, engine->audio.environment, error);
    if (!plugin) return false;
    // The program first: selecting one afterwards would make some plug-ins forget what the state says.
    plugin->SelectProgram(named->program);
    if (named->state && plugin->LoadBank(*named->state) != EBankResult::kDone)
        return Fail(named->fileName + ": its state cannot be loaded");
    plugin->lanes.Prepare(std::make_shared<const CEventLanes>(named->lanes));
    auto loaded = std::make_shared<PluginSlot>();
    loaded->plugin = std::move(plugin);
    slot.Prepare(std::move(loaded));
    return true;
}

bool CFreezeRender::Render() {
    CAudio& audio = engine->audio;
    audio.Post({EngineCommand::EKind::kPlay});
    if (!audio.RenderBlock()) return Fail("the engine is busy");
    const BlockContext& block = audio.LastBlock();
    const FrozenFormat format{block.sampleRate, block.quartersPerStep, block.quartersPerBar,
                              ChannelsOf(*block.instruments.at(0).plugin)};
    CFrozenWriter writer(settings.file, settings.key, format);
    return writer.Open(error) && TakeBlock(writer) && Play(writer) &&
           writer.Finish(!settings.isEndless && IsTailSilent(), error);
}

bool CFreezeRender::IsTailSilent() const {
    return silentFrames >= static_cast<std::int64_t>(kEndingSilence * settings.sampleRate);
}

bool CFreezeRender::Play(CFrozenWriter& writer) {
    CAudio& audio = engine->audio;
    std::int64_t tail = 0;
    const auto most = static_cast<std::int64_t>(kLongestTail * settings.sampleRate);
    while (tail < most && (tail == 0 || !IsTailSilent())) {
        if (!audio.RenderBlock()) return Fail("the engine is busy");
        if (!TakeBlock(writer)) return false;
        const int step = audio.Picture().soundingStep;
        if (step >= settings.endStep) tail += kFreezeBlock;
        if (!progress(std::clamp(static_cast<double>(step) / std::max(1, settings.endStep), 0.0, 1.0))) return false;
    }
    return true;
}

bool CFreezeRender::TakeBlock(CFrozenWriter& writer) {
    const BlockContext& block = engine->audio.LastBlock();
    const BlockInstrument& entry = block.instruments.front();
    for (const BlockStep& step : block.grid.Steps()) {
        if (step.frame >= 0) writer.AddStep({frames + step.frame, step.samples, step.tempo});
    }
    std::array<const float*, CFrozenTake::kMaximumChannels> channels{entry.left, entry.right};
    for (int channel = 2; channel < ChannelsOf(*entry.plugin); ++channel)
        channels[static_cast<std::size_t>(channel)] = entry.Output(channel);
    const bool isSilent =
        std::ranges::all_of(channels, [&](const float* samples) { return IsSilent(samples, block.frames); });
    silentFrames = isSilent ? silentFrames + block.frames : 0;
    frames += block.frames;
    return writer.Add(channels, block.frames, error);
}

}  // namespace quib
