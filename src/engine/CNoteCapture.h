// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Tells what is played on keys, so that it can be written into patterns: while the transport runs with the
// place where it was played to what was heard, while it stands still without a place. Keys are told as the
// plug-in gets them, those struck up to half a beat before the first one that was counted in as struck on it.
// Render thread only.

#include "engine/BlockContext.h"
#include "engine/CTransport.h"
#include "engine/EngineMessages.h"
#include "model/sharing/CBoundedQueue.h"

namespace quib {

// What is to be told. Any thread.
struct NoteCaptureSettings {
    CValue recording;       // switch: while the transport runs
    CValue stepEntry;       // switch: while it stands still
    CIntegerValue latency;  // frames from the rendering of a block to the sound of its first one
};

class CNoteCapture {
public:
    CNoteCapture(const NoteCaptureSettings& captureSettings, CBoundedQueue<EngineNotice>& noticeQueue) noexcept
        : settings(captureSettings), notices(noticeQueue) {}

    // A key on its way to the plug-in in the block that begins. `time`: nanosecond; velocity 0: its end.
    void Add(const CInstrument& instrument, int key, int velocity, std::uint64_t time) noexcept;
    // Whether notes go into patterns at present.
    bool IsRecording() const noexcept { return running && settings.recording.IsOn(); }
    // Once the steps of the block have run.
    void Tell(const BlockContext& block, const CTransport& transport) noexcept;

private:
    struct Played {
        const CInstrument* instrument;
        int key;
        int velocity;
        std::uint64_t time;
    };
    // One that was played while it is counted in.
    struct Early {
        std::uint32_t instrument;
        int key;
        int velocity;
        std::int64_t heard;  // frame of the block under way that was heard then
    };

    void Keep(const BlockContext& block) noexcept;
    void TellEarly(const BlockContext& block, const CTransport& transport) noexcept;
    void TellPlayed(const Played& note, const BlockContext& block, const CTransport& transport) noexcept;
    std::int64_t HeardFrame(const Played& note, const BlockContext& block) const noexcept;
    static void Locate(EngineNotice& notice, const CInstrument& instrument, std::int64_t frame,
                       const BlockContext& block, const CTransport& transport) noexcept;

    const NoteCaptureSettings& settings;
    CBoundedQueue<EngineNotice>& notices;
    CFixedList<Played> played{kMaximumBlockEvents};
    CFixedList<Early> early{kMaximumBlockEvents};
    bool running = false;
};

// The position whose note sounds at `steps` of a pattern, given that notes of odd steps come `swing` steps
// late; the nearest one where none does.
double WithoutSwing(double steps, double swing) noexcept;

}  // namespace quib
