// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CFilterCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "model/Equalizer.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kMargin = 5;  // pixels about the plot, so that handles stay inside
constexpr double kShownDecibels = 24;
constexpr int kGrabRadius = 14;
constexpr int kKinds = 3;          // of values of a band
constexpr float kUnseen = 0.002F;  // a change of a value that moves nothing by a third of a pixel

QString Frequency(double hertz) {
    return hertz < 1000 ? QStringLiteral("%1 Hz").arg(hertz, 0, 'f', 0)
                        : QStringLiteral("%1 kHz").arg(hertz / 1000, 0, 'f', 2);
}

bool IsSeen(const CFilterCtrl::BandState& before, const CFilterCtrl::BandState& now) {
    const auto differs = [](float from, float to) { return std::abs(to - from) > kUnseen; };
    return differs(before.frequency, now.frequency) || differs(before.resonance, now.resonance) ||
           differs(before.gain, now.gain);
}

}  // namespace

CFilterCtrl::CFilterCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                         CValue* bound, const Bands& bandValues)
    : CControl(window, number, left, top, newWidth, newHeight, bound), bands(bandValues) {
    takesWheel = true;
    holdsParts = true;
    section = ESection::kEqualiser;
    hoverLook = true;
    doubleClickIsClick = false;
}

CFilterCtrl::BandState CFilterCtrl::StateOf(int band) const {
    const FilterBandValues& values = bands[static_cast<std::size_t>(band)];
    return {values.frequency->Get(), values.resonance->Get(), values.gain->Get()};
}

void CFilterCtrl::SetBand(int band, const BandState& state) {
    const FilterBandValues& values = bands[static_cast<std::size_t>(band)];
    values.frequency->Set(std::clamp(state.frequency, 0.0F, 1.0F));
    values.resonance->Set(std::clamp(state.resonance, 0.0F, 1.0F));
    values.gain->Set(std::clamp(state.gain, -1.0F, 1.0F));
    if (onBandChange) onBandChange(band);
    Update(false, true);
    Owner().ShowBubble(*this, BandText(band));
}

QString CFilterCtrl::BandText(int band) const {
    const BandState state = StateOf(band);
    return QStringLiteral("%1   %2 dB   Q %3")
        .arg(Frequency(EqFrequencyHertz(state.frequency)))
        .arg(EqGainDecibels(state.gain), 0, 'f', 1)
        .arg(EqQuality(band, state.resonance), 0, 'f', 2);
}

QPointF CFilterCtrl::HandleOf(int band) const {
    const BandState state = StateOf(band);
    const double share = 0.5 - EqGainDecibels(state.gain) / (2 * kShownDecibels);
    return {X() + kMargin + static_cast<double>(state.frequency) * (Width() - 2 * kMargin),
            Y() + kMargin + share * (Height() - 2 * kMargin)};
}

int CFilterCtrl::NearestBand(int px, int py) const {
    int nearest = -1;
    double shortest = kGrabRadius * kGrabRadius;
    for (int band = 0; band < kEqBandCount; ++band) {
        const QPointF way = HandleOf(band) - QPointF(px, py);
        const double distance = QPointF::dotProduct(way, way);
        if (distance < shortest) {
            shortest = distance;
            nearest = band;
        }
    }
    return nearest;
}

void CFilterCtrl::OnLButtonDown(int px, int py, int button) {
    if (!enabled || button != 0) return;
    dragged = NearestBand(px, py);
    if (dragged < 0) return;
    const FilterBandValues& grabbed = bands[static_cast<std::size_t>(dragged)];
    Hold({grabbed.frequency, grabbed.gain});
    before = dragState = StateOf(dragged);
    dragStart = {px, py};
    dragFine = false;
    if (Owner().IsResetHeld()) return SetBand(dragged, defaults[static_cast<std::size_t>(dragged)]);
    Update(false, true);
    Owner().ShowBubble(*this, BandText(dragged));
}

