// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CMenuCtrl.h"

#include <QMenu>
#include <algorithm>
#include <cmath>

#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"
#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLook.h"

namespace quib {

CMenuCtrl::CMenuCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, int number, int valueCount)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()),
      values(panelValues),
      parameter(number),
      count(std::max(2, valueCount)) {
    hoverLook = true;
    takesWheel = true;
    takesDigits = true;
    captureOnClick = false;
    values.Connect(*this, parameter);
}

int CMenuCtrl::Chosen() const { return static_cast<int>(std::lround(Share() * static_cast<float>(count - 1))); }

QStringList CMenuCtrl::Texts() {
    const float before = values.Get(parameter);
    QStringList texts;
    for (int index = 0; index < count; ++index) {
        values.Set(parameter, ShareOf(index));
        texts.append(values.Text(parameter));
    }
    values.Set(parameter, before);
    return texts;
}

void CMenuCtrl::Choose(int index) {
    if (index >= 0 && index < count && index != Chosen()) ChangeByUser(ShareOf(index));
}

// The panel may be laid out anew while the menu is open, this control with it.
void CMenuCtrl::OnLButtonDown(int /*px*/, int /*py*/, int /*button*/) {
    if (!enabled) return;
    QMenu menu(&Owner());
    const QStringList texts = Texts();
    for (int index = 0; index < count; ++index) {
        QAction* const action = menu.addAction(texts[index]);
        action->setCheckable(true);
        action->setChecked(index == Chosen());
        action->setData(index);
    }
    CPanelValues& bound = values;
    const int changed = parameter;
    const float before = ValueNow();
    const QRect place = Owner().ToWidget(Rectangle());
    const QAction* const chosen = menu.exec(Owner().mapToGlobal(place.bottomLeft()));
    if (chosen == nullptr) return;
    bound.Set(changed, static_cast<float>(chosen->data().toInt()) / static_cast<float>(texts.size() - 1));
    bound.Keep(changed, before);
}

void CMenuCtrl::OnMouseMove(int /*px*/, int /*py*/) {
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
}

void CMenuCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CMenuCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    wheelRest += NotchesOf(word);
    if (!enabled || std::abs(wheelRest) < 1) return;
    Choose(Chosen() + (wheelRest > 0 ? 1 : -1));
    wheelRest = 0;
}

void CMenuCtrl::TakeNumber(float number) {
    values.SetByText(parameter, QString::number(static_cast<double>(number)));
    Update(false, true);
}

void CMenuCtrl::Draw() {
    constexpr int kArrow = 18;
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF field(Rectangle());
    Canvas().Box(field, 3, Colour(hovered && enabled ? "panelRaised" : "well"), Colour("edge"));
    const QRgb ink = Colour(enabled ? "text" : "textOff");
    const QRectF inside = field.adjusted(8, 0, -kArrow, 0);
    const QString text = ValueText();
    Canvas().Text(inside, text, ink, FittingHeight(text, inside.width(), true, 11), Qt::AlignLeft | Qt::AlignVCenter,
                  true);
    Canvas().Glyph(Skin(), picture::kGlyphArrowDown, {field.right() - kArrow / 2.0, field.center().y()}, ink);
}

}  // namespace quib
