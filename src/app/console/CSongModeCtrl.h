// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What playing follows, as two words of which one holds: the song or the patterns. User-interface thread.

#include "controls/CControl.h"
#include "document/CWorkstation.h"
#include "document/SongMode.h"

namespace quib {

class CSongModeCtrl : public CControl {
public:
    // As wide as its words want it, with symbols before them where it is asked to.
    CSongModeCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                  CWorkstation& workstation, bool withSymbols = true);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kChoice; }
    int PartCount() const override { return 2; }
    ControlPart PartAt(int part) const override;
    int ChosenPart() const override { return ValueNow() != 0 ? 0 : 1; }

private:
    QRectF Half(bool song) const;
    bool IsSongAt(int px) const { return Half(true).right() > px; }

    CWorkstation& station;
    bool symbols;
};

}  // namespace quib
