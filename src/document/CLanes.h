// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which lanes of automation there are, where their points live, and which lane a setting belongs to. Points of a
// pattern: MIDI, mix, plug-in. Points of the song: mix, plug-in, inserts, and all of the master section.
// User-interface thread.

#include <compare>
#include <optional>
#include <vector>

#include "document/CContents.h"
#include "document/CPluginPlaces.h"
#include "model/control/ControlBinding.h"

namespace quib {

enum class ELaneGroup {
    kMidi,
    kMix,
    kPlugin,
    kInsert1,
    kInsert2,
    kMaster,
    kMasterInsert1,
    kMasterInsert2,
    kEffect1,
    kEffect2,
    kEffect3,
    kEffect4
};

struct LaneKey {
    ELaneGroup group = ELaneGroup::kMix;
    int index = 0;

    friend auto operator<=>(const LaneKey&, const LaneKey&) = default;
};

struct LaneEntry {
    LaneKey key;
    LaneDescription description;
};

// A lane with the instrument it belongs to; null for the master section.
struct InstrumentLane {
    std::shared_ptr<CInstrument> instrument;
    LaneKey key;
};

// The lanes that a ball's assignments move; and which of them an assignment names.
ELaneGroup GroupOf(EBallTarget target) noexcept;
EBallTarget TargetOf(ELaneGroup group) noexcept;
// The lane of what a MIDI controller moves; nothing where it has none. `instrument`: the target's.
std::optional<InstrumentLane> LaneOf(const ControlTarget& target, const std::shared_ptr<CInstrument>& instrument);

class CLanes {
public:
    CLanes(const DocumentContext& document, const CPluginPlaces& pluginPlaces, const CContents& projectContents)
        : context(document), places(pluginPlaces), contents(projectContents) {}

    // In the order of the groups; plug-in parameters by name. An instrument that is null has none.
    std::vector<LaneEntry> Lanes(const std::shared_ptr<CInstrument>& instrument, bool song) const;
    // No target where the group has no plug-in.
    Place<CEventLanes> PlaceOf(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const;
    std::shared_ptr<CPlugin> PluginOf(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const;
    // What the lane's setting is now; nothing for MIDI lanes and for what is gone.
    std::optional<float> ValueNow(const std::shared_ptr<CInstrument>& instrument, const LaneKey& key) const;
    // The lane of a setting of a strip or of the master section, or of a plug-in's parameter; nothing for what
    // has none.
    std::optional<InstrumentLane> Find(const void* setting) const;
    std::optional<InstrumentLane> Find(const CPlugin* plugin, int parameter) const;

private:
    void AddPlugin(std::vector<LaneEntry>& lanes, const std::shared_ptr<CInstrument>& instrument,
                   ELaneGroup group) const;

    const DocumentContext& context;
    const CPluginPlaces& places;
    const CContents& contents;
};

}  // namespace quib
