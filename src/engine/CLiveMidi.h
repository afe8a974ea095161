// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Live MIDI on its way into the engine: a queue for each thread that brings it, emptied by the render
// thread at the start of a block.

#include "engine/CControlRouter.h"
#include "engine/CMidiRouter.h"

namespace quib {

class CLiveMidi {
public:
    // Of the MIDI input thread, and of a sound device that brings MIDI along: whoever is about to render.
    CBoundedQueue<MidiMessage>& Input() noexcept { return input; }
    CBoundedQueue<MidiMessage>& DeviceInput() noexcept { return deviceInput; }
    // Any thread.
    std::uint64_t Dropped() const noexcept { return input.Dropped() + deviceInput.Dropped(); }

    // Render thread. What is too much for one block waits for the next.
    void Drain(CControlRouter& controllers, CMidiRouter& router, BlockContext& block,
               const CTransport& transport) noexcept;

private:
    CBoundedQueue<MidiMessage> input{4096};
    CBoundedQueue<MidiMessage> deviceInput{4096};
};

}  // namespace quib
