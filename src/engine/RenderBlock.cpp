// SPDX-License-Identifier: GPL-3.0-or-later
// The engine's render cycle.
#include <algorithm>
#include <cmath>

#include "engine/CAudio.h"
#include "engine/InstrumentChain.h"
#include "engine/ParameterChange.h"
#include "engine/SampleConversion.h"
#include "platform/Clock.h"
#include "platform/FloatingPointMode.h"

namespace quib {

namespace {

constexpr int kTailBlocks = 100;
// The rest waits for the next block: an instrument's list takes them all, so no note off is lost on the way.
constexpr std::size_t kMaximumLiveMessages = kMaximumBlockEvents / 2;
// Output pair of the drum machine for a send, behind its main pair.
constexpr int SendOutput(int send) noexcept { return 2 * send + 2; }

CPlugin* PluginOf(const CPublished<PluginSlot>& slot) noexcept { return slot.ForRender().plugin.get(); }

}  // namespace

bool CAudio::RenderBlock() noexcept {
    if (rendering.exchange(true, std::memory_order_seq_cst)) return false;  // a second device while the first one ends
    const bool open = busy.load(std::memory_order_seq_cst) == 0;
    if (open) {
        const std::uint64_t start = Nanoseconds();
        const CRenderThreadScope renderThread;
        const CFloatingPointScope keepMode;
        SetFlushToZero();
        clock.BeginBlock();
        RenderOpenBlock();
        clock.EndBlock();
        cpuMeter.Add(static_cast<double>(Nanoseconds() - start) * 1e-9, format.blockSize, format.sampleRate);
    }
    rendering.store(false, std::memory_order_seq_cst);
    return open;
}

void CAudio::RenderOpenBlock() noexcept {
    GatherBlock();
    RunCommands();
    DrainMidiQueues();
    AdvanceSequencer();
    transport.blockStartTime = block.now;
    PlayMasterAutomation(block, settings);
    RenderInstruments();
    MixInstruments();
    RunSharedEffects();
    RunMasterInserts();
    PlayAudition();
    PlayTestTone();
    FinishMaster();
    scope.Capture(master.Plane(0), master.Plane(1), block.frames);
    FeedRecorder();
    ApplyHeadphonesLevel();
    PublishPicture();
}

void CAudio::GatherBlock() noexcept {
    block.instruments.clear();
    jobOfInstrument.clear();
    jobs.clear();
    for (const auto& instrument : instruments.ForRender()) {
        if (block.instruments.size() == kMaximumInstruments) break;
        GatherInstrument(*instrument);
    }
    for (std::size_t index = 0; index < kInsertCount; ++index)
        block.masterInserts[index] = PluginOf(masterInserts[index]);
    for (std::size_t index = 0; index < kSendCount; ++index)
        block.sharedEffects[index] = PluginOf(sharedEffects[index]);
    block.masterLanes = &masterLanes.ForRender();
    block.frames = format.blockSize;
    block.sampleRate = format.sampleRate;
    block.now = Milliseconds();
}

void CAudio::GatherInstrument(CInstrument& instrument) noexcept {
    CPlugin* const plugin = PluginOf(instrument.plugin);
    if (plugin == nullptr || !instrument.play.planes) return;
    InstrumentPlayState& play = instrument.play;
    if (!play.known) {
        play.known = true;
        play.currentPattern = instrument.patternSelected.Get();
        if (transport.playing) play.restartStep = 0;
        const BallSoundList& sounds = instrument.ballSounds.ForRender();
        for (std::size_t ball = 0; ball < std::min(sounds.size(), play.balls.size()); ++ball) {
            play.balls[ball] = {sounds[ball].x, sounds[ball].y};
        }
    }
    block.instruments.push_back(
        {&instrument, plugin, {PluginOf(instrument.inserts[0]), PluginOf(instrument.inserts[1])}});
    const bool sounds = plugin->CanReplace() && plugin->OutputCount() > 0;
    jobOfInstrument.push_back(sounds ? static_cast<int>(jobs.size()) : -1);
    if (sounds) jobs.emplace_back();
}

void CAudio::DrainMidiQueues() noexcept {
    MidiMessage message;
    std::size_t count = 0;
    for (CBoundedQueue<MidiMessage>* const queue : {&midiInput, &deviceMidi, &internalMidi}) {
        for (; count < kMaximumLiveMessages && queue->TryPop(message); ++count) {
            router.Dispatch(message, block, transport);
        }
    }
}

void CAudio::AdvanceSequencer() noexcept {
    transport.SetTempo(format.sampleRate, settings.stepsPerBeat.Get(), SafeTempo(settings));
    FillTime();
    transport.changed = false;
    sequencer.Advance(block, settings, transport);
    transport.UpdateStepFraction();
    block.playing = transport.playing;
    block.songMode = settings.songMode.Get() > 0.0F;
    block.stepFraction = transport.stepFraction;
    block.songPosition = static_cast<float>(transport.globalStep) + transport.stepFraction;
}

void CAudio::FillTime() noexcept {
    const int beatsPerBar = std::max(1, settings.beatsPerBar.Get());
    const int beatUnit = std::max(1, settings.beatUnit.Get());
    const double quartersPerBar = 4.0 * beatsPerBar / beatUnit;
    const int stepsPerBeat = std::max(1, settings.stepsPerBeat.Get());
    PlayTime& time = block.time;
    time.known = true;
    time.samplePosition = static_cast<double>(transport.sampleCounter);
    time.sampleRate = format.sampleRate;
    time.tempo = static_cast<double>(SafeTempo(settings));
    time.quarterNotes = transport.QuarterNotes(stepsPerBeat);
    time.barStart = std::floor(time.quarterNotes / quartersPerBar) * quartersPerBar;
    time.loopStart = static_cast<double>(settings.loopStart.Get()) / stepsPerBeat;
    time.loopEnd = static_cast<double>(settings.loopEnd.Get()) / stepsPerBeat;
    time.beatsPerBar = beatsPerBar;
    time.beatUnit = beatUnit;
    time.playing = transport.playing;
    time.transportChanged = transport.changed;
    time.looping = settings.loopOn.IsOn() && settings.songMode.IsOn();
    time.recording = recordAutomation.IsOn();
}

void CAudio::RenderInstruments() noexcept {
    const int groups = (static_cast<int>(jobs.size()) + kStripGroup - 1) / kStripGroup;
    for (int group = 0; group < groups; ++group) {
        const int members = std::min(kStripGroup, static_cast<int>(jobs.size()) - group * kStripGroup);
        unfinishedInGroup[static_cast<std::size_t>(group)].store(members, std::memory_order_relaxed);
    }
    pool->Run(&CAudio::RunRenderTask, this, static_cast<int>(block.instruments.size()));
}

void CAudio::RenderInstrument(int index) noexcept {
    BlockInstrument& entry = block.instruments[static_cast<std::size_t>(index)];
    RenderChain(entry, block);
    const int job = jobOfInstrument[static_cast<std::size_t>(index)];
    if (job < 0) return;
    PrepareStrip(entry, jobs[static_cast<std::size_t>(job)]);
    // Whoever brings the last chain of a group to its end works on the strips of the group.
    const int group = job / kStripGroup;
    if (unfinishedInGroup[static_cast<std::size_t>(group)].fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    const int first = group * kStripGroup;
    const int members = std::min(kStripGroup, static_cast<int>(jobs.size()) - first);
    StripJob* const strips = &jobs[static_cast<std::size_t>(first)];
    kernels.processStrips(strips, members, block.frames);
}

void CAudio::PrepareStrip(BlockInstrument& entry, StripJob& job) noexcept {
    CInstrument& instrument = *entry.instrument;
    const ChannelStrip& strip = instrument.strip;
    EqBandUpdate update;
    while (instrument.eqPending.TryPop(update)) ApplyEqUpdate(instrument.play.strip, update);

    StripSettings values{strip.level.Get(),     strip.pan.Get(),        strip.mute.Get(),
                         strip.soloMuted.Get(), strip.crossfadeA.Get(), strip.crossfadeB.Get()};
    values.eqOn = strip.eqOn.IsOn() ? 1.0F : 0.0F;
    values.hasSendOutputs = entry.plugin->FeedsSends() && entry.plugin->OutputCount() >= SendOutput(kSendCount);
    for (int send = 0; send < kSendCount; ++send) {
        const auto index = static_cast<std::size_t>(send);
        values.sendOn[send] = strip.sendOn[index].Get();
        values.sendLevel[send] = strip.sendLevel[index].Get();
        if (!values.hasSendOutputs) continue;
        job.extraLeft[send] = entry.plugin->Output(SendOutput(send));
        job.extraRight[send] = entry.plugin->Output(SendOutput(send) + 1);
    }
    job.inLeft = entry.left;
    job.inRight = entry.right;
    job.state = &instrument.play.strip;
    job.targets = MakeStripTargets(values, tables, masterState.crossfadeA, masterState.crossfadeB);
    job.planes = MakeStripPlanes(*instrument.play.planes);
    job.inputsStay = true;  // nothing is rendered again before the strips are mixed
}

void CAudio::MixInstruments() noexcept {
    MixBuses buses;
    buses.masterLeft = master.Plane(0);
    buses.masterRight = master.Plane(1);
    Silence();
    const int count = static_cast<int>(jobs.size());
    for (int send = 0; send < kSendCount; ++send) {
        const auto index = static_cast<std::size_t>(send);
        CPlugin* const effect = block.sharedEffects[index];
        const bool audible = LargestSendGain(jobs.data(), count, send) > kAudibleSendGain;
        const bool rings = !audible && effectTail[index] > 0;
        effectTail[index] = audible ? kTailBlocks : effectTail[index] - static_cast<int>(rings);
        effectRuns[index] = effect != nullptr && effect->CanReplace() && (audible || rings);
        if (!effectRuns[index]) continue;
        buses.sendLeft[send] = effect->Input(0);
        buses.sendRight[send] = effect->Input(1);
        std::fill_n(effect->Input(0), block.frames, 0.0F);
        std::fill_n(effect->Input(1), block.frames, 0.0F);
    }
    kernels.mixStrips(jobs.data(), count, buses, 0, block.frames);
    for (std::size_t index = 0; index < block.instruments.size(); ++index) {
        CInstrument& instrument = *block.instruments[index].instrument;
        instrument.strip.peak.Set(instrument.play.strip.peak);
    }
}

void CAudio::RunSharedEffects() noexcept {
    float* const left = master.Plane(0);
    float* const right = master.Plane(1);
    for (std::size_t index = 0; index < kSendCount; ++index) {
        if (!effectRuns[index]) continue;
        CPlugin& effect = *block.sharedEffects[index];
        effect.SetBlockTime(block.time);
        effect.Process(block.frames);
        if (effect.OutputCount() == 0) continue;
        const float* const wetLeft = effect.Left();
        const float* const wetRight = effect.Right();
        for (int i = 0; i < block.frames; ++i) {
            left[i] += wetLeft[i];
            right[i] += wetRight[i];
        }
    }
}

void CAudio::RunMasterInserts() noexcept {
    for (std::size_t index = 0; index < kInsertCount; ++index) {
        CPlugin* const insert = block.masterInserts[index];
        if (insert == nullptr || !insert->CanReplace() || !settings.masterInsertOn[index].IsOn()) continue;
        insert->SetBlockTime(block.time);
        insert->Process(master.Plane(0), master.Plane(1), block.frames);
        if (insert->OutputCount() == 0) continue;
        std::copy_n(insert->Left(), block.frames, master.Plane(0));
        std::copy_n(insert->Right(), block.frames, master.Plane(1));
    }
}

void CAudio::PlayAudition() noexcept {
    if (!block.playing) return;
    const double position = std::trunc((transport.soundingStep + static_cast<double>(block.stepFraction)) *
                                       static_cast<double>(transport.samplesPerStep));
    AddAudition(audition.ForRender(), position, master.Plane(0), master.Plane(1), block.frames);
}

void CAudio::PlayTestTone() noexcept {
    tone.Add(testTone.IsOn(), format.sampleRate, master.Plane(0), master.Plane(1), block.frames);
}

void CAudio::FinishMaster() noexcept {
    const MasterTargets targets = MakeMasterTargets(settings.masterLevel.Get(), settings.crossfader.Get(), tables);
    kernels.processMaster(masterState, targets, master.Plane(0), master.Plane(1), block.frames);
    masterPeak[0].Set(masterState.peakLeft);
    masterPeak[1].Set(masterState.peakRight);
}

void CAudio::FeedRecorder() noexcept {
    if (recorder == nullptr || !recorder->IsRecording()) return;
    ConvertToInt16(master.Plane(0), master.Plane(1), interleaved.data(), block.frames);
    recorder->PushBlock(interleaved);
}

// A line from the last gain to the wanted one over the block; at full level the samples stay as they are.
void CAudio::ApplyHeadphonesLevel() noexcept {
    const float target = tables.MasterGain(settings.headphonesLevel.Get());
    if (target == 1.0F && headphonesGain == 1.0F) return;
    const float step = (target - headphonesGain) / static_cast<float>(block.frames);
    for (int channel = 0; channel < 2; ++channel) {
        float* const samples = master.Plane(channel);
        for (int frame = 0; frame < block.frames; ++frame) {
            samples[frame] *= headphonesGain + step * static_cast<float>(frame + 1);
        }
    }
    headphonesGain = target;
}

void CAudio::PublishPicture() noexcept {
    PlayPicture& shown = picture.Writable();
    shown.playing = transport.playing;
    shown.globalStep = transport.globalStep;
    shown.soundingStep = transport.soundingStep;
    shown.maxStepCount = transport.maxStepCount;
    shown.stepFraction = transport.stepFraction;
    shown.sampleCounter = transport.sampleCounter;
    shown.midiCount = router.Count();
    shown.time = block.time;
    shown.instrumentCount = block.instruments.size();
    for (std::size_t index = 0; index < shown.instrumentCount; ++index) {
        const CInstrument& instrument = *block.instruments[index].instrument;
        const InstrumentPlayState& play = instrument.play;
        InstrumentPicture& entry = shown.instruments[index];
        entry.id = instrument.Id();
        entry.pattern = play.currentPattern;
        entry.nextPattern = play.nextPattern;
        entry.step = play.currentStep;
        entry.midiCount = play.midiCount;
        const auto& keys = play.heldKeys.Items();
        entry.heldKeyCount = static_cast<std::uint32_t>(std::min(keys.size(), InstrumentPicture::kShownKeys));
        std::transform(keys.begin(), keys.begin() + entry.heldKeyCount, entry.heldKeys.begin(),
                       [](std::int32_t key) { return static_cast<std::uint8_t>(key); });
    }
    picture.Commit();
}

void CAudio::Silence() noexcept {
    std::fill_n(master.Plane(0), format.blockSize, 0.0F);
    std::fill_n(master.Plane(1), format.blockSize, 0.0F);
}

}  // namespace quib
