// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The picture of the rhythm detector: envelope, threshold, hits, beats and the downbeat. The threshold and the
// downbeat are dragged; the wheel scrolls, with Ctrl it zooms. User-interface thread.

#include <functional>
#include <memory>
#include <vector>

#include "controls/CControl.h"
#include "export/rhythm/RhythmHits.h"

namespace quib {

class CEnvelopeCtrl : public CControl {
public:
    CEnvelopeCtrl(CWinControl& window, int left, int top);

    struct Shown {
        const std::vector<float>* levels = nullptr;  // dB, one each CRhythmEnvelope::kHop
        const std::vector<RhythmHit>* hits = nullptr;
        double threshold = -30;  // dB
        double tempo = 0;        // BPM; 0: no beats
        double downbeat = 0;     // seconds
        double playhead = -1;    // seconds; below 0: none
        QString message;         // instead of all
    };
    void Show(const Shown& next) { shown = next; }
    double First() const noexcept { return first; }
    double Seconds() const { return span; }
    void ShowFrom(double seconds) { first = seconds; }
    void ShowAll(double seconds);

    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnDoubleClick(int px, int py) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void Resize(int newWidth, int newHeight) override;

    std::function<void(double decibels, bool done)> onThreshold;
    std::function<void(double seconds)> onDownbeat;

private:
    enum class EDrag { kNone, kThreshold, kDownbeat, kView };
    double TimeAt(int px) const { return first + span * (px - X()) / std::max(1, Width()); }
    double PlaceOf(double seconds) const { return X() + (seconds - first) / span * Width(); }
    double HeightOf(double decibels) const;
    double LevelAt(int py) const;
    void DrawBeats();
    void DrawEnvelope();
    void DrawHits();
    void Clamp();

    Shown shown;
    double first = 0;  // seconds at the left edge
    double span = 8;   // seconds in sight
    double length = 0;
    EDrag drag = EDrag::kNone;
    int dragFrom = 0;
    double dragFirst = 0;
};

}  // namespace quib
