// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a strip does with its selected pattern as a whole: the clipboard, and the edits that the piano roll
// has, too. User-interface thread.

#include "document/CWorkstation.h"
#include "editors/base/CEditTarget.h"

class QMenu;

namespace quib {

void FillPatternMenu(QMenu& menu, CWorkstation& station, std::uint32_t instrument);

// Cut, copy and paste of the selected pattern of the current instrument, for the main window.
class CPatternEdits : public CEditTarget {
public:
    explicit CPatternEdits(CWorkstation& workstation) : station(workstation) {}
    bool CanEdit(EEdit command) const override;
    void Edit(EEdit command) override;

private:
    CWorkstation& station;
};

}  // namespace quib
