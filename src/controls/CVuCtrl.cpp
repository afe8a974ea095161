// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CVuCtrl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr float kLowest = -60;  // decibels
constexpr float kHighest = 6;
constexpr float kFallPerTick = 26.0F * 0.04F / (kHighest - kLowest);  // 26 decibels a second
constexpr int kHoldTicks = 38;                                        // 1.5 seconds
constexpr qreal kClipZone = 4;                                        // pixels
constexpr qreal kHeldWidth = 2;                                       // pixels
// Levels at which the colours change, as shares of the scale.
constexpr float kYellow = (-12 - kLowest) / (kHighest - kLowest);
constexpr float kRed = (0 - kLowest) / (kHighest - kLowest);
}  // namespace

MeterColours MeterColours::Of(const CPalette& palette) {
    const auto named = [&](const char* name) { return palette.Colour(QLatin1String(name)); };
    MeterColours colours;
    colours.well = named("wellDeep");
    colours.lit = {named("meterLow"), named("meterMid"), named("meterHigh")};
    for (std::size_t zone = 0; zone < colours.lit.size(); ++zone) {
        colours.unlit[zone] = Mix(colours.well, colours.lit[zone], 0.14F);
    }
    colours.clip = {Mix(colours.well, colours.lit[2], 0.25F), named("record")};
    return colours;
}

float MeterShare(float level) noexcept {
    if (!(level > 0.001F)) return 0;
    return std::clamp((20 * std::log10(level) - kLowest) / (kHighest - kLowest), 0.0F, 1.0F);
}

CVuCtrl::CVuCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                 CValue* bound, CValue* right, bool isVertical)
    : CControl(window, number, left, top, newWidth, newHeight),
      CTicked(window),
      colours(MeterColours::Of(Palette())),
      vertical(isVertical) {
    channels[0].source = bound;
    channels[1].source = right;
}

void CVuCtrl::SetReason(const QString& text) {
    if (reason == text) return;
    reason = text;
    stale = true;
}

float CVuCtrl::HeldPeak() const noexcept {
    return kLowest + std::max(channels[0].held, channels[1].held) * (kHighest - kLowest);
}

void CVuCtrl::OnLButtonDown(int /*px*/, int /*py*/, int /*button*/) {
    for (Channel& channel : channels) channel.clipped = false;
    Update(false, true);
}

void CVuCtrl::Tick() {
    if (!IsShown() || ShownRectangle().isEmpty()) return;
    bool changed = std::exchange(stale, false);
    for (Channel& channel : channels) {
        if (channel.source != nullptr && Follow(channel)) changed = true;
    }
    if (changed) Update(false, true);
}

// Whether the channel looks different now.
bool CVuCtrl::Follow(Channel& channel) const {
    const float level = channel.source->Get();
    const float share = MeterShare(level);
    channel.shown = std::max(share, channel.shown - kFallPerTick);
    if (share >= channel.held) {
        channel.held = share;
        channel.heldTicks = 0;
    } else if (++channel.heldTicks > kHoldTicks) {
        channel.held = std::max(share, channel.held - kFallPerTick);
    }
    const bool nowClipped = level >= 1.0F && !channel.clipped;
    channel.clipped = channel.clipped || level >= 1.0F;
    const float pixels = Length() * static_cast<float>(Canvas().Scale());
    const int shown = static_cast<int>(channel.shown * pixels);
    const int held = static_cast<int>(channel.held * pixels);
    const bool changed = shown != channel.drawnShown || held != channel.drawnHeld || nowClipped;
    channel.drawnShown = shown;
    channel.drawnHeld = held;
    return changed;
}

QString CVuCtrl::SpokenValue() const { return IsClipped() ? Text("clipped") : QString(); }

void CVuCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF area(Rectangle());
    if (!reason.isEmpty()) return DrawReason(area);
    if (channels[1].source == nullptr) return DrawChannel(channels[0], area);
    const qreal half = ((vertical ? area.width() : area.height()) - 1) / 2;
    DrawChannel(channels[0], vertical ? QRectF(area.left(), area.top(), half, area.height())
                                      : QRectF(area.left(), area.top(), area.width(), half));
    DrawChannel(channels[1], vertical ? QRectF(area.left() + half + 1, area.top(), half, area.height())
                                      : QRectF(area.left(), area.top() + half + 1, area.width(), half));
}

// On the unlit scale, so that the place is still that of a meter.
void CVuCtrl::DrawReason(const QRectF& area) {
    Canvas().Fill(area, colours.well);
    Canvas().Fill({area.left(), area.top(), area.width(), 1}, colours.unlit[0]);
    Canvas().Fill({area.left(), area.bottom() - 1, area.width(), 1}, colours.unlit[0]);
    Canvas().Text(area, reason, Palette().Colour(QStringLiteral("textMuted")), 10);
}

void CVuCtrl::DrawChannel(const Channel& channel, const QRectF& area) {
    const auto& [well, lit, unlit, clipMarks] = colours;
    // Green to -12, yellow to 0 decibels, red above.
    const std::array<float, 4> borders = {0, kYellow, kRed, 1.0F};
    Canvas().Fill(area, well);
    const qreal length = (vertical ? area.height() : area.width()) - kClipZone - 1;
    const auto part = [&](qreal from, qreal to) {
        return vertical ? QRectF(area.left(), area.bottom() - to, area.width(), to - from)
                        : QRectF(area.left() + from, area.top(), to - from, area.height());
    };
    for (std::size_t zone = 0; zone < lit.size(); ++zone) {
        const qreal from = std::round(length * static_cast<qreal>(borders[zone]));
        const qreal end = std::round(length * static_cast<qreal>(borders[zone + 1]));
        const qreal to = std::round(length * static_cast<qreal>(channel.shown));
        if (to > from) Canvas().Fill(part(from, std::min(to, end)), lit[zone]);
        if (to < end) Canvas().Fill(part(std::max(from, to), end), unlit[zone]);
    }
    if (channel.held > 0.01F) {
        const qreal place = std::round(length * static_cast<qreal>(channel.held));
        Canvas().Fill(part(std::max(0.0, place - kHeldWidth), place), Palette().Colour(QStringLiteral("text")));
    }
    const QRectF clipMark = part(length + 1, length + 1 + kClipZone);
    Canvas().Fill(clipMark, clipMarks[channel.clipped ? 1 : 0]);
}

}  // namespace quib
