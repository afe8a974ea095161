// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Lets what MIDI controllers are bound to follow them, in the block in which they are heard; tells the editing thread
// of actions, which are its affair. While a control is being learned it tells what moves instead. Neither waits nor
// allocates. Render thread only.

#include "engine/BlockContext.h"
#include "engine/EngineMessages.h"
#include "model/sharing/CBoundedQueue.h"

namespace quib {

class CControlRouter {
public:
    CControlRouter(EngineSettings& engineSettings, const CIntegerValue& learningSwitch,
                   CBoundedQueue<EngineNotice>& noticeQueue) noexcept
        : settings(engineSettings), learning(learningSwitch), notices(noticeQueue) {}

    // Says whether the message is spent: no instrument gets it. What ends something goes on in any case.
    bool Take(const MidiMessage& message, BlockContext& block) noexcept;
    // Messages that were spent so far.
    std::uint32_t Count() const noexcept { return count; }

private:
    void Follow(const CControlMap::Entry& entry, const MidiMessage& message, BlockContext& block) noexcept;
    void Press(const CControlMap::Entry& entry, bool down, BlockContext& block) noexcept;
    void Turn(const CControlMap::Entry& entry, int steps, BlockContext& block) noexcept;
    void Move(const CControlMap::Entry& entry, float hand, float step, BlockContext& block) noexcept;
    bool Set(const CControlMap::Entry& entry, float share, BlockContext& block) noexcept;

    EngineSettings& settings;
    const CIntegerValue& learning;
    CBoundedQueue<EngineNotice>& notices;
    std::uint32_t count = 0;
};

}  // namespace quib
