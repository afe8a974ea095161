// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CLoopWaveCtrl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/CWinControl.h"
#include "editors/panel/PanelLook.h"
#include "export/BeatsOfBar.h"
#include "export/SoundClip.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kRuler = 20;
constexpr int kEdge = 4;
}  // namespace

CLoopWaveCtrl::CLoopWaveCtrl(CWinControl& window, const QRect& place, const CPlugin& loopPlayer)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()), CTicked(window), player(loopPlayer) {}

void CLoopWaveCtrl::Show(const LoopEntry& loop, const QString& file) {
    shown = loop;
    strokes = LoopStrokes(player, loop);
    ReadPeaks(file);
    Update(false, true);
}

void CLoopWaveCtrl::ReadPeaks(const QString& file) {
    peaks.clear();
    SoundClip sound;
    std::string error;
    if (file.isEmpty() || !ReadClip(file.toStdString(), sound, error)) return;
    const std::vector<float> mono = MonoOf(sound);
    const auto count = static_cast<std::size_t>(std::max(1, Width() - 2 * kEdge));
    for (std::size_t pixel = 0; pixel < count; ++pixel) {
        const auto from = mono.begin() + static_cast<std::ptrdiff_t>(mono.size() * pixel / count);
        const auto to = mono.begin() + static_cast<std::ptrdiff_t>(mono.size() * (pixel + 1) / count);
        if (from == to) continue;
        const auto [low, high] = std::minmax_element(from, to);
        peaks.push_back({*low, *high});
    }
    float loudest = 1e-6F;
    for (const Peak& peak : peaks) loudest = std::max({loudest, -peak.low, peak.high});
    for (Peak& peak : peaks) peak = {peak.low / loudest, peak.high / loudest};
}

qreal CLoopWaveCtrl::PlaceOf(double at) const {
    return X() + kEdge + at / std::max(1.0, static_cast<double>(shown.frames)) * (Width() - 2 * kEdge);
}

void CLoopWaveCtrl::Tick() {
    const int now = shown.frames > 0 ? LoopFrame(player, shown) : -1;
    if (std::exchange(frame, now) != now) Update(false, true);
}

void CLoopWaveCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF area(Rectangle());
    DrawGlass(Canvas(), area, 1);
    if (shown.frames <= 0) return;
    const QRectF wave = area.adjusted(kEdge, kRuler, -kEdge, -kEdge);
    const int beats = std::max(1, static_cast<int>(std::lround(shown.beats)));
    const int each = beats > 16 ? kBeatsOfBar : 1;
    for (int beat = 0; beat < beats; beat += each) {
        const qreal left = std::floor(PlaceOf(shown.frames * static_cast<double>(beat) / shown.beats));
        const bool bar = beat % kBeatsOfBar == 0;
        Canvas().Line(left, area.top() + (bar ? 2 : 12), left, area.bottom() - 1,
                      Colour(bar ? "glassLine" : "glassGrid"));
        Canvas().Text(QRectF(left + 3, area.top() + 2, 40, 14),
                      QStringLiteral("%1.%2").arg(beat / kBeatsOfBar + 1).arg(beat % kBeatsOfBar + 1),
                      Colour(bar ? "text" : "textMuted"), 10, Qt::AlignLeft | Qt::AlignVCenter, bar);
    }
    const qreal middle = wave.center().y();
    const qreal half = wave.height() / 2 - 2;
    const qreal head = frame >= 0 ? PlaceOf(frame) : area.left();
    for (std::size_t pixel = 0; pixel < peaks.size(); ++pixel) {
        const qreal left = wave.left() + static_cast<qreal>(pixel) * wave.width() / static_cast<qreal>(peaks.size());
        const qreal top = middle - static_cast<qreal>(peaks[pixel].high) * half;
        const qreal bottom = middle - static_cast<qreal>(peaks[pixel].low) * half;
        Canvas().Fill(QRectF(left, top, 1, std::max(1.0, bottom - top)),
                      left < head ? Colour("played") : Palette().Accent(section));
    }
    const QRgb flag = Palette().Accent(ESection::kMix);
    for (const int stroke : strokes) {
        const qreal left = std::floor(PlaceOf(stroke));
        Canvas().Line(left, wave.top(), left, wave.bottom(), WithOpacity(flag, 0.7F));
        const QPointF corner[] = {{left, wave.top()}, {left + 6, wave.top()}, {left, wave.top() + 6}};
        Canvas().Polygon(corner, flag);
    }
    if (frame >= 0) Canvas().Line(head, area.top() + 1, head, area.bottom() - 1, Colour("text"), 2);
}

}  // namespace quib
