// SPDX-License-Identifier: GPL-3.0-or-later
// The engine's render cycle.
#include "engine/CAudio.h"
#include "engine/EngineCommands.h"
#include "platform/Clock.h"
#include "platform/FloatingPointMode.h"

namespace quib {

namespace {

CPlugin* PluginOf(const CPublished<PluginSlot>& slot) noexcept { return slot.ForRender().plugin.get(); }

}  // namespace

bool CAudio::RenderBlock() noexcept { return RenderBlock(Nanoseconds()); }

bool CAudio::RenderBlock(std::uint64_t now) noexcept {
    const CBlockGuard::CBlock current(guard);
    if (!current.IsOpen()) return false;
    const std::uint64_t start = Nanoseconds();
    const CRenderThreadScope renderThread;
    const CFloatingPointScope keepMode;
    SetFlushToZero();
    clock.BeginBlock();
    RenderOpenBlock(now);
    clock.EndBlock();
    cpuMeter.Add(Nanoseconds() - start, format.blockSize, format.sampleRate);
    return true;
}

void CAudio::RenderOpenBlock(std::uint64_t now) noexcept {
    block.now = now;
    GatherBlock();
    RunCommands(commands, {block, settings, songTime, router, keys, clicks, CountsIn()});
    midi.Drain(controllers, router, block, songTime.Transport());
    if (const int frame = clicks.Count(block, settings); frame >= 0) songTime.Play(block, settings, frame);
    songTime.Advance(block, settings, recordAutomation.IsOn());
    capture.Tell(block, songTime.Transport());
    master.Plan(block, settings);
    mixer.Render(block, *pool, master.Crossfade());
    MixBuses buses = master.Begin(block);
    effects.Connect(block, mixer, buses);
    mixer.Mix(block, buses);
    effects.Run(block, master.Left(), master.Right());
    master.RunInserts(block);
    master.PlayAudition(block, audition.ForRender());
    master.PlayTestTone(block, testTone.IsOn());
    master.Finish(block);
    taps.TakeOutput(master.Left(), master.Right(), block.frames);
    clicks.Play(block, settings, master.Left(), master.Right());
    master.ApplyHeadphonesLevel(block, settings);
    taps.TakePicture(block, songTime.Transport(), router.Count() + controllers.Count());
}

void CAudio::GatherBlock() noexcept {
    ++block.number;
    block.instruments.clear();
    block.grid.Clear();
    block.beats.Items().clear();
    for (const auto& instrument : instruments.ForRender()) {
        if (block.instruments.size() == kMaximumInstruments) break;
        GatherInstrument(*instrument);
    }
    for (std::size_t index = 0; index < kInsertCount; ++index)
        block.masterInserts[index] = PluginOf(masterInserts[index]);
    for (std::size_t index = 0; index < kSendCount; ++index)
        block.sharedEffects[index] = PluginOf(sharedEffects[index]);
    block.masterLanes = &masterLanes.ForRender();
    block.controls = &controlMap.ForRender();
    block.ballsShown = ballsShown.Get();
    block.frames = format.blockSize;
    block.sampleRate = format.sampleRate;
}

void CAudio::GatherInstrument(CInstrument& instrument) noexcept {
    CPlugin* const plugin = PluginOf(instrument.plugin);
    if (plugin == nullptr || !instrument.play.planes) return;
    instrument.play.blockSteps.Items().clear();
    instrument.play.ballMoves.Items().clear();
    songTime.Admit(instrument);
    keys.Admit(instrument, *plugin, block.number);
    CLiveKeys::EndLatch(instrument);
    block.instruments.push_back(
        {&instrument, plugin, {PluginOf(instrument.inserts[0]), PluginOf(instrument.inserts[1])}});
}

}  // namespace quib
