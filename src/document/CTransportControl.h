// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Playing, stopping, going to a place of the song, and tapping the tempo. User-interface thread.

#include <cstdint>
#include <vector>

#include "document/DocumentContext.h"

namespace quib {

class CTransportControl {
public:
    explicit CTransportControl(const DocumentContext& document);

    void Play() { context.audio.Post({EngineCommand::EKind::kPlay}); }
    // What sounds ends; while nothing plays everything ends, known or not.
    void Stop();
    // Ends playing for another project, whose held keys may be there before it acts.
    void Halt() { context.audio.Post({EngineCommand::EKind::kHalt}); }
    // Every note and every pedal of every instrument ends; playing goes on.
    void Panic();
    // Go up with each of them: for whoever shows keys as held.
    struct Releases {
        std::uint32_t stops = 0;
        std::uint32_t panics = 0;

        friend bool operator==(const Releases&, const Releases&) = default;
    };
    const Releases& KeysReleased() const noexcept { return releases; }
    // Also while it is counted in.
    bool IsPlaying() const;
    void Locate(int step);
    // Where patterns that are chosen during playing begin; kept in the settings.
    ELaunch Launch() const noexcept { return static_cast<ELaunch>(context.audio.settings.launch.Get()); }
    void SetLaunch(ELaunch launch);
    // Sets the tempo from the time between two calls or more.
    void TapTempo();
    // A key of an instrument (by id) as if it came in by MIDI just now; velocity 0 ends it.
    void PlayKey(std::uint32_t instrument, int key, int velocity);
    // A steady tone into the master bus, to check levels.
    void SetTestTone(bool on) { context.audio.testTone.Set(on ? 1.0F : 0.0F); }

private:
    const DocumentContext& context;
    std::vector<std::uint64_t> taps;  // nanoseconds
    Releases releases;
};

}  // namespace quib
