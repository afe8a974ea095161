// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The scroll bar of a time axis: shows and moves the part of it that is seen. User-interface thread.

#include "controls/CScrollCtrl.h"
#include "editors/grid/CTimeGrid.h"

namespace quib {

class CScrollbarCtrl : public CScrollCtrl {
public:
    CScrollbarCtrl(CWinControl& window, std::uint32_t number, CTimeGrid& shownTime)
        : CScrollCtrl(window, number, 0, 0, 10, 10, &place, false), time(shownTime) {
        wheelUnits = 60;
        onChange = [this](CControl&) {
            if (time.ScrollTo(static_cast<int>(place.Get())) && onScroll) onScroll();
        };
    }

    // After the axis has moved or zoomed; draws nothing.
    void Follow() {
        SetRange(static_cast<float>(time.MaximumScroll() + time.Width()), static_cast<float>(time.Width()));
        SetValueAndUpdate(false, false, static_cast<float>(time.Scroll()));
    }

    std::function<void()> onScroll;

private:
    CTimeGrid& time;
    CValue place;
};

}  // namespace quib
