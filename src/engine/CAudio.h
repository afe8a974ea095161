// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The engine: renders blocks of stereo sound from the instruments, the shared effects and the master
// section. One thread at a time renders, through RenderBlock; the editing thread publishes structure,
// sets values and posts commands. CAudio puts its parts in order and holds no arithmetic of its own.

#include <array>
#include <memory>
#include <span>

#include "engine/Audition.h"
#include "engine/CBlockGuard.h"
#include "engine/CControlRouter.h"
#include "engine/CCpuMeter.h"
#include "engine/CInstrumentMixer.h"
#include "engine/CLiveKeys.h"
#include "engine/CLiveMidi.h"
#include "engine/CMasterSection.h"
#include "engine/CMetronome.h"
#include "engine/CMidiRouter.h"
#include "engine/CNoteCapture.h"
#include "engine/CRenderPool.h"
#include "engine/CSharedEffects.h"
#include "engine/CSongTime.h"
#include "engine/CTaps.h"
#include "engine/EngineMessages.h"
#include "engine/EngineSettings.h"
#include "engine/InstrumentPreparation.h"
#include "engine/RenderFormat.h"
#include "engine/strip/CLevelTables.h"
#include "model/sharing/CBoundedQueue.h"
#include "model/sharing/CPublished.h"

namespace quib {

class CAudio {
public:
    explicit CAudio(std::uint32_t seed = 1);
    ~CAudio();
    CAudio(const CAudio&) = delete;
    CAudio& operator=(const CAudio&) = delete;

    // --- Any thread -------------------------------------------------------------------------------

    EngineSettings settings;
    PresetSelection presetSelection;
    CValue recordAutomation;        // switch: incoming controllers are recorded
    CIntegerValue controlLearning;  // not 0: what moves and what is pressed is told and does nothing else
    NoteCaptureSettings noteCapture;
    MetronomeSettings metronome;
    CSharedSetting<std::uint32_t> ballsShown;  // id of the instrument whose balls the picture has; 0: none
    CValue testTone;                           // switch: a steady tone in the master bus, to check levels
    CValue paused;                             // switch: devices play silence and do not render
    std::array<CValue, 2> masterPeak;

    float CpuLoad() const noexcept { return cpuMeter.Load(); }
    const RenderFormat& Format() const noexcept { return format; }
    // Frames from a key to the sound of what was rendered while it went down.
    int KeyDelay() const noexcept { return format.blockSize + std::max(0, noteCapture.latency.Get()); }

    // --- Editing thread ---------------------------------------------------------------------------

    PluginEnvironment environment;
    CRenderClock clock;
    CGraveyard graveyard{clock};
    CPublished<InstrumentList> instruments;
    std::array<CPublished<PluginSlot>, kInsertCount> masterInserts;
    std::array<CPublished<PluginSlot>, kSendCount> sharedEffects;
    CPublished<CEventLanes> masterLanes;
    CPublished<CControlMap> controlMap;
    CPublished<Audition> audition;

    // Whether the engine can render for a device of this rate (Hz) and block size (frames).
    static bool IsUsable(double sampleRate, int blockSize) noexcept;
    // Refuses blocks, and keeps the transport still, until Release was called as often: while a device is
    // being opened, and when none could be.
    void Hold() noexcept { guard.Hold(); }
    void Release() noexcept { guard.Release(); }
    // Makes the engine and all its plug-ins ready for a device, and the master buffers silent. A device
    // that still calls is told to play silence. Throws std::invalid_argument for a format out of range.
    void Prepare(const RenderFormat& wanted);
    // Makes an instrument ready to be published: buffers, equaliser, plug-ins. One that was published
    // before and comes back in the same format keeps its playing state.
    void PrepareInstrument(CInstrument& instrument) const { quib::PrepareInstrument(instrument, format); }
    // Publishes the list; instruments were prepared before.
    void PublishInstruments(InstrumentList list);

    bool Post(const EngineCommand& command) noexcept { return commands.TryPush(command); }
    bool Fetch(EngineNotice& notice) noexcept { return notices.TryPop(notice); }
    // The newest picture of the playing state.
    const PlayPicture& Picture() noexcept { return taps.Picture(); }
    // Frees what no block sees any more; from the 40 ms timer.
    void Collect() { graveyard.Collect(); }
    // Repeats the same music from the same seed. No block may be rendered meanwhile.
    void Seed(std::uint32_t seed) noexcept { songTime.Seed(seed); }
    // The recorder that is fed; null for none. No block may be rendered meanwhile.
    void SetRecorder(CBlockRecorder* next) noexcept { taps.SetRecorder(next); }
    CScope& Scope() noexcept { return taps.Scope(); }
    CListener& Listener() noexcept { return taps.Listener(); }

    // --- MIDI input thread ------------------------------------------------------------------------

    bool ReceiveMidi(const MidiMessage& message) noexcept { return midi.Input().TryPush(message); }
    CBoundedQueue<MidiMessage>& MidiInputQueue() noexcept { return midi.Input(); }
    // Of all inputs. Any thread.
    std::uint64_t DroppedMidi() const noexcept { return midi.Dropped(); }

    // --- Render thread ----------------------------------------------------------------------------

    // For a sound device that brings MIDI along: filled by whoever is about to render.
    CBoundedQueue<MidiMessage>& DeviceMidiQueue() noexcept { return midi.DeviceInput(); }
    // Renders one block into the master buffers. False when the engine is being prepared or another
    // thread renders: the buffers are then not the caller's, who plays silence.
    bool RenderBlock() noexcept;
    // The same asked for at this nanosecond: messages of a block's length before it fall on its first frame.
    bool RenderBlock(std::uint64_t now) noexcept;
    const float* Master(int channel) const noexcept { return master.Channel(channel); }
    // The strips of the last block, in the order of the instruments that sound. Frame i of a strip's output
    // is mixLeft[i] * mixGainLeft, and likewise on the right; valid until the next block.
    std::span<const StripJob> Strips() const noexcept { return mixer.Strips(); }
    // What the last block was rendered from, with each instrument's signal before its strip; until the next one.
    const BlockContext& LastBlock() const noexcept { return block; }
    // Frames of the last block, first and end, in which a shared effect gave its output into the mix.
    std::pair<int, int> EffectSpan(int send) const noexcept { return effects.Span(send); }

private:
    // Whether a recording of notes would be counted in.
    bool CountsIn() const noexcept { return noteCapture.recording.IsOn() && metronome.countIn.Get() > 0; }
    // `now` in nanoseconds.
    void RenderOpenBlock(std::uint64_t now) noexcept;
    void GatherBlock() noexcept;
    void GatherInstrument(CInstrument& instrument) noexcept;

    RenderFormat format;
    CBlockGuard guard;
    CCpuMeter cpuMeter;
    std::unique_ptr<CRenderPool> pool;
    CLevelTables tables;
    const StripKernels& kernels;

    CBoundedQueue<EngineCommand> commands{1024};
    CBoundedQueue<EngineNotice> notices{4096};

    // The parts, in the order in which a block passes through them.
    BlockContext block;
    CSongTime songTime;
    CNoteCapture capture{noteCapture, notices};
    CLiveKeys keys{capture};
    CMidiRouter router{presetSelection, recordAutomation, notices, keys};
    CControlRouter controllers{settings, controlLearning, notices};
    CLiveMidi midi;
    CInstrumentMixer mixer{kernels, tables};
    CSharedEffects effects;
    CMasterSection master{kernels, tables, masterPeak};
    CTaps taps;
    CMetronome clicks{metronome};
};

}  // namespace quib
