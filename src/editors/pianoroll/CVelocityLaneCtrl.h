// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The lane below a piano roll: the velocity of every note as a bar at its start. Scrolls and zooms with the
// roll and redraws only the bars that have changed. In the drum view it shows the row in focus, the others
// as thin ghosts. User-interface thread.

#include "editors/pianoroll/CPianoRollCtrlEx.h"
#include "editors/pianoroll/CVelocityGestures.h"

namespace quib {

class CVelocityLaneCtrl : public CDirectPaneCtrl {
public:
    // `pianoRoll` stays as long as this; its onNotes, onView and onPlayhead are the lane's.
    CVelocityLaneCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                      CPianoRollCtrlEx& pianoRoll);

    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void OnKeyDown(int key) override;
    void Resize(int newWidth, int newHeight) override;

    // Told after the lane itself has been.
    std::function<void(const NoteState& before)> onNotes;
    std::function<void()> onView;

private:
    struct Bar {
        float position = 0;
        int velocity = 0;
        std::uint32_t note = 0;
    };

    RollDrawing Drawing(const QRect& part);
    void Paint(const QRect& part) override;
    void PaintScale(const RollDrawing& drawing) const;
    void PaintBars(const RollDrawing& drawing) const;
    void PaintGhosts(const RollDrawing& drawing) const;
    template <class Visit>
    void VisitBars(const RollDrawing& drawing, const Visit& visit) const;
    // Down to `foot`, where the next lower one begins: of the last one its own.
    void PaintBar(const RollDrawing& drawing, const Bar& bar, double foot, bool isLast) const;
    double Foot() const noexcept { return Height() - CVelocityGestures::kFoot; }
    double BarLeft(float position) const noexcept { return roll.view.XOf(static_cast<double>(position)) + kBarInset; }
    void NotesChanged(const NoteState& before);
    void PlayheadMoved(double from, double to);
    int GhostKey() const noexcept { return roll.view.IsDrums() ? roll.options.focusedKey : -1; }
    void SetHovered(std::optional<std::uint32_t> note);
    QRect BarPart(const Note& note) const;
    void ShowBar(int px);

    static constexpr int kBarInset = 2;  // from the line of the step

    CPianoRollCtrlEx& roll;
    CVelocityGestures gestures;
    std::optional<std::uint32_t> hovered;
};

}  // namespace quib
