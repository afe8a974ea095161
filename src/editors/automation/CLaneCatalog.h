// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which lanes of automation there are, where their points live, and how their values are written. Points of a
// pattern: MIDI, mix, plug-in. Points of the song: mix, plug-in, inserts, and all of the master section.
// User-interface thread.

#include <compare>
#include <vector>

#include "controls/CPalette.h"
#include "document/CWorkstation.h"
#include "engine/strip/CLevelTables.h"
#include "model/edits/LaneEdits.h"

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

class CLaneCatalog {
public:
    explicit CLaneCatalog(CWorkstation& workstation) : document(workstation) {}

    // In the order of the groups; plug-in parameters by name. An instrument that is null has none.
    std::vector<LaneEntry> Lanes(const std::shared_ptr<CInstrument>& instrument, bool song) const;
    // No target where the group has no plug-in.
    Place<CEventLanes> PlaceOf(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const;
    std::shared_ptr<CPlugin> PluginOf(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const;
    // What the lane's setting is now; nothing for MIDI lanes and for what is gone.
    std::optional<float> ValueNow(const std::shared_ptr<CInstrument>& instrument, const LaneKey& key) const;
    // With the unit of the lane's kind.
    QString ValueText(const LaneEntry& lane, float value) const;
    // The value of a text that a user typed, as ValueText writes it; nothing when it is none.
    std::optional<float> ValueOf(const LaneEntry& lane, const QString& text) const;
    QString GroupName(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const;
    static ESection SectionOf(const LaneKey& key) noexcept;

private:
    void AddPlugin(std::vector<LaneEntry>& lanes, const std::shared_ptr<CInstrument>& instrument,
                   ELaneGroup group) const;

    CWorkstation& document;
    CLevelTables tables;
};

}  // namespace quib
