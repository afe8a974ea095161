// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CLaneArmCtrl.h"

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "texts/Texts.h"

namespace quib {

void CLaneArmCtrl::Draw() {
    if (!IsOn()) return CSwitchCtrl::Draw();
    const QRectF area(Rectangle());
    const QRgb red = Colour("record");
    const QRgb ink = Colour("ink");
    Canvas().Fill(area, backgroundColour);
    DrawCap(Canvas(), area, PlainState(), red);
    const QPointF disc(area.left() + 16, area.center().y());
    Canvas().Ellipse(disc, 8, ink);
    Canvas().Text(QRectF(disc.x() - 8, disc.y() - 8, 16, 16), QStringLiteral("A"), red, 10, Qt::AlignCenter, true);
    Canvas().Text(area.adjusted(29, 0, -22, 0), Text("ARMED"), ink, 10, Qt::AlignCenter, true);
    Canvas().Ellipse(QPointF(area.right() - 14, disc.y()), 4, ink);
}

}  // namespace quib
