// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The one table of what MIDI controllers move: an immutable value that the editing thread builds and publishes whole.
// The render thread looks in it for each message. What playing keeps of a binding is shared by all tables that have
// it, so that an edit of one binding does not disturb the others.

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "model/CValue.h"
#include "model/control/CTakeOver.h"
#include "model/control/ControlMessage.h"

namespace quib {

// Of one binding.
struct ControlPlay {
    // Written by the render thread, read by any.
    CSharedSetting<std::uint32_t> moves;  // goes up with each value that was set
    CValue hand{-1};                      // where the hand is, 0..1 of the target's range; -1 unknown
    CIntegerValue waits;                  // not 0: the value does not follow yet

    // Render thread only.
    CTakeOver takeOver;
    int coarse = -1;      // of a pair whose fine part has not come; -1 none
    bool isDown = false;  // a press
};

class CControlMap {
public:
    static constexpr std::size_t kMostBindings = 1024;

    struct Entry {
        ControlBinding binding;
        std::shared_ptr<ControlPlay> play = std::make_shared<ControlPlay>();
        // One of the project has the same source, and wins over those that are kept for all projects.
        bool overruled = false;
    };

    CControlMap() = default;
    // The first kMostBindings of them.
    explicit CControlMap(std::vector<Entry> bindings);

    const std::vector<Entry>& Entries() const noexcept { return entries; }
    bool IsEmpty() const noexcept { return entries.empty(); }

    // Copies. An index that is not there changes nothing.
    CControlMap With(const ControlBinding& binding) const;
    CControlMap Replaced(std::size_t index, const ControlBinding& binding) const;
    CControlMap Without(const std::function<bool(const ControlBinding&)>& goes) const;
    // With each target as `change` leaves it; those for which it gives false go.
    CControlMap Retargeted(const std::function<bool(ControlTarget&)>& change) const;

    // Calls `visit` with every binding that a message is meant for and that is not overruled; says whether there was
    // one. Render thread.
    template <class Visit>
    bool ForEach(int status, int data1, Visit&& visit) const noexcept {
        bool any = false;
        const auto look = [&](EControlSource kind, int number) {
            for (const Entry& entry : Having(kind, number)) {
                if (entry.overruled || !Listens(entry.binding.source.channelSelector, status)) continue;
                any = true;
                visit(entry);
            }
        };
        switch (KindOf(status)) {
            case kNoteOn:
            case kNoteOff:
                look(EControlSource::kKey, data1);
                break;
            case kControlChange:
                look(EControlSource::kController, data1);
                if (data1 < 2 * kFineControllers) look(EControlSource::kFineController, data1 % kFineControllers);
                break;
            case kPitchBend:
                look(EControlSource::kBend, 0);
                break;
            case kChannelPressure:
                look(EControlSource::kPressure, 0);
                break;
            case kProgramChange:
                look(EControlSource::kProgram, data1);
                break;
            default:
                break;
        }
        return any;
    }

private:
    std::span<const Entry> Having(EControlSource kind, int number) const noexcept;

    std::vector<Entry> entries;  // by kind and number
};

}  // namespace quib
