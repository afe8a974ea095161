// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How lanes of automation and their values are called. User-interface thread.

#include "controls/CPalette.h"
#include "document/CWorkstation.h"
#include "engine/strip/CLevelTables.h"
#include "model/edits/LaneEdits.h"

namespace quib {

class CLaneCatalog {
public:
    explicit CLaneCatalog(CWorkstation& workstation) : document(workstation) {}

    // With the unit of the lane's kind.
    QString ValueText(const LaneEntry& lane, float value) const;
    // The value of a text that a user typed, as ValueText writes it; nothing when it is none.
    std::optional<float> ValueOf(const LaneEntry& lane, const QString& text) const;
    QString GroupName(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const;
    static ESection SectionOf(const LaneKey& key) noexcept;

private:
    CWorkstation& document;
    CLevelTables tables;
};

}  // namespace quib
