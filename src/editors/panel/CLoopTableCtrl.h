// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The loops of a loop player as a list with their keys, tempos and strokes. A click chooses one, its sign or Space lets
// it play in time and ends it again. User-interface thread.

#include <functional>
#include <vector>

#include "controls/CControl.h"
#include "model/plugin/LoopList.h"

namespace quib {

class CLoopTableCtrl : public CControl {
public:
    static constexpr int kRow = 24;
    static constexpr int kHead = 20;

    CLoopTableCtrl(CWinControl& window, const QRect& place, std::vector<LoopEntry> loopList);
    // What plays ends.
    ~CLoopTableCtrl() override;

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnKeyDown(int virtualKey) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kChoice; }
    int PartCount() const override { return static_cast<int>(loops.size()); }
    ControlPart PartAt(int part) const override;
    int ChosenPart() const override { return selected; }
    void Activate(int part) override { Select(part); }

    void Select(int loop);
    int Selected() const noexcept { return selected; }
    // Whether the one of that number plays by the list.
    bool IsPlaying(int loop) const noexcept { return loop == playing; }

    std::function<void(int loop)> onSelect;
    std::function<void(int key, int velocity)> onPlay;  // velocity 0: its end

private:
    QRectF Area(int row) const;
    int RowAt(int py) const;
    void Scroll(int next);
    void Toggle(int loop);

    std::vector<LoopEntry> loops;
    int first = 0;
    int selected = -1;
    int under = -1;
    int playing = -1;
};

}  // namespace quib
