// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The next steps of the arpeggiator as a strip of small notes. User-interface thread.

#include "controls/CControl.h"
#include "model/CPattern.h"

namespace quib {

class CArpeggiatorStripCtrl : public CControl {
public:
    static constexpr int kSteps = 32;

    CArpeggiatorStripCtrl(CWinControl& window, std::uint32_t number, int left, int top);

    // `isSilent`: keys do not reach the arpeggiator, which is told in place of the notes.
    void Show(std::vector<Note> next, bool isSilent = false);
    void Draw() override;

private:
    std::vector<Note> notes;
    bool silent = false;
};

}  // namespace quib
