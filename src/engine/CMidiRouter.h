// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Takes live MIDI messages to the instruments that listen to their channel: notes with key range,
// transposition and held keys, controllers, balls, preset selection, recording of automation. Render
// thread only.

#include "engine/BlockContext.h"
#include "engine/CLiveKeys.h"
#include "engine/CTransport.h"
#include "engine/EngineMessages.h"
#include "model/sharing/CBoundedQueue.h"

namespace quib {

// Which messages select presets.
struct PresetSelection {
    CIntegerValue channel;   // channel selector
    CIntegerValue baseNote;  // note that selects preset 0
    CIntegerValue mode;      // 0 by note on, 1 by program change
};

class CMidiRouter {
public:
    CMidiRouter(const PresetSelection& presetSelection, const CValue& recordSwitch,
                CBoundedQueue<EngineNotice>& noticeQueue, CLiveKeys& liveKeys) noexcept
        : presets(presetSelection), recording(recordSwitch), notices(noticeQueue), keys(liveKeys) {}

    // Everything but channel messages is ignored.
    void Dispatch(const MidiMessage& message, ELiveSource source, BlockContext& block,
                  const CTransport& transport) noexcept;
    // A key of one instrument, whatever its channel: of its on-screen keyboard. Velocity 0 ends it.
    void PlayKey(CInstrument& instrument, int key, int velocity, std::uint64_t time) noexcept;
    // A key straight to the plug-in, as it stands: no key range, transposition or arpeggiator.
    void Audition(CInstrument& instrument, int key, int velocity, std::uint64_t time) noexcept;
    // Messages dispatched so far.
    std::uint32_t Count() const noexcept { return count; }

private:
    void SelectPreset(const MidiMessage& message) noexcept;
    void DispatchTo(BlockInstrument& entry, const MidiMessage& message, float position) noexcept;
    void BeginNote(CInstrument& instrument, const LiveOrigin& origin, int velocity, std::uint64_t time) noexcept;
    void EndNote(CInstrument& instrument, const LiveOrigin& origin, bool hears, std::uint64_t time) noexcept;
    bool DispatchKey(CInstrument& instrument, const MidiMessage& message, ELiveSource source, bool hears) noexcept;
    void OfferToLane(CInstrument& instrument, int lane, int value, float position) noexcept;

    const PresetSelection& presets;
    const CValue& recording;
    CBoundedQueue<EngineNotice>& notices;
    CLiveKeys& keys;
    std::uint32_t count = 0;
};

}  // namespace quib
