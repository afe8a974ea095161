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
constexpr int kClipZone = 4;                                          // pixels
constexpr int kHeldWidth = 2;                                         // pixels
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
    colours.held = named("text");
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
    if (!IsShown() || ShownRectangle().isEmpty() || !Owner().HasBackBuffer()) return;
    if (std::exchange(stale, false)) Refresh();
    for (Channel& channel : channels) {
        if (channel.source != nullptr) Follow(channel);
    }
}

void CVuCtrl::RedrawPart(const Channel& channel, int from, int to) {
    if (!reason.isEmpty()) return;
    const QRectF area = AreaOf(channel);
    const int first = std::max(0, from);
    const int count = std::min(to, Length()) - first;
    const QRect part = (vertical ? QRectF(area.left(), area.bottom() - first - count, area.width(), count)
                                 : QRectF(area.left() + first, area.top(), count, area.height()))
                           .toAlignedRect();
    Canvas().SetClip(part.intersected(ShownRectangle()));
    DrawChannel(channel, area);
    BlitRect(part.left(), part.top(), part.right() + 1, part.bottom() + 1);
}

// Redraws what looks different then.
void CVuCtrl::Follow(Channel& channel) {
    const float level = channel.source->Get();
    const float share = MeterShare(level);
    channel.shown = std::max(share, channel.shown - kFallPerTick);
    if (share >= channel.held) {
        channel.held = share;
        channel.heldTicks = 0;
    } else if (++channel.heldTicks > kHoldTicks) {
        channel.held = std::max(share, channel.held - kFallPerTick);
    }
    if (level >= 1.0F && !std::exchange(channel.clipped, true)) RedrawPart(channel, 0, Length());
    // The held level has a width.
    const auto move = [&](int& drawn, float next, int reach) {
        const int now = PlaceOf(next);
        if (now == drawn) return;
        const auto [least, most] = std::minmax({now, std::exchange(drawn, now)});
        RedrawPart(channel, least - reach, most);
    };
    move(channel.drawnShown, channel.shown, 0);
    move(channel.drawnHeld, channel.held, kHeldWidth);
}

int CVuCtrl::PlaceOf(float share) const noexcept {
    return static_cast<int>(std::round(static_cast<float>(Length() - kClipZone - 1) * share));
}

QString CVuCtrl::SpokenValue() const { return IsClipped() ? Text("clipped") : QString(); }

void CVuCtrl::Draw() {
    if (!reason.isEmpty()) return DrawReason(QRectF(Rectangle()));
    DrawChannel(channels[0], AreaOf(channels[0]));
    if (channels[1].source == nullptr) return;
    DrawChannel(channels[1], AreaOf(channels[1]));
    const QRectF left = AreaOf(channels[0]);
    Canvas().Fill(vertical ? QRectF(left.right(), left.top(), 1, left.height())
                           : QRectF(left.left(), left.bottom(), left.width(), 1),
                  backgroundColour);
}

// Two channels lie side by side, a pixel apart.
QRectF CVuCtrl::AreaOf(const Channel& channel) const {
    const QRectF area(Rectangle());
    if (channels[1].source == nullptr) return area;
    const qreal half = ((vertical ? area.width() : area.height()) - 1) / 2;
    const qreal offset = &channel == channels.data() ? 0 : half + 1;
    return vertical ? QRectF(area.left() + offset, area.top(), half, area.height())
                    : QRectF(area.left(), area.top() + offset, area.width(), half);
}

// On the unlit scale, so that the place is still that of a meter.
void CVuCtrl::DrawReason(const QRectF& area) {
    Canvas().Fill(area, colours.well);
    Canvas().Fill({area.left(), area.top(), area.width(), 1}, colours.unlit[0]);
    Canvas().Fill({area.left(), area.bottom() - 1, area.width(), 1}, colours.unlit[0]);
    Canvas().Text(area, reason, Palette().Colour(QStringLiteral("textMuted")), 10);
}

void CVuCtrl::DrawChannel(const Channel& channel, const QRectF& area) {
    const auto& [well, held, lit, unlit, clipMarks] = colours;
    // Green to -12, yellow to 0 decibels, red above.
    const std::array<float, 4> borders = {0, kYellow, kRed, 1.0F};
    const int length = PlaceOf(1);
    const auto part = [&](int from, int to) {
        return vertical ? QRectF(area.left(), area.bottom() - to, area.width(), to - from)
                        : QRectF(area.left() + from, area.top(), to - from, area.height());
    };
    const int to = PlaceOf(channel.shown);
    for (std::size_t zone = 0; zone < lit.size(); ++zone) {
        const int from = PlaceOf(borders[zone]);
        const int end = PlaceOf(borders[zone + 1]);
        if (to > from) Canvas().Fill(part(from, std::min(to, end)), lit[zone]);
        if (to < end) Canvas().Fill(part(std::max(from, to), end), unlit[zone]);
    }
    if (const int place = PlaceOf(channel.held); place > 0)
        Canvas().Fill(part(std::max(0, place - kHeldWidth), place), held);
    Canvas().Fill(part(length, length + 1), well);
    const QRectF clipMark = part(length + 1, length + 1 + kClipZone);
    Canvas().Fill(clipMark, clipMarks[channel.clipped ? 1 : 0]);
}

}  // namespace quib
