// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The pads of a drum machine: a click plays one, soft at its foot and loud at its top, and chooses it; the right
// button chooses without a sound. User-interface thread.

#include <functional>
#include <vector>

#include "controls/CControl.h"

namespace quib {

class CPanelValues;

class CPadsCtrl : public CControl {
public:
    struct Pad {
        int page = 0;
        QString name;
        std::vector<int> keys;  // the first is the one that is played
        bool chokes = false;    // cuts others of its kind
        int level = -1;         // parameters; -1: none
        int pan = -1;
        int send = -1;
    };

    CPadsCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, std::vector<Pad> padList,
              int padsAcross);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnKeyDown(int virtualKey) override;
    void OnMouseLeave() override;
    bool HasChanged() const override;

    int page = 0;  // the chosen one
    std::function<void(int page)> onChoose;
    std::function<void(int key, int velocity)> onPlay;  // velocity 0 ends the key

private:
    QRectF Area(std::size_t pad) const;
    int PadAt(int px, int py) const;
    void DrawPad(const Pad& pad, const QRectF& area, bool isHit, bool isHot);
    std::vector<float> Values() const;

    CPanelValues& values;
    std::vector<Pad> pads;
    int across;
    int under = -1;
    int playing = -1;  // pad
    std::vector<float> drawn;
};

}  // namespace quib
