// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A take of an instrument with all that it was rendered from. Published to the render thread, which plays it in place
// of the plug-in for as long as every part is still the one that it holds: an edit ends it with the next block, and
// undo, which brings the same parts back, brings it back too.

#include <array>
#include <cstdint>
#include <memory>

#include "model/CEventLanes.h"
#include "model/CPattern.h"
#include "model/Playlist.h"
#include "model/StripLimits.h"
#include "model/plugin/PluginSlot.h"
#include "platform/CAudioPlanes.h"

namespace quib {

class CFrozenTake;
class CInstrument;

// Holds the parts, so that no other one can come to lie where they are. The plug-in, then its inserts.
struct FrozenSource {
    static constexpr std::size_t kPlugins = 1 + kInsertCount;

    std::array<std::shared_ptr<const PluginSlot>, kPlugins> slots;
    std::array<std::shared_ptr<const CEventLanes>, kPlugins> lanes;
    std::array<std::uint64_t, kPlugins> edits{};
    std::array<std::shared_ptr<const CPattern>, kPatternCount> patterns;
    std::shared_ptr<const Playlist> playlist;
    std::shared_ptr<const CEventLanes> midiLanes;
    std::shared_ptr<const CEventLanes> switchLanes;  // those of the strip, where they switch inserts
    std::array<float, kInsertCount> insertOn{};
    float swing = 0;
};

struct FrozenSound {
    std::shared_ptr<const CFrozenTake> take;  // null: none
    FrozenSource source;
    bool on = false;                             // false: nothing more is played from it, but a fade
    std::shared_ptr<const CAudioPlanes> planes;  // a block of each channel, the render thread's
};

// Whether a lane of the strip switches an insert, which is part of what is rendered.
bool SwitchesInserts(const CEventLanes& mixLanes) noexcept;

// What the instrument would be rendered from now. Editing thread.
FrozenSource SourceOf(const CInstrument& instrument);
// Whether that is still so. Render thread within a block, or editing thread.
bool IsFrom(const CInstrument& instrument, const FrozenSource& source) noexcept;

}  // namespace quib
