// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/rhythm/CEnvelopeCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/VirtualKeys.h"
#include "export/BeatsOfBar.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kRuler = 20;
constexpr int kBars = 34;  // below the envelope: how strong the hits are
constexpr double kLowest = -60;
constexpr double kCatch = 6;  // skin pixels round what can be dragged

}  // namespace

CEnvelopeCtrl::CEnvelopeCtrl(CWinControl& window, int left, int top) : CControl(window, 0U, left, top, 966, 232) {
    takesWheel = true;
    section = ESection::kKeyboard;
}

void CEnvelopeCtrl::Resize(int newWidth, int newHeight) { SetSize(newWidth, newHeight); }

void CEnvelopeCtrl::ShowAll(double seconds) {
    length = seconds;
    first = 0;
    span = std::clamp(seconds, 1.0, 8.0);
}

double CEnvelopeCtrl::HeightOf(double decibels) const {
    const double high = Height() - kRuler - kBars;
    return Y() + kRuler + high * std::clamp(decibels / kLowest, 0.0, 1.0);
}

double CEnvelopeCtrl::LevelAt(int py) const {
    const double high = Height() - kRuler - kBars;
    return std::clamp(kLowest * (py - Y() - kRuler) / high, kLowest + 1, 0.0);
}

void CEnvelopeCtrl::Clamp() {
    const double end =
        shown.levels != nullptr ? static_cast<double>(shown.levels->size()) * CRhythmEnvelope::kHop : length;
    first = std::clamp(first, 0.0, std::max(0.0, end - span / 2));
}

void CEnvelopeCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour("glass"));
    if (!shown.message.isEmpty()) {
        return Canvas().Text(QRectF(Rectangle()), shown.message, Colour("textMuted"), 13);
    }
    DrawBeats();
    DrawEnvelope();
    DrawHits();
    const double line = HeightOf(shown.threshold);
    Canvas().Fill(QRectF(X(), line - 1, Width(), 2), Colour("pattern"));
    const QRectF mark(X() + Width() - 66, line - 9, 60, 18);
    Canvas().FillRound(mark, 3, Colour("pattern"));
    Canvas().Text(mark, QStringLiteral("%1 dB").arg(shown.threshold, 0, 'f', 1), Colour("ink"), 11, Qt::AlignCenter,
                  true);
    if (shown.playhead >= 0) Canvas().Fill(QRectF(PlaceOf(shown.playhead), Y(), 2, Height()), Colour("text"));
}

void CEnvelopeCtrl::DrawBeats() {
    Canvas().Fill(QRectF(X(), Y(), Width(), kRuler), Colour("wellDeep"));
    if (shown.tempo <= 0) return;
    const double beat = 60.0 / shown.tempo;
    const double wide = beat / span * Width();
    const auto begin = static_cast<long>(std::floor((first - shown.downbeat) / beat));
    for (long index = begin; shown.downbeat + static_cast<double>(index) * beat < first + span; ++index) {
        const double left = PlaceOf(shown.downbeat + static_cast<double>(index) * beat);
        const bool isBar = index % kBeatsOfBar == 0;
        if (left < X() || (wide < 6 && !isBar)) continue;
        Canvas().Fill(QRectF(left, Y(), 1, Height()), Colour(isBar ? "gridBeat" : "gridStep"));
        if (index < 0 || (wide < 40 && !isBar) || wide * kBeatsOfBar < 36) continue;
        const QString place = QStringLiteral("%1.%2").arg(index / 4 + 1).arg(index % 4 + 1);
        Canvas().Text(QRectF(left + 4, Y(), 60, kRuler), place, Colour(isBar ? "text" : "textMuted"), 11,
                      Qt::AlignLeft | Qt::AlignVCenter, isBar);
    }
    const double flag = PlaceOf(shown.downbeat);
    if (flag < X() || flag > X() + Width()) return;
    Canvas().Fill(QRectF(flag, Y(), 2, Height()), Colour("transport"));
    const QRectF label(flag, Y() + Height() - 20, 70, 18);
    Canvas().FillRound(label, 3, Colour("transport"));
    Canvas().Text(label, Text("downbeat"), Colour("ink"), 11);
}

