// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/loopcreator/CWaveCtrl.h"

#include <cmath>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/VirtualKeys.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kRuler = 22;
constexpr double kCatch = 5;  // skin pixels round an end of the loop

}  // namespace

CWaveCtrl::CWaveCtrl(CWinControl& window, int left, int top, int wide, int high, bool isOverview)
    : CControl(window, 0U, left, top, wide, high), overview(isOverview) {
    takesWheel = !isOverview;
    section = ESection::kPattern;
}

void CWaveCtrl::SetView(double firstFrame, double frames) {
    const auto whole = static_cast<double>(std::max<std::int64_t>(1, shown.frames));
    span = std::clamp(frames, 64.0, whole);
    first = std::clamp(firstFrame, 0.0, std::max(0.0, whole - span));
}

void CWaveCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour("glass"));
    if (!shown.message.isEmpty()) return Canvas().Text(QRectF(Rectangle()), shown.message, Colour("textMuted"), 13);
    if (!shown.peaks) return;
    if (overview) SetView(0, static_cast<double>(shown.frames));
    for (const auto& [start, length] : shown.others) {
        const double left = PlaceOf(static_cast<double>(start));
        const QRectF area(left, Y(), PlaceOf(static_cast<double>(start + length)) - left, Height());
        Canvas().Fill(area.intersected(QRectF(Rectangle())), Mix(Colour("glass"), Colour("pattern"), 0.25F));
    }
    if (!overview) DrawBeats();
    DrawWave();
    DrawLoop();
    if (overview && shown.viewFrames > 0) {
        const double left = PlaceOf(static_cast<double>(shown.viewFirst));
        const double wide = std::max(4.0, PlaceOf(static_cast<double>(shown.viewFirst + shown.viewFrames)) - left);
        Canvas().Frame(QRectF(left, Y(), wide, Height()), 2, Colour("text"), 2);
    }
    if (shown.playhead >= 0) {
        Canvas().Fill(QRectF(PlaceOf(static_cast<double>(shown.playhead)), Y(), 2, Height()), Colour("transport"));
    }
}

void CWaveCtrl::DrawBeats() {
    Canvas().Fill(QRectF(X(), Y(), Width(), kRuler), Colour("wellDeep"));
    if (shown.tempo <= 0) return;
    const double beat = 60.0 / shown.tempo * shown.sampleRate;
    const double origin = shown.downbeat * shown.sampleRate;
    const double wide = beat / span * Width();
    for (double index = std::ceil((first - origin) / beat); origin + index * beat < first + span; ++index) {
        const auto number = static_cast<long>(index);
        const bool isBar = number % 4 == 0;
        if (wide < 5 && !isBar) continue;
        if (4 * wide < 5) break;
        const double left = PlaceOf(origin + index * beat);
        Canvas().Fill(QRectF(left, Y(), 1, Height()), Colour(isBar ? "gridBeat" : "gridStep"));
        if (number < 0 || (wide < 40 && !isBar) || 4 * wide < 40) continue;
        Canvas().Text(QRectF(left + 4, Y(), 60, kRuler),
                      QStringLiteral("%1.%2").arg(number / 4 + 1).arg(number % 4 + 1),
                      Colour(isBar ? "text" : "textMuted"), 11, Qt::AlignLeft | Qt::AlignVCenter, isBar);
    }
}

void CWaveCtrl::DrawWave() {
    const int ruler = overview ? 0 : kRuler;
    const double middle = Y() + ruler + (Height() - ruler) / 2.0;
    const double half = (Height() - ruler) / 2.0 - 2;
    const QRgb plain = Colour("textOff");
    const QRgb marked = Colour("pattern");
    for (int column = 0; column < Width(); ++column) {
        const auto from = static_cast<std::int64_t>(FrameAt(X() + column));
        const auto to = std::max(from + 1, static_cast<std::int64_t>(FrameAt(X() + column + 1)));
        if (from >= shown.frames) break;
        const CWavePeaks::Span span_ = shown.peaks->Of(from, to);
        const bool inside = from >= shown.start && from < shown.start + shown.length;
        const double top = middle - half * std::min(1.0F, span_.high);
        const double foot = middle - half * std::max(-1.0F, span_.low);
        Canvas().Fill(QRectF(X() + column, top, 1, std::max(1.0, foot - top)), inside ? marked : plain);
    }
}