void CFilterCtrl::OnMouseMove(int px, int py) {
    if (!enabled) return;
    if (dragged < 0) {
        const int near = NearestBand(px, py);
        Owner().setCursor(near >= 0 ? Qt::SizeAllCursor : Qt::ArrowCursor);
        if (near != lit) {
            lit = near;
            Update(false, true);
        }
        return;
    }
    if (Owner().IsFine() != dragFine) {
        dragFine = Owner().IsFine();
        dragState = StateOf(dragged);
        dragStart = {px, py};
    }
    const float share = dragFine ? 0.1F : 1.0F;
    const auto across = static_cast<float>(px - dragStart.x()) * share / static_cast<float>(Width() - 2 * kMargin);
    const auto up = static_cast<float>(dragStart.y() - py) * share / static_cast<float>(Height() - 2 * kMargin);
    BandState next = dragState;
    next.frequency += across;
    next.gain += up * static_cast<float>(2 * kShownDecibels / EqGainDecibels(1));
    SetBand(dragged, next);
}

void CFilterCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    const int band = std::exchange(dragged, -1);
    if (band >= 0 && onBandGesture && StateOf(band) != before) onBandGesture(band, before);
    Update(false, true);
}

void CFilterCtrl::OnDoubleClick(int px, int py) {
    const int band = NearestBand(px, py);
    if (band < 0 || !enabled) return;
    ChangeBand(band, defaults[static_cast<std::size_t>(band)]);
}

void CFilterCtrl::OnMouseWheel(int px, int py, std::uint32_t word) {
    const int band = NearestBand(px, py);
    if (band < 0 || !enabled) return;
    BandState next = StateOf(band);
    next.resonance += NotchesOf(word) * ((word & kWheelControl) != 0 ? 0.001F : 0.01F);
    ChangeBand(band, next);
}

void CFilterCtrl::ChangeBand(int band, const BandState& state) {
    const FilterBandValues& moved = bands[static_cast<std::size_t>(band)];
    const BandState old = StateOf(band);
    Hold({moved.frequency, moved.resonance, moved.gain});
    SetBand(band, state);
    Hold({});
    if (onBandGesture && StateOf(band) != old) onBandGesture(band, old);
}

// --- Without the mouse ------------------------------------------------------------------------------------

ControlPart CFilterCtrl::PartAt(int part) const {
    const int band = part / kKinds;
    const BandState state = StateOf(band);
    const std::array<QString, kKinds> values = {
        Frequency(EqFrequencyHertz(state.frequency)),
        QStringLiteral("%1 dB").arg(EqGainDecibels(state.gain), 0, 'f', 1),
        QStringLiteral("Q %1").arg(EqQuality(band, state.resonance), 0, 'f', 2),
    };
    const auto kind = static_cast<std::size_t>(part % kKinds);
    constexpr std::array kNames = {TextKey("Band %1, frequency"), TextKey("Band %1, gain"),
                                   TextKey("Band %1, resonance")};
    constexpr int kHandle = 12;
    QRect area(0, 0, kHandle, kHandle);
    area.moveCenter(HandleOf(band).toPoint());
    return {Text(kNames[kind]).arg(band + 1), values[kind], area, false, true};
}

void CFilterCtrl::Turn(int part, int notches, bool fine) {
    constexpr std::array kWhich = {&BandState::frequency, &BandState::gain, &BandState::resonance};
    if (part < 0) return;
    BandState next = StateOf(part / kKinds);
    next.*kWhich[static_cast<std::size_t>(part % kKinds)] += static_cast<float>(notches) * (fine ? 0.001F : 0.01F);
    ChangeBand(part / kKinds, next);
}

void CFilterCtrl::ResetPart(int part) {
    if (part >= 0) ChangeBand(part / kKinds, defaults[static_cast<std::size_t>(part / kKinds)]);
}

void CFilterCtrl::OnMouseLeave() {
    Owner().unsetCursor();
    if (lit < 0) return;
    lit = -1;
    Update(false, true);
}

bool CFilterCtrl::HasChanged() const {
    bool changed = drawnOn != (Value() != nullptr && Value()->IsOn());
    for (int band = 0; band < kEqBandCount; ++band) {
        changed = changed || IsSeen(drawn[static_cast<std::size_t>(band)], StateOf(band));
    }
    return changed;
}

