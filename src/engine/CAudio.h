// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The engine: renders blocks of stereo sound from the instruments, the shared effects and the master
// section. One thread at a time renders, through RenderBlock; the editing thread publishes structure,
// sets values and posts commands. CAudio puts its parts in order and holds no arithmetic of its own.

#include <array>
#include <atomic>
#include <memory>
#include <span>
#include <vector>

#include "engine/Audition.h"
#include "engine/BlockContext.h"
#include "engine/CBlockRecorder.h"
#include "engine/CCpuMeter.h"
#include "engine/CLevelTables.h"
#include "engine/CMidiRouter.h"
#include "engine/CRandom.h"
#include "engine/CRenderPool.h"
#include "engine/CScope.h"
#include "engine/CSequencer.h"
#include "engine/CTestTone.h"
#include "engine/CTransport.h"
#include "engine/EngineMessages.h"
#include "engine/EngineSettings.h"
#include "engine/PlayPicture.h"
#include "engine/strip/StripKernels.h"
#include "model/sharing/CBoundedQueue.h"
#include "model/sharing/CPublished.h"
#include "model/sharing/CTripleBuffer.h"
#include "platform/CAudioPlanes.h"

namespace quib {

// What a device decides before it renders.
struct RenderFormat {
    static constexpr int kMaximumBlockSize = CPlugin::kMaximumFrames;

    double sampleRate = 44100.0;
    int blockSize = 2048;  // 1 .. kMaximumBlockSize
    int threads = 1;       // render threads, the device's own included
    bool realTime = false;
};

class CAudio {
public:
    explicit CAudio(std::uint32_t seed = 1);
    ~CAudio();
    CAudio(const CAudio&) = delete;
    CAudio& operator=(const CAudio&) = delete;

    // --- Any thread -------------------------------------------------------------------------------

    EngineSettings settings;
    PresetSelection presetSelection;
    CValue recordAutomation;  // switch: incoming controllers are recorded
    CValue testTone;          // switch: a steady tone in the master bus, to check levels
    CValue paused;            // switch: devices play silence and do not render
    std::array<CValue, 2> masterPeak;

    float CpuLoad() const noexcept { return cpuMeter.Load(); }
    const RenderFormat& Format() const noexcept { return format; }

    // --- Editing thread ---------------------------------------------------------------------------

    PluginEnvironment environment;
    CRenderClock clock;
    CGraveyard graveyard{clock};
    CPublished<InstrumentList> instruments;
    std::array<CPublished<PluginSlot>, kInsertCount> masterInserts;
    std::array<CPublished<PluginSlot>, kSendCount> sharedEffects;
    CPublished<CEventLanes> masterLanes;
    CPublished<Audition> audition;

    // Whether the engine can render for a device of this rate (Hz) and block size (frames).
    static bool IsUsable(double sampleRate, int blockSize) noexcept;
    // Refuses blocks, and keeps the transport still, until Release was called as often: while a device is
    // being opened, and when none could be.
    void Hold() noexcept { busy.fetch_add(1, std::memory_order_seq_cst); }
    void Release() noexcept { busy.fetch_sub(1, std::memory_order_seq_cst); }
    // Makes the engine and all its plug-ins ready for a device, and the master buffers silent. A device
    // that still calls is told to play silence. Throws std::invalid_argument for a format out of range.
    void Prepare(const RenderFormat& wanted);
    // Makes an instrument ready to be published: buffers, equaliser, plug-ins. One that was published
    // before and comes back in the same format keeps its playing state.
    void PrepareInstrument(CInstrument& instrument) const;
    // Publishes the list; instruments were prepared before.
    void PublishInstruments(InstrumentList list);

    bool Post(const EngineCommand& command) noexcept { return commands.TryPush(command); }
    bool Fetch(EngineNotice& notice) noexcept { return notices.TryPop(notice); }
    // Messages of the on-screen keyboard.
    bool PostMidi(const MidiMessage& message) noexcept { return internalMidi.TryPush(message); }
    // The newest picture of the playing state.
    const PlayPicture& Picture() noexcept {
        picture.Update();
        return picture.Latest();
    }
    // Frees what no block sees any more; from the 40 ms timer.
    void Collect() { graveyard.Collect(); }
    // Repeats the same music from the same seed. No block may be rendered meanwhile.
    void Seed(std::uint32_t seed) noexcept { random.Seed(seed); }
    // The recorder that is fed; null for none. No block may be rendered meanwhile.
    void SetRecorder(CBlockRecorder* next) noexcept { recorder = next; }
    CScope& Scope() noexcept { return scope; }

