// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CPictureCtrl.h"

#include <utility>

#include "controls/CWinControl.h"
#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLook.h"
#include "editors/panel/pictures/CPanelPicture.h"

namespace quib {

namespace {

constexpr qreal kCatch = 12;        // pixels round a handle
constexpr qreal kSide = 8;          // of a square one
constexpr qreal kHandleRadius = 5;  // of a round one

}  // namespace

float CPictureRoles::Get(const char* role, float fallback) const {
    const auto found = indices.find(role);
    return found != indices.end() ? values.Get(found->second) : fallback;
}

QString CPictureRoles::Reading(const char* role) const {
    const auto found = indices.find(role);
    return found != indices.end() ? values.Text(found->second) : QString();
}

float CPictureRoles::Number(const char* role, float fallback) const {
    bool isNumber = false;
    const float number = Reading(role).section(QLatin1Char(' '), 0, 0).toFloat(&isNumber);
    return isNumber ? number : fallback;
}

void CPictureRoles::Set(const char* role, float value) {
    const auto found = indices.find(role);
    if (found != indices.end()) values.Set(found->second, value);
}

CPictureCtrl::CPictureCtrl(CWinControl& window, const QRect& place, CPictureRoles pictureRoles,
                           std::unique_ptr<CPanelPicture> shownPicture)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()),
      roles(std::move(pictureRoles)),
      picture(std::move(shownPicture)) {
    doubleClickIsClick = false;
}

CPictureCtrl::~CPictureCtrl() = default;

QRectF CPictureCtrl::Inside() const { return QRectF(Rectangle()).adjusted(6, 6, -6, -6); }

int CPictureCtrl::HandleAt(int px, int py) const {
    const auto handles = picture->Handles(Inside(), roles);
    int nearest = -1;
    qreal least = kCatch;
    for (std::size_t handle = 0; handle < handles.size(); ++handle) {
        const QPointF way = handles[handle].place - QPointF(px, py);
        const qreal distance = std::max(std::abs(way.x()), std::abs(way.y()));
        if (distance > least) continue;
        least = distance;
        nearest = static_cast<int>(handle);
    }
    return nearest;
}

std::vector<float> CPictureCtrl::Values() const {
    std::vector<float> now;
    for (const auto& [role, parameter] : roles.Indices()) now.push_back(roles.Values().Get(parameter));
    return now;
}

bool CPictureCtrl::HasChanged() const {
    return Values() != drawn || (picture->IsLive() && roles.Values().MeasuredCount() != drawnMeasured);
}

void CPictureCtrl::OnMouseMove(int px, int py) {
    if (held >= 0) {
        picture->Drag(held, QPointF(px, py), Inside(), roles);
        return Update(false, true);
    }
    const int now = enabled ? HandleAt(px, py) : -1;
    if (std::exchange(under, now) == now) return;
    now >= 0 ? Owner().setCursor(Qt::SizeAllCursor) : Owner().unsetCursor();
    Update(false, true);
}

void CPictureCtrl::OnLButtonDown(int px, int py, int button) {
    held = enabled && button == 0 ? HandleAt(px, py) : -1;
    before.clear();
    if (held < 0) return;
    for (const auto& [role, parameter] : roles.Indices()) before[parameter] = roles.Values().Get(parameter);
}

void CPictureCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    if (std::exchange(held, -1) < 0) return;
    for (const auto& [parameter, start] : before) roles.Values().Keep(parameter, start);
    Update(false, true);
}

void CPictureCtrl::OnMouseLeave() {
    under = -1;
    Owner().unsetCursor();
    Update(false, true);
}

void CPictureCtrl::Draw() {
    drawn = Values();
    drawnMeasured = roles.Values().MeasuredCount();
    const QRectF area(Rectangle());
    Canvas().Fill(Rectangle(), backgroundColour);
    DrawGlass(Canvas(), area, area.width() > 180 ? 8 : 4);
    const QRgb accent = enabled ? Palette().Accent(section) : Colour("textOff");
    picture->Draw(Canvas(), Inside(), roles, accent);
    const auto handles = picture->Handles(Inside(), roles);
    for (std::size_t index = 0; enabled && index < handles.size(); ++index) {
        const PictureHandle& handle = handles[index];
        const bool hot = static_cast<int>(index) == under || static_cast<int>(index) == held;
        if (handle.isRound) {
            Canvas().Ellipse(handle.place, kHandleRadius + 1, Colour("text"));
            Canvas().Ellipse(handle.place, kHandleRadius - 1, accent);
        } else {
            const QRectF square(handle.place.x() - kSide / 2, handle.place.y() - kSide / 2, kSide, kSide);
            Canvas().Box(square, 1, hot ? accent : Colour("glass"), accent, 2);
        }
    }
}

}  // namespace quib