void CFilterCtrl::Draw() {
    drawnOn = Value() != nullptr && Value()->IsOn();
    Canvas().Fill(Rectangle(), backgroundColour);
    Canvas().FillRound(Rectangle(), 3, Palette().Colour(QStringLiteral("glass")));
    DrawGrid();
    DrawCurve(drawnOn);
    for (int band = 0; band < kEqBandCount; ++band) {
        drawn[static_cast<std::size_t>(band)] = StateOf(band);
        const bool strong = band == dragged || (band == lit && dragged < 0);
        const QRgb colour = drawnOn ? Palette().Accent(section) : Palette().Colour(QStringLiteral("textDim"));
        Canvas().Ellipse(HandleOf(band), strong ? 5 : 3.5, strong ? Palette().Colour(QStringLiteral("text")) : colour);
        Canvas().Ellipse(HandleOf(band), strong ? 3.5 : 2, strong ? colour : Palette().Colour(QStringLiteral("glass")));
    }
    Canvas().Frame(Rectangle(), 3, Palette().Colour(QStringLiteral("line")));
}

// Lines at 0, +-12 decibels and at 100, 1000 and 10000 hertz.
void CFilterCtrl::DrawGrid() {
    const QRgb colour = Palette().Colour(QStringLiteral("well"));
    for (const double decibels : {-12.0, 0.0, 12.0}) {
        const double place = Y() + kMargin + (0.5 - decibels / (2 * kShownDecibels)) * (Height() - 2 * kMargin);
        Canvas().Line(X() + 1, place, X() + Width() - 1, place,
                      decibels == 0 ? Palette().Colour(QStringLiteral("line")) : colour);
    }
    for (const double hertz : {100.0, 1000.0, 10000.0}) {
        const double place = X() + kMargin + std::log(hertz / 20) / std::log(800.0) * (Width() - 2 * kMargin);
        Canvas().Line(place, Y() + 1, place, Y() + Height() - 1, colour);
    }
}

void CFilterCtrl::DrawCurve(bool on) {
    const double rate = sampleRate ? sampleRate() : 44100.0;
    std::array<EqBandUpdate, kEqBandCount> filters;
    for (int band = 0; band < kEqBandCount; ++band) {
        const BandState state = StateOf(band);
        filters[static_cast<std::size_t>(band)] =
            DesignEqBand(band, state.frequency, state.resonance, state.gain, rate);
    }
    std::vector<QPointF> points;
    const int columns = Width() - 2 * kMargin;
    for (int column = 0; column <= columns; column += 2) {
        const double hertz =
            std::min(EqFrequencyHertz(static_cast<float>(column) / static_cast<float>(columns)), rate * 0.49);
        double decibels = 0;
        for (const EqBandUpdate& filter : filters) decibels += EqResponseDecibels(filter, hertz, rate);
        const double share = 0.5 - std::clamp(decibels, -kShownDecibels, kShownDecibels) / (2 * kShownDecibels);
        points.emplace_back(X() + kMargin + column, Y() + kMargin + share * (Height() - 2 * kMargin));
    }
    const QRgb accent = on ? Palette().Accent(section) : Palette().Colour(QStringLiteral("textDim"));
    const QRgb ground = WithOpacity(accent, on ? 0.18F : 0.08F);
    const double zero = Y() + Height() / 2.0;
    for (std::size_t index = 0; index + 1 < points.size(); ++index) {
        for (const double way : {0.25, 0.75}) {
            const double curve = points[index].y() + way * (points[index + 1].y() - points[index].y());
            const double left = points[index].x() + (way < 0.5 ? 0 : 1);
            Canvas().Fill({left, std::min(curve, zero), 1, std::abs(curve - zero)}, ground);
        }
    }
    Canvas().Polyline(points, accent, on ? 1.6 : 1.2);
}

void CFilterCtrl::ListLearnable(std::vector<Learnable>& parts) const {
    const int across = Width() / kEqBandCount;
    const int down = Height() / 3;
    for (int band = 0; band < kEqBandCount; ++band) {
        for (int number = 0; number < 3; ++number) {
            const auto& target = bandLearns[static_cast<std::size_t>(band)][static_cast<std::size_t>(number)];
            const QRect area(X() + band * across, Y() + number * down, across - 1, down - 1);
            if (target) parts.push_back({area.intersected(ShownRectangle()), *target});
        }
    }
}

}  // namespace quib
