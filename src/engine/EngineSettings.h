// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Settings of transport and master section, each readable and writable by any thread. Switches are
// off at 0.

#include <algorithm>
#include <array>
#include <cstdint>

#include "model/CEventLanes.h"
#include "model/CValue.h"
#include "model/ChannelStrip.h"
#include "model/MixLanes.h"

namespace quib {

// Where a pattern that is chosen during playing begins.
enum class ELaunch : std::uint8_t { kPatternEnd, kBeat, kBar };

struct EngineSettings {
    CValue songMode{1.0F};           // switch: patterns follow the playlists
    CValue synchroOn;                // switch: all patterns restart with the longest
    CValue loopOn;                   // switch: the song repeats the steps loopStart .. loopEnd - 1
    CIntegerValue loopStart;         // step
    CIntegerValue loopEnd;           // step
    CIntegerValue stepsPerBeat{4};   // 4: a step is a sixteenth note
    CIntegerValue beatsPerBar{4};    // time signature: its beats,
    CIntegerValue beatUnit{4};       // and the note that is one beat: 1, 2, 4, 8, 16
    CIntegerValue launch;            // ELaunch
    CIntegerValue timebase{96};      // ticks of a quarter note, for the grids of editors
    CValue tempo{120.0F};            // beats per minute
    CValue masterLevel{127.0F};      // 0..127
    CValue headphonesLevel{127.0F};  // 0..127: of what is heard, not of what is recorded
    CValue crossfader;               // 0..127: side A .. side B
    std::array<CValue, kInsertCount> masterInsertOn;
    CSharedSetting<std::uint32_t> heldLanes;  // bit n: the hand is on master lane n, which plays nothing
};

// The setting behind a master lane, or null for an index out of range.
CValue* EngineSetting(EngineSettings& settings, int lane) noexcept;

// The song has a loop: one that is not behind its own start is none.
inline bool HasLoop(const EngineSettings& settings) noexcept {
    return settings.loopOn.IsOn() && settings.loopEnd.Get() > std::max(0, settings.loopStart.Get());
}

// How many steps lie between two places where waiting patterns begin, counted from the start of playing; 0: they
// wait for the end of the one that plays.
int LaunchSteps(const EngineSettings& settings) noexcept;

// Tempo that playback uses, in beats per minute: always a number within [10, 1000].
float SafeTempo(const EngineSettings& settings) noexcept;

}  // namespace quib
