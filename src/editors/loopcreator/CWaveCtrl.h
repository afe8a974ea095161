// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A sound with its beats and strokes and the marked loop in it. Inside the loop a drag moves it, at its ends
// it makes it longer or shorter, elsewhere it begins it anew; the wheel zooms at the mouse, with Shift it scrolls.
// User-interface thread.

#include <functional>
#include <memory>
#include <vector>

#include "controls/CControl.h"
#include "editors/loopcreator/CWavePeaks.h"

namespace quib {

class CWaveCtrl : public CControl {
public:
    // An overview shows everything and moves the view of another one.
    CWaveCtrl(CWinControl& window, int left, int top, int width, int height, bool isOverview);

    struct Shown {
        std::shared_ptr<const CWavePeaks> peaks;
        std::int64_t frames = 0;
        int sampleRate = 44100;
        double tempo = 0;                                           // BPM; 0: no beats
        double downbeat = 0;                                        // seconds
        std::int64_t start = 0, length = 0;                         // the marked loop
        const std::vector<std::int64_t>* strokes = nullptr;         // frames
        std::vector<std::pair<std::int64_t, std::int64_t>> others;  // loops of the list: start, length
        std::int64_t playhead = -1;                                 // frame; below 0: none
        std::int64_t viewFirst = 0, viewFrames = 0;                 // of the other one, for an overview
        QString message;                                            // instead of all
    };
    void Show(Shown next) { shown = std::move(next); }
    double First() const noexcept { return first; }
    double Frames() const noexcept { return span; }
    void SetView(double firstFrame, double frames);

    void Draw() override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void Resize(int newWidth, int newHeight) override { SetSize(newWidth, newHeight); }

    // The start that the mouse wants for the loop, in frames; whether it is to snap.
    std::function<void(double start, bool snap)> onMove;
    std::function<void(double start, double end, bool snap)> onDraw;
    std::function<void(double firstFrame)> onView;
    std::function<void()> onScrolled;

private:
    enum class EDrag { kNone, kMove, kStart, kEnd, kDraw, kView };
    double FrameAt(int px) const { return first + span * (px - X()) / std::max(1, Width()); }
    double PlaceOf(double frame) const { return X() + (frame - first) / std::max(1.0, span) * Width(); }
    void DrawBeats();
    void DrawWave();
    void DrawLoop();

    Shown shown;
    bool overview;
    double first = 0;
    double span = 1;
    EDrag drag = EDrag::kNone;
    double dragFrame = 0;
    double dragStart = 0;
};

}  // namespace quib
