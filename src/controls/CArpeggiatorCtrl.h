// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The arpeggiator's panel: a container that builds its controls over an instrument's arpeggiator settings.
// User-interface thread.

#include "controls/CControl.h"

namespace quib {

// The nine settings; see the instrument for their meanings.
struct ArpeggiatorValues {
    CValue* on = nullptr;
    CValue* mode = nullptr;
    CValue* hole = nullptr;
    CValue* ext = nullptr;
    CValue* extMode = nullptr;
    CValue* velocity = nullptr;
    CValue* interval = nullptr;
    CValue* gateTime = nullptr;
    CValue* tempo = nullptr;
};

class CArpeggiatorCtrl : public CControl {
public:
    static constexpr int kWidth = 270;
    static constexpr int kHeight = 150;

    CArpeggiatorCtrl(CWinControl& window, std::uint32_t number, int left, int top, const ArpeggiatorValues& values);

    void Draw() override;
    // Binds the controls to another instrument's settings.
    void BindTo(const ArpeggiatorValues& values);
    // Called with every finished change of any of the controls.
    void SetGesture(const std::function<void(CControl&, float before)>& gesture);

private:
    struct Bound {
        CControl* control;
        CValue* ArpeggiatorValues::*setting;
    };

    std::vector<Bound> bound;
    ArpeggiatorValues values;
};

}  // namespace quib
