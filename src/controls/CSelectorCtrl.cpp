// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSelectorCtrl.h"

#include <QCursor>
#include <QMenu>
#include <algorithm>
#include <cmath>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"

namespace quib {

namespace {
constexpr int kArrowZone = 14;  // pixels at each end
}

CSelectorCtrl::CSelectorCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                             CValue* bound, const QStringList& texts)
    : CControl(window, number, left, top, newWidth, newHeight, bound), choices(texts) {
    takesWheel = true;
    maximum = static_cast<float>(std::max<qsizetype>(0, texts.size() - 1));
    hoverLook = true;
    captureOnClick = false;
}

int CSelectorCtrl::Index() const {
    return std::clamp(static_cast<int>(std::lround(ValueNow())), 0, static_cast<int>(maximum));
}

void CSelectorCtrl::Step(int by) {
    const int next = std::clamp(Index() + by, 0, static_cast<int>(maximum));
    if (next != Index()) ChangeByUser(static_cast<float>(next));
}

void CSelectorCtrl::OnMouseMove(int /*px*/, int /*py*/) {
    if (enabled) Owner().setCursor(Qt::PointingHandCursor);
}

void CSelectorCtrl::OnLButtonDown(int px, int /*py*/, int button) {
    if (!enabled || button != 0) return;
    EndGesture();
    if (px - X() < kArrowZone) return Step(-1);
    if (px - X() >= Width() - kArrowZone) return Step(1);
    OpenList();
}

void CSelectorCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) { Update(false, true); }

void CSelectorCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    if (!enabled) return;
    wheelRest += NotchesOf(word);
    const float whole = std::trunc(wheelRest);
    wheelRest -= whole;
    if (whole != 0) Step(-static_cast<int>(whole));
}

void CSelectorCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CSelectorCtrl::OpenList() {
    auto* const menu = new QMenu(&Owner());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int index = 0; index < choices.size(); ++index) {
        QAction* const action = menu->addAction(choices[index]);
        action->setCheckable(true);
        action->setChecked(index == Index());
        QObject::connect(action, &QAction::triggered, menu, [this, index] { ChangeByUser(static_cast<float>(index)); });
    }
    menu->popup(Owner().MenuPoint());
}

void CSelectorCtrl::Draw() {
    const CPalette& palette = Palette();
    Canvas().Fill(Rectangle(), backgroundColour);
    const QRectF area(Rectangle());
    Canvas().Box(area, 3, palette.Colour(hovered ? QStringLiteral("wellDeep") : QStringLiteral("well")),
                 palette.Colour(QStringLiteral("edge")));
    const QRgb arrow = hovered && enabled ? palette.Accent(section) : palette.Colour(QStringLiteral("textDim"));
    Canvas().Glyph(Skin(), picture::kGlyphArrowLeft, {area.left() + 7, area.center().y()}, arrow);
    Canvas().Glyph(Skin(), picture::kGlyphArrowRight, {area.right() - 7, area.center().y()}, arrow);
    Canvas().Text(area.adjusted(kArrowZone, 0, -kArrowZone, 0), choices.value(Index()),
                  palette.Colour(enabled ? QStringLiteral("text") : QStringLiteral("textDim")), 10);
}

}  // namespace quib
