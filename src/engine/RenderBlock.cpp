// SPDX-License-Identifier: GPL-3.0-or-later
// The engine's render cycle.
#include "engine/CAudio.h"
#include "engine/EngineCommands.h"
#include "engine/ParameterChange.h"
#include "platform/Clock.h"
#include "platform/FloatingPointMode.h"

namespace quib {

namespace {

CPlugin* PluginOf(const CPublished<PluginSlot>& slot) noexcept { return slot.ForRender().plugin.get(); }

}  // namespace

bool CAudio::RenderBlock() noexcept {
    const CBlockGuard::CBlock current(guard);
    if (!current.IsOpen()) return false;
    const std::uint64_t start = Nanoseconds();
    const CRenderThreadScope renderThread;
    const CFloatingPointScope keepMode;
    SetFlushToZero();
    clock.BeginBlock();
    RenderOpenBlock(start);
    clock.EndBlock();
    cpuMeter.Add(Nanoseconds() - start, format.blockSize, format.sampleRate);
    return true;
}

void CAudio::RenderOpenBlock(std::uint64_t start) noexcept {
    GatherBlock();
    block.now = ToMilliseconds(start);
    RunCommands(commands, {block, settings, songTime, router});
    midi.Drain(router, block, songTime.Transport());
    songTime.Advance(block, settings, recordAutomation.IsOn());
    capture.Tell(block, songTime.Transport());
    PlayMasterAutomation(block, settings);
    mixer.Render(block, *pool, master.Crossfade());
    MixBuses buses = master.Begin(block);
    effects.Connect(block, mixer, buses);
    mixer.Mix(block, buses);
    effects.Run(block, master.Left(), master.Right());
    master.RunInserts(block, settings);
    master.PlayAudition(block, audition.ForRender(), songTime.Transport());
    master.PlayTestTone(block, testTone.IsOn());
    master.Finish(block, settings);
    taps.TakeOutput(master.Left(), master.Right(), block.frames);
    master.ApplyHeadphonesLevel(block, settings);
    taps.TakePicture(block, songTime.Transport(), router.Count());
}

void CAudio::GatherBlock() noexcept {
    block.instruments.clear();
    for (const auto& instrument : instruments.ForRender()) {
        if (block.instruments.size() == kMaximumInstruments) break;
        GatherInstrument(*instrument);
    }
    for (std::size_t index = 0; index < kInsertCount; ++index)
        block.masterInserts[index] = PluginOf(masterInserts[index]);
    for (std::size_t index = 0; index < kSendCount; ++index)
        block.sharedEffects[index] = PluginOf(sharedEffects[index]);
    block.masterLanes = &masterLanes.ForRender();
    block.ballsShown = ballsShown.Get();
    block.frames = format.blockSize;
    block.sampleRate = format.sampleRate;
}

void CAudio::GatherInstrument(CInstrument& instrument) noexcept {
    CPlugin* const plugin = PluginOf(instrument.plugin);
    if (plugin == nullptr || !instrument.play.planes) return;
    songTime.Admit(instrument);
    block.instruments.push_back(
        {&instrument, plugin, {PluginOf(instrument.inserts[0]), PluginOf(instrument.inserts[1])}});
}

}  // namespace quib
