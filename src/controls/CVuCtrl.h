// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A level meter in decibels with falling bar, held peak and a clip mark that a click clears. Shows one
// or two channels. User-interface thread; the peaks are written by the render thread.

#include <array>

#include "controls/CControl.h"
#include "controls/CPalette.h"

namespace quib {

// Place of a level (1 is full scale) on the meter's scale of -60 to +6 decibels, 0..1.
float MeterShare(float level) noexcept;

// What a meter is drawn with.
struct MeterColours {
    static MeterColours Of(const CPalette& palette);

    QRgb well = 0;
    QRgb held = 0;
    std::array<QRgb, 3> lit{};  // low, middle, high
    std::array<QRgb, 3> unlit{};
    std::array<QRgb, 2> clip{};  // not clipped, clipped
};

class CVuCtrl : public CControl, public CTicked {
public:
    // `bound` is the only or the left channel's peak; `right` may be null.
    CVuCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight, CValue* bound,
            CValue* right, bool isVertical);

    void Draw() override;
    // Instead of the level: why there is none. Empty: the level again. Drawn with the next tick.
    void SetReason(const QString& text);
    // Decibels of the highest level that is held; -60 where there is none.
    float HeldPeak() const noexcept;
    void OnLButtonDown(int px, int py, int button) override;
    void Tick() override;
    ERole Role() const override { return ERole::kMeter; }
    void Activate(int /*part*/) override { OnLButtonDown(X(), Y(), 0); }
    QString SpokenValue() const override;

    bool IsClipped() const noexcept { return channels[0].clipped || channels[1].clipped; }

private:
    struct Channel {
        CValue* source = nullptr;
        float shown = 0;  // shares of the scale
        float held = 0;
        int heldTicks = 0;
        bool clipped = false;
        int drawnShown = 0;  // places
        int drawnHeld = 0;
    };
    void Follow(Channel& channel);
    // Pixels along the meter, from its quiet end.
    void RedrawPart(const Channel& channel, int from, int to);
    QRectF AreaOf(const Channel& channel) const;
    void DrawReason(const QRectF& area);
    void DrawChannel(const Channel& channel, const QRectF& area);
    int Length() const noexcept { return vertical ? Height() : Width(); }
    // Pixels from its quiet end; the mark of a clip lies beyond those of the scale.
    int PlaceOf(float share) const noexcept;

    std::array<Channel, 2> channels;
    MeterColours colours;
    QString reason;
    bool stale = false;
    bool vertical;
};

}  // namespace quib