void CEnvelopeCtrl::DrawEnvelope() {
    if (shown.levels == nullptr) return;
    const double foot = Y() + Height() - kBars;
    const QRgb accent = Palette().Accent(section);
    const QRgb fill = Mix(Colour("glass"), accent, 0.3F);
    const auto count = static_cast<long>(shown.levels->size());
    for (int column = 0; column < Width(); ++column) {
        const auto from = static_cast<long>(TimeAt(X() + column) / CRhythmEnvelope::kHop);
        const auto to = std::max(from + 1, static_cast<long>(TimeAt(X() + column + 1) / CRhythmEnvelope::kHop));
        if (from < 0 || from >= count) continue;
        const float loudest =
            *std::max_element(shown.levels->begin() + from, shown.levels->begin() + std::min(to, count));
        const double top = HeightOf(static_cast<double>(loudest));
        Canvas().Fill(QRectF(X() + column, top, 1, foot - top), fill);
        Canvas().Fill(QRectF(X() + column, top, 1, 2), accent);
    }
}

void CEnvelopeCtrl::DrawHits() {
    if (shown.hits == nullptr) return;
    const double foot = Y() + Height() - 2;
    Canvas().Fill(QRectF(X(), Y() + Height() - kBars, Width(), kBars), Colour("wellDeep"));
    const auto begin = std::lower_bound(shown.hits->begin(), shown.hits->end(), first,
                                        [](const RhythmHit& hit, double time) { return hit.time < time; });
    for (auto hit = begin; hit != shown.hits->end() && hit->time < first + span; ++hit) {
        const double left = PlaceOf(hit->time);
        const double high = (kBars - 6) * hit->velocity / 127.0;
        Canvas().Fill(QRectF(left, Y() + kRuler, 1, Height() - kRuler - kBars), Colour("pattern"));
        Canvas().Fill(QRectF(left - 2, foot - high, 5, high), Colour("pattern"));
    }
}

void CEnvelopeCtrl::OnLButtonDown(int px, int py, int button) {
    if (button != 0) return;
    drag = EDrag::kView;
    if (std::abs(py - HeightOf(shown.threshold)) < kCatch) drag = EDrag::kThreshold;
    if (shown.tempo > 0 && std::abs(px - PlaceOf(shown.downbeat)) < kCatch) drag = EDrag::kDownbeat;
    dragFrom = px;
    dragFirst = first;
}

void CEnvelopeCtrl::OnMouseMove(int px, int py) {
    if (drag == EDrag::kThreshold && onThreshold) onThreshold(LevelAt(py), false);
    if (drag == EDrag::kDownbeat && onDownbeat) onDownbeat(std::max(0.0, TimeAt(px)));
    if (drag != EDrag::kView) return;
    first = dragFirst - span * (px - dragFrom) / std::max(1, Width());
    Clamp();
    Refresh();
}

void CEnvelopeCtrl::OnLButtonUp(int /*px*/, int py, int /*button*/) {
    if (drag == EDrag::kThreshold && onThreshold) onThreshold(LevelAt(py), true);
    drag = EDrag::kNone;
}

// The beat that is nearest becomes the first of a bar.
void CEnvelopeCtrl::OnDoubleClick(int px, int /*py*/) {
    if (shown.tempo <= 0 || !onDownbeat) return;
    const double beat = 60.0 / shown.tempo;
    const double index = std::round((TimeAt(px) - shown.downbeat) / beat);
    const double bar = kBeatsOfBar * beat;
    const double place = shown.downbeat + index * beat;
    onDownbeat(place - std::floor(place / bar) * bar);
}

void CEnvelopeCtrl::OnMouseWheel(int px, int /*py*/, std::uint32_t word) {
    const double notches = static_cast<double>(NotchesOf(word));
    if ((word & kWheelControl) != 0) {
        const double held = TimeAt(px);
        const double share = (held - first) / span;
        span = std::clamp(span * std::pow(0.8, notches), 0.25, 600.0);
        first = held - share * span;
    } else {
        first -= notches * span / 8;
    }
    Clamp();
    Refresh();
}

}  // namespace quib
