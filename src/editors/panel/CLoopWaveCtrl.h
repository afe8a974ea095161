// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The sound of one loop: its wave, the strokes that it is cut into, its beats, and where it plays. User-interface
// thread.

#include <QString>
#include <vector>

#include "controls/CControl.h"
#include "model/plugin/LoopList.h"

namespace quib {

class CLoopWaveCtrl : public CControl, public CTicked {
public:
    CLoopWaveCtrl(CWinControl& window, const QRect& place, const CPlugin& loopPlayer);

    // Shows a loop; `file` is read for its wave, and one that cannot be read shows none.
    void Show(const LoopEntry& loop, const QString& file);
    void Draw() override;
    void Tick() override;

private:
    struct Peak {
        float low = 0;
        float high = 0;
    };
    void ReadPeaks(const QString& file);
    qreal PlaceOf(double frame) const;

    const CPlugin& player;
    LoopEntry shown;
    std::vector<Peak> peaks;  // one a pixel of the wave
    std::vector<int> strokes;
    int frame = -1;  // that plays
};

}  // namespace quib