void CWaveCtrl::DrawLoop() {
    if (shown.length <= 0 || overview) return;
    if (shown.strokes != nullptr) {
        for (const std::int64_t stroke : *shown.strokes) {
            const double left = PlaceOf(static_cast<double>(stroke));
            if (left < X() || left > X() + Width()) continue;
            Canvas().Fill(QRectF(left, Y() + kRuler, 1, Height() - kRuler), Mix(Colour("glass"), Colour("mix"), 0.6F));
            const std::array<QPointF, 3> flag = {QPointF(left, Y() + Height() - 8), QPointF(left + 8, Y() + Height()),
                                                 QPointF(left, Y() + Height())};
            Canvas().Polygon(flag, Colour("mix"));
        }
    }
    for (const std::int64_t end : {shown.start, shown.start + shown.length}) {
        const double left = PlaceOf(static_cast<double>(end));
        if (left < X() || left > X() + Width()) continue;
        Canvas().Fill(QRectF(left - 1, Y(), 2, Height()), Colour("text"));
        Canvas().Fill(QRectF(end == shown.start ? left : left - 12, Y() + kRuler, 12, 16), Colour("text"));
    }
    const double seconds = static_cast<double>(shown.length) / shown.sampleRate;
    const QString told = Text("%1 s, %2 frames").arg(seconds, 0, 'f', 3).arg(shown.length);
    const double left = std::max<double>(X(), PlaceOf(static_cast<double>(shown.start)));
    const double right = std::min<double>(X() + Width(), PlaceOf(static_cast<double>(shown.start + shown.length)));
    if (right - left < 160) return;
    const QRectF bubble((left + right) / 2 - 80, Y() + kRuler + 8, 160, 20);
    Canvas().Box(bubble, 3, Colour("wellDeep"), Colour("pattern"));
    Canvas().Text(bubble, told, Colour("text"), 11);
}

void CWaveCtrl::OnLButtonDown(int px, int /*py*/, int button) {
    if (button != 0 || !shown.peaks) return;
    dragFrame = FrameAt(px);
    dragStart = static_cast<double>(shown.start);
    const double start = PlaceOf(static_cast<double>(shown.start));
    const double end = PlaceOf(static_cast<double>(shown.start + shown.length));
    if (overview) {
        drag = EDrag::kView;
        OnMouseMove(px, 0);
    } else if (std::abs(px - start) < kCatch) {
        drag = EDrag::kStart;
    } else if (std::abs(px - end) < kCatch) {
        drag = EDrag::kEnd;
    } else {
        drag = px > start && px < end ? EDrag::kMove : EDrag::kDraw;
    }
}

void CWaveCtrl::OnMouseMove(int px, int /*py*/) {
    const double frame = FrameAt(px);
    const bool snap = !Owner().IsAltHeld();
    const double end = static_cast<double>(shown.start + shown.length);
    if (drag == EDrag::kView && onView) onView(frame - static_cast<double>(shown.viewFrames) / 2);
    if (drag == EDrag::kMove && onMove) onMove(dragStart + frame - dragFrame, snap);
    if (drag == EDrag::kStart && onDraw) onDraw(frame, end, snap);
    if (drag == EDrag::kEnd && onDraw) onDraw(static_cast<double>(shown.start), frame, snap);
    const bool moved = std::abs(PlaceOf(frame) - PlaceOf(dragFrame)) > 3;
    if (drag == EDrag::kDraw && onDraw && moved) onDraw(std::min(dragFrame, frame), std::max(dragFrame, frame), snap);
}

// A click without a drag puts the loop there.
void CWaveCtrl::OnLButtonUp(int px, int /*py*/, int /*button*/) {
    const bool moved = std::abs(PlaceOf(FrameAt(px)) - PlaceOf(dragFrame)) > 3;
    if (drag == EDrag::kDraw && !moved && onMove) onMove(FrameAt(px), !Owner().IsAltHeld());
    drag = EDrag::kNone;
}

void CWaveCtrl::OnMouseWheel(int px, int /*py*/, std::uint32_t word) {
    const double notches = static_cast<double>(NotchesOf(word));
    if ((word & kWheelShift) != 0) {
        SetView(first - notches * span / 8, span);
    } else {
        const double held = FrameAt(px);
        const double share = (held - first) / span;
        const double next = span * std::pow(0.8, notches);
        SetView(held - share * next, next);
    }
    Refresh();
    if (onScrolled) onScrolled();
}

}  // namespace quib
