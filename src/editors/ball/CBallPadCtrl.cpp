// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/ball/CBallPadCtrl.h"

#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "controls/VirtualKeys.h"
#include "editors/base/WindowKeys.h"
#include "model/edits/BallEdits.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kFrame = 16;                        // milliseconds
constexpr std::uint64_t kThrowTime = 80'000'000;  // nanoseconds before letting go that make the speed
constexpr float kThrowSpeed = 120;                // a second: slower ones stay where they are
constexpr float kFastest = 1500;
constexpr float kFine = 0.125F;

}  // namespace

QRgb BallColour(int ball) {
    constexpr std::array kNames = {"mix",       "effects",  "pattern",  "transport",
                                   "equaliser", "keyboard", "meterMid", "scopeRight"};
    return Colour(kNames[static_cast<std::size_t>(ball) % kNames.size()]);
}

void DrawBall(CCanvas& canvas, const QPointF& centre, qreal radius, int ball) {
    canvas.Ellipse(centre, radius + 1, Colour("knobEdge"));
    canvas.Ellipse(centre, radius, BallColour(ball));
    canvas.Text(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius), QString::number(ball + 1),
                Colour("ink"), radius > 10 ? 13 : 10, Qt::AlignCenter, true);
}

CBallPadCtrl::CBallPadCtrl(CWinControl& window, std::uint32_t number, int left, int top)
    : CControl(window, number, left, top, kSize, kSize) {
    doubleClickIsClick = false;
    flight.setInterval(kFrame);
    flight.setTimerType(Qt::PreciseTimer);
    QObject::connect(&flight, &QTimer::timeout, [this] { GlideOn(); });
}

void CBallPadCtrl::ShowBalls(const std::vector<PadPlace>& now, bool hold) {
    if (balls.size() != now.size()) {
        StopAll();
        trails.assign(now.size(), {});
        balls = now;
    }
    bool changed = false;
    for (std::size_t ball = 0; ball < now.size(); ++ball) {
        const int index = static_cast<int>(ball);
        if (hold && (index == held || IsGliding(index))) continue;
        changed = changed || balls[ball] != now[ball];
        balls[ball] = now[ball];
    }
    if (changed) Refresh();
}

void CBallPadCtrl::Select(int ball) {
    selected = ball;
    Refresh();
}

bool CBallPadCtrl::IsGliding(int ball) const noexcept {
    return std::any_of(glides.begin(), glides.end(), [ball](const Glide& glide) { return glide.ball == ball; });
}

void CBallPadCtrl::Trail() {
    bool moved = false;
    for (std::size_t ball = 0; ball < balls.size(); ++ball) {
        auto& trail = trails[ball];
        if (trail.empty() && balls[ball] == PadPlace{}) continue;
        const bool rests = trail.size() == kTrail && std::all_of(trail.begin(), trail.end(), [&](const auto& place) {
                               return place == balls[ball];
                           });
        if (rests) continue;
        trail.push_back(balls[ball]);
        if (trail.size() > kTrail) trail.pop_front();
        moved = true;
    }
    if (moved) Refresh();
}

void CBallPadCtrl::StopAll() {
    held = -1;
    glides.clear();
    flight.stop();
}

// --- Drawing ----------------------------------------------------------------------------------------------

QPointF CBallPadCtrl::PlaceOf(const PadPlace& place) const {
    constexpr double room = kSize - 2 * kInset;
    return {X() + kInset + static_cast<double>(place[0]) / 127 * room,
            Y() + kSize - kInset - static_cast<double>(place[1]) / 127 * room};
}

PadPlace CBallPadCtrl::ValueAt(double px, double py) const {
    constexpr double room = kSize - 2 * kInset;
    return {static_cast<float>((px - X() - kInset) / room * 127),
            static_cast<float>((Y() + kSize - kInset - py) / room * 127)};
}

