// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A fader, upright or level, with an optional catch (detent) and an optional second, signed amount that is
// drawn as a bar at the thumb and dragged by its end or from the thumb's other side: away from the thumb it
// grows, and zero is easy to find. User-interface thread.

#include "controls/CControl.h"
#include "controls/CDragValue.h"

namespace quib {

// Pictures of a fader: its thumb, its track, and the track's filled part.
struct FaderPictures {
    int thumb;
    int track;
    int filled;
};
extern const FaderPictures kUprightFader;
extern const FaderPictures kLevelFader;

class CFaderCtrl : public CControl {
public:
    CFaderCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight, CValue* bound,
               bool isVertical);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kSlider; }
    bool HasChanged() const override;

    bool IsDragging() const noexcept { return dragging; }
    // Length of the thumb's way in pixels.
    int Travel() const;
    // The thumb's near end along the axis: its left, or its top.
    float ThumbPosition() const;

    bool detentOn = false;
    float detentValue = 0;
    CValue* secondValue = nullptr;  // -1..1
    bool secondBarOn = false;
    std::function<QString(float)> formatSecond;
    std::function<void(CControl&, float before)> onSecondGesture;  // a drag has changed the second amount
    bool fillFromCentre = false;                                   // the filled part grows from the middle of the range
    QString label;
    FaderPictures pictures;

private:
    enum class ETarget { kSecondDown = 0, kMain = 1, kSecondUp = 2 };

    int ThumbSize() const;
    // Position of the mouse along the axis, growing with the value.
    int Along(int px, int py) const noexcept { return vertical ? -py : px; }
    ETarget TargetAt(int px, int py) const;
    void DragMain(int px, int py);
    void DragSecond(int px, int py);
    void DrawTrack(float thumbStart);
    void DrawSecondBar(float thumbStart);

    bool vertical;
    bool dragging = false;
    ETarget target = ETarget::kMain;
    CDragValue drag;
    float secondStart = 0;
    float secondBefore = 0;
    float drawnSecond = 0;
};

}  // namespace quib
