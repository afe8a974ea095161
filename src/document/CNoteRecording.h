// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Recording what is played on keys into the pattern of the current instrument that plays: armed, it begins
// and ends with playing, and each take is one step of undo. User-interface thread.

#include <functional>

#include "document/CNoteTake.h"
#include "document/CSelection.h"

namespace quib {

class CNoteRecording {
public:
    CNoteRecording(const DocumentContext& document, const CSelection& shownSelection);

    // The arm, which is also the engine's switch. It goes off when playing ends.
    CValue& Armed() const noexcept { return context.audio.noteCapture.recording; }
    // The arm was switched by hand: what is stopped plays at once.
    void ArmSwitched();
    const NoteTakeOptions& Options() const noexcept { return options; }
    // Kept in the settings.
    void SetOptions(const NoteTakeOptions& next);

    // While a hand edits what is recorded into: the take so far becomes a step, and what is played meanwhile
    // is added afterwards.
    void Hold(bool on);

    // From the timer: looks where playing is before the notices are fetched, takes those of notes, then
    // publishes.
    void Look();
    void Take(const EngineNotice& notice);
    void Tick();
    // Another project comes: what is not a step yet goes with its instruments.
    void Abandon();

    // The first note of a pattern that is of the take that goes on, as all after it; beyond them when none is.
    std::size_t FirstRecorded(const std::shared_ptr<const CPattern>& notes) const { return take->FirstRecorded(notes); }

    // A key of the current instrument while nothing plays; velocity 0: it went up.
    std::function<void(int key, int velocity)> onStepEntry;

private:
    // The playing state as it was looked at.
    struct Playing {
        bool running = false;
        std::int64_t rendered = 0;  // samples since the start
        int pattern = -1;
        int step = -1;
    };

    const DocumentContext& context;
    const CSelection& selection;
    NoteTakeOptions options;
    Playing now;
    bool held = false;
    std::unique_ptr<CNoteTake> take;
};

}  // namespace quib