void CBallPadCtrl::Draw() {
    const QRectF area(Rectangle());
    Canvas().Fill(area, Colour("panel"));
    Canvas().Box(area, 4, Colour("glass"), Colour("edge"));
    for (int line = 1; line < 8; ++line) {
        const double place = std::floor(line * kSize / 8.0);
        const QRgb colour = Colour(line == 4 ? "gridBar" : "gridBeat");
        Canvas().Fill(QRectF(X() + place, Y() + 1, 1, kSize - 2), WithOpacity(colour, 0.6F));
        Canvas().Fill(QRectF(X() + 1, Y() + place, kSize - 2, 1), WithOpacity(colour, 0.6F));
    }
    const QRgb axis = selected < static_cast<int>(balls.size()) ? BallColour(selected) : Colour("textMuted");
    Canvas().Text(QRectF(X() + 8, Y() + kSize - 20, kSize - 16, 16), QStringLiteral("X   ") + axisTexts[0],
                  litAxis == 0 ? axis : Colour("textMuted"), 10, Qt::AlignCenter, litAxis == 0);
    Canvas().Text(QRectF(X() + 8, Y() + 4, kSize - 16, 16), QStringLiteral("Y   ") + axisTexts[1],
                  litAxis == 1 ? axis : Colour("textMuted"), 10, Qt::AlignLeft | Qt::AlignVCenter, litAxis == 1);
    for (std::size_t ball = 0; ball < balls.size(); ++ball) {
        const auto& trail = trails[ball];
        for (std::size_t dot = 0; dot < trail.size(); ++dot) {
            const auto age = static_cast<float>(dot + 1) / kTrail;
            Canvas().Ellipse(PlaceOf(trail[dot]), 1 + 2.2 * static_cast<double>(age),
                             WithOpacity(BallColour(static_cast<int>(ball)), 0.12F + 0.5F * age));
        }
    }
    for (std::size_t ball = 0; ball < balls.size(); ++ball) {
        const QPointF centre = PlaceOf(balls[ball]);
        if (static_cast<int>(ball) == selected) {
            const QRgb line = WithOpacity(BallColour(selected), 0.55F);
            Canvas().Fill(QRectF(X() + 1, centre.y(), kSize - 2, 1), line);
            Canvas().Fill(QRectF(centre.x(), Y() + 1, 1, kSize - 2), line);
            Canvas().Ellipse(centre, 15, Colour("thumbHover"));
        }
        DrawBall(Canvas(), centre, kRadius, static_cast<int>(ball));
    }
}

void CBallPadCtrl::ShowPlace() {
    if (selected < 0 || selected >= static_cast<int>(balls.size())) return;
    const PadPlace& place = balls[static_cast<std::size_t>(selected)];
    const QPointF centre = PlaceOf(place);
    Owner().ShowBubble(QRect(static_cast<int>(centre.x()) - 15, static_cast<int>(centre.y()) - 15, 30, 30),
                       QStringLiteral("X %1   Y %2").arg(std::lround(place[0])).arg(std::lround(place[1])),
                       BallColour(selected));
}

// --- Hands ------------------------------------------------------------------------------------------------

int CBallPadCtrl::BallAt(int px, int py, bool nearest) const {
    int found = -1;
    double least = nearest ? 1e9 : kRadius + 2;
    for (std::size_t ball = 0; ball < balls.size(); ++ball) {
        const QPointF way = PlaceOf(balls[ball]) - QPointF(px, py);
        const double distance = std::hypot(way.x(), way.y());
        const bool preferred = static_cast<int>(ball) == selected && distance <= least;
        if (distance < least || preferred) found = static_cast<int>(ball);
        least = std::min(least, distance);
    }
    return found;
}

void CBallPadCtrl::MoveTo(int ball, PadPlace place) {
    for (float& number : place) number = std::clamp(number, 0.0F, kBallReach);
    balls[static_cast<std::size_t>(ball)] = place;
    if (onMoved) onMoved(ball, place);
    Refresh();
}

void CBallPadCtrl::Catch(int ball) noexcept {
    std::erase_if(glides, [ball](const Glide& glide) { return glide.ball == ball; });
    if (glides.empty()) flight.stop();
}

void CBallPadCtrl::OnLButtonDown(int px, int py, int button) {
    if (button != 0 || balls.empty()) return;
    const int hit = BallAt(px, py, false);
    held = hit >= 0 ? hit : BallAt(px, py, true);
    Catch(held);
    const PadPlace place = balls[static_cast<std::size_t>(held)];
    before = place;
    if (held != selected && onSelect) onSelect(held);
    if (Owner().IsResetHeld()) {
        MoveTo(held, {64, 64});
        const int ball = std::exchange(held, -1);
        if (onDropped) onDropped(ball, before);
        return;
    }
    const PadPlace under = ValueAt(px, py);
    grip = hit >= 0 ? PadPlace{place[0] - under[0], place[1] - under[1]} : PadPlace{};
    lastHand = QPointF(px, py);
    hand.clear();
    if (hit < 0) MoveTo(held, under);
    ShowPlace();
}

