// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Takes live MIDI messages to the instruments that listen to their channel: notes with key range,
// transposition and held keys, controllers, balls, preset selection, recording of automation. Render
// thread only.

#include "engine/BlockContext.h"
#include "engine/CNoteCapture.h"
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
                CBoundedQueue<EngineNotice>& noticeQueue, CNoteCapture& noteCapture) noexcept
        : presets(presetSelection), recording(recordSwitch), notices(noticeQueue), capture(noteCapture) {}

    // Everything but channel messages is ignored.
    void Dispatch(const MidiMessage& message, BlockContext& block, const CTransport& transport) noexcept;
    // A key of one instrument, whatever its channel: of its on-screen keyboard. Velocity 0 ends it.
    void PlayKey(CInstrument& instrument, int key, int velocity, std::uint32_t time) noexcept;
    // A key straight to the plug-in, as it stands: no key range, transposition or arpeggiator.
    static void Audition(CInstrument& instrument, int key, int velocity, std::uint32_t time) noexcept;
    // Messages dispatched so far.
    std::uint32_t Count() const noexcept { return count; }

private:
    void SelectPreset(const MidiMessage& message) noexcept;
    void DispatchTo(BlockInstrument& entry, const MidiMessage& message, float position) noexcept;
    void DispatchNote(CInstrument& instrument, const MidiMessage& message) noexcept;
    void OfferToLane(CInstrument& instrument, int lane, int value, float position) noexcept;

    const PresetSelection& presets;
    const CValue& recording;
    CBoundedQueue<EngineNotice>& notices;
    CNoteCapture& capture;
    std::uint32_t count = 0;
};

}  // namespace quib
