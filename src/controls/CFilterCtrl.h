// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The equaliser's curve with a handle for each band: dragged sideways for the frequency, up and down for
// the gain; the wheel sets the resonance. Draws the true response of the filters that play.
// User-interface thread.

#include <QPointF>
#include <array>

#include "controls/CControl.h"
#include "model/StripLimits.h"

namespace quib {

// The values of one band, as the channel strip holds them.
struct FilterBandValues {
    CValue* frequency = nullptr;  // 0..1
    CValue* resonance = nullptr;  // 0..1
    CValue* gain = nullptr;       // -1..1
};

class CFilterCtrl : public CControl {
public:
    using Bands = std::array<FilterBandValues, kEqBandCount>;

    // `bound` is the switch of the equaliser.
    CFilterCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                CValue* bound, const Bands& bandValues);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnDoubleClick(int px, int py) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;

    bool HasChanged() const override;
    // A field for each number: bands from left to right, frequency, resonance and gain from the top.
    void ListLearnable(std::vector<Learnable>& parts) const override;
    std::array<std::array<std::optional<ControlTarget>, 3>, kEqBandCount> bandLearns;
    // Three to a band: frequency, gain, resonance.
    ERole Role() const override { return ERole::kChoice; }
    int PartCount() const override { return kEqBandCount * 3; }
    ControlPart PartAt(int part) const override;
    void Activate(int /*part*/) override {}
    void Turn(int part, int notches, bool fine) override;
    void ResetPart(int part) override;
    // Redraws when any of the values is another than the one drawn.
    void RedrawIfChanged() { RefreshIfChanged(); }

    std::function<double()> sampleRate;  // hertz
    std::function<void(int band)> onBandChange;
    struct BandState {
        float frequency = 0, resonance = 0, gain = 0;
        friend bool operator==(const BandState&, const BandState&) = default;
    };
    std::function<void(int band, const BandState& before)> onBandGesture;
    BandState StateOf(int band) const;
    // The default of each band, for double click.
    std::array<BandState, kEqBandCount> defaults{};

private:
    QPointF HandleOf(int band) const;
    int NearestBand(int px, int py) const;
    void SetBand(int band, const BandState& state);
    // The same as a gesture of its own.
    void ChangeBand(int band, const BandState& state);
    void DrawGrid();
    void DrawCurve(bool on);
    QString BandText(int band) const;

    Bands bands;
    int dragged = -1;
    int lit = -1;
    BandState before;
    QPoint dragStart;
    BandState dragState;
    bool dragFine = false;
    std::array<BandState, kEqBandCount> drawn{};
    bool drawnOn = false;
};

}  // namespace quib