void CBallPadCtrl::OnMouseMove(int px, int py) {
    if (held < 0) return;
    const QPointF way = QPointF(px, py) - lastHand;
    lastHand = QPointF(px, py);
    const PadPlace place = balls[static_cast<std::size_t>(held)];
    const PadPlace under = ValueAt(px, py);
    PadPlace next = {under[0] + grip[0], under[1] + grip[1]};
    if (Owner().IsFine()) {
        const float scale = kFine * 127.0F / (kSize - 2 * kInset);
        next = {place[0] + static_cast<float>(way.x()) * scale, place[1] - static_cast<float>(way.y()) * scale};
        grip = {next[0] - under[0], next[1] - under[1]};
    }
    MoveTo(held, next);
    hand.push_back({Nanoseconds(), balls[static_cast<std::size_t>(held)]});
    if (hand.size() > 16) hand.pop_front();
    ShowPlace();
}

void CBallPadCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    if (held < 0) return;
    const int ball = std::exchange(held, -1);
    const std::uint64_t now = Nanoseconds();
    while (!hand.empty() && now - hand.front().time > kThrowTime) hand.pop_front();
    if (hand.size() >= 2 && !Owner().IsFine()) {
        const auto seconds = static_cast<float>(now - hand.front().time) * 1e-9F;
        const PadPlace& from = hand.front().place;
        const PadPlace& to = hand.back().place;
        Glide glide = {ball, {(to[0] - from[0]) / seconds, (to[1] - from[1]) / seconds}};
        const float speed = std::hypot(glide.speed[0], glide.speed[1]);
        if (speed > kThrowSpeed) {
            for (float& part : glide.speed) part *= std::min(1.0F, kFastest / speed);
            glides.push_back(glide);
            flight.start();
        }
    }
    if (onDropped) onDropped(ball, before);
}

// Without friction: it goes on until a hand catches it.
void CBallPadCtrl::GlideOn() {
    for (Glide& glide : glides) {
        PadPlace place = balls[static_cast<std::size_t>(glide.ball)];
        for (std::size_t axis = 0; axis < 2; ++axis) {
            float next = place[axis] + glide.speed[axis] * kFrame / 1000;
            if (next < 0 || next > kBallReach) {
                next = next < 0 ? -next : 2 * kBallReach - next;
                glide.speed[axis] = -glide.speed[axis];
            }
            place[axis] = next;
        }
        MoveTo(glide.ball, place);
    }
}

void CBallPadCtrl::OnDoubleClick(int px, int py) {
    const int ball = BallAt(px, py, false);
    if (ball < 0) return;
    if (onSelect) onSelect(ball);
    const PadPlace& place = balls[static_cast<std::size_t>(ball)];
    entryText = QStringLiteral("%1 %2").arg(std::lround(place[0])).arg(std::lround(place[1]));
    Owner().RunManualEntry(*this);
}

void CBallPadCtrl::Nudge(float right, float up) {
    if (selected < 0 || selected >= static_cast<int>(balls.size())) return;
    const PadPlace place = balls[static_cast<std::size_t>(selected)];
    const float way = Owner().IsFine() ? kFine : 1;
    Catch(selected);
    MoveTo(selected, {place[0] + right * way, place[1] + up * way});
    if (onDropped) onDropped(selected, place);
}

WindowKeys BallPadKeys() {
    return {{Qt::Key_Up, TextKey("Moves the selected ball"), WindowKey::EKind::kArrows},
            {Qt::SHIFT | Qt::Key_Up, TextKey("The same finely"), WindowKey::EKind::kArrows},
            {Qt::Key_Tab, TextKey("Next ball")},
            {Qt::Key_Delete, TextKey("Removes the selected ball")}};
}

void CBallPadCtrl::OnKeyDown(int key) {
    switch (key) {
        case virtualKey::kLeft:
            return Nudge(-1, 0);
        case virtualKey::kRight:
            return Nudge(1, 0);
        case virtualKey::kUp:
            return Nudge(0, 1);
        case virtualKey::kDown:
            return Nudge(0, -1);
        case virtualKey::kTab:
            if (!balls.empty() && onSelect) onSelect((selected + 1) % static_cast<int>(balls.size()));
            return;
        case virtualKey::kDelete:
            if (onDelete) onDelete();
            return;
        case virtualKey::kEscape:
            if (held < 0) return;
            MoveTo(std::exchange(held, -1), before);
            return;
        default:
            return;
    }
}

}  // namespace quib