    // --- MIDI input thread ------------------------------------------------------------------------

    bool ReceiveMidi(const MidiMessage& message) noexcept { return midiInput.TryPush(message); }
    CBoundedQueue<MidiMessage>& MidiInputQueue() noexcept { return midiInput; }
    // Of all inputs. Any thread.
    std::uint64_t DroppedMidi() const noexcept {
        return midiInput.Dropped() + deviceMidi.Dropped() + internalMidi.Dropped();
    }

    // --- Render thread ----------------------------------------------------------------------------

    // For a sound device that brings MIDI along: filled by whoever is about to render.
    CBoundedQueue<MidiMessage>& DeviceMidiQueue() noexcept { return deviceMidi; }
    // Renders one block into the master buffers. False when the engine is being prepared or another
    // thread renders: the buffers are then not the caller's, who plays silence.
    bool RenderBlock() noexcept;
    const float* Master(int channel) const noexcept { return master.Plane(channel); }
    // The strips of the last block, in the order of the instruments that sound. Frame i of a strip's output
    // is mixLeft[i] * mixGainLeft, and likewise on the right; valid until the next block.
    std::span<const StripJob> Strips() const noexcept { return jobs; }

private:
    void RebuildInstrument(CInstrument& instrument) const;
    void RenderOpenBlock() noexcept;
    void GatherBlock() noexcept;
    void GatherInstrument(CInstrument& instrument) noexcept;
    void RunCommands() noexcept;
    void RunCommand(const EngineCommand& command) noexcept;
    void RunInstrumentCommand(const EngineCommand& command, BlockInstrument& entry) noexcept;
    void Play() noexcept;
    void DrainMidiQueues() noexcept;
    void AdvanceSequencer() noexcept;
    void FillTime() noexcept;
    void RenderInstruments() noexcept;
    void RenderInstrument(int index) noexcept;
    void PrepareStrip(BlockInstrument& entry, StripJob& job) noexcept;
    void MixInstruments() noexcept;
    void RunSharedEffects() noexcept;
    void RunMasterInserts() noexcept;
    void PlayAudition() noexcept;
    void PlayTestTone() noexcept;
    void FinishMaster() noexcept;
    void FeedRecorder() noexcept;
    void ApplyHeadphonesLevel() noexcept;
    void PublishPicture() noexcept;
    void Silence() noexcept;

    static void RunRenderTask(void* audio, int index) noexcept { static_cast<CAudio*>(audio)->RenderInstrument(index); }

    CLevelTables tables;
    const StripKernels& kernels;
    CCpuMeter cpuMeter;
    RenderFormat format;
    std::unique_ptr<CRenderPool> pool;
    CAudioPlanes master{2, RenderFormat::kMaximumBlockSize};
    std::vector<std::int16_t> interleaved;
    CBlockRecorder* recorder = nullptr;
    CScope scope;

    std::atomic<int> busy{1};            // above 0 while the device is being opened: blocks are silent
    std::atomic<bool> rendering{false};  // a block is being rendered

    CBoundedQueue<EngineCommand> commands{1024};
    CBoundedQueue<EngineNotice> notices{4096};
    CBoundedQueue<MidiMessage> midiInput{4096};
    CBoundedQueue<MidiMessage> deviceMidi{4096};
    CBoundedQueue<MidiMessage> internalMidi{1024};
    CTripleBuffer<PlayPicture> picture;

    // Render thread only.
    CRandom random;
    CTransport transport;
    CSequencer sequencer{random};
    CMidiRouter router{presetSelection, recordAutomation, notices};
    BlockContext block;
    std::vector<StripJob> jobs;
    std::vector<int> jobOfInstrument;  // index into `jobs`, -1 for an instrument without sound
    std::array<std::atomic<int>, kMaximumInstruments / kStripGroup> unfinishedInGroup{};
    MasterState masterState;
    float headphonesGain = 1;
    CTestTone tone;
    std::array<int, kSendCount> effectTail{};
    std::array<bool, kSendCount> effectRuns{};
};

}  // namespace quib
