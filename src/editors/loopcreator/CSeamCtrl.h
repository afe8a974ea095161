// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where a loop's end meets its start: the last and the first 40 ms, and the cross-fade. User-interface thread.

#include "controls/CControl.h"
#include "export/SoundClip.h"

namespace quib {

class CSeamCtrl : public CControl {
public:
    CSeamCtrl(CWinControl& window, int left, int top);

    // `fade` in seconds.
    void Show(std::shared_ptr<const SoundClip> nextLoop, double nextFade);
    void Draw() override;

private:
    std::shared_ptr<const SoundClip> loop;
    double fade = 0;
};

}  // namespace quib
