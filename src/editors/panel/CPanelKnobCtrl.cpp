// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CPanelKnobCtrl.h"

#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLook.h"

namespace quib {

namespace {

constexpr qreal kScaleGap = 30;  // degrees either side of the bottom
constexpr int kLabelBelow = 10;
constexpr int kLine = 14;

qreal Degrees(qreal share) { return 180 + kScaleGap + share * (360 - 2 * kScaleGap); }

}  // namespace

CPanelKnobCtrl::CPanelKnobCtrl(CWinControl& window, const QRect& place, int discRadius, CPanelValues& panelValues,
                               int number)
    : CKnobCtrl(window, 0, place.x(), place.y(), place.width(), place.height(), nullptr),
      values(panelValues),
      parameter(number),
      radius(discRadius) {
    values.Connect(*this, parameter);
}

void CPanelKnobCtrl::TakeNumber(float number) {
    if (defaultValue && number == *defaultValue) return ChangeByUser(number);
    values.SetByText(parameter, QString::number(static_cast<double>(number)));
    Update(false, true);
}

void CPanelKnobCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const QPointF centre(X() + Width() / 2.0, Y() + CentreY());
    const EState state = PlainState();
    if (enabled) {
        Canvas().Arc(centre, radius + 2, Degrees(0), Degrees(1), Colour("wellDeep"), 3);
        const auto share = static_cast<qreal>(Share());
        const auto from = static_cast<qreal>(zero);
        if (share != from)
            Canvas().Arc(centre, radius + 2, Degrees(from), Degrees(share), Palette().Accent(section), 3);
    }
    const int side = 2 * radius - 2;
    const QPointF corner = centre - QPointF(side, side) / 2;
    Canvas().Blit(Skin().BitmapOfSide(picture::kKnob, side, state, section), corner.x(), corner.y());
    Canvas().BlitTurned(Skin().BitmapOfSide(picture::kKnobPointer, side, state, section), centre,
                        Degrees(static_cast<qreal>(Share())));
    const qreal below = centre.y() + radius + kLabelBelow - kLine / 2.0;
    const QRgb quiet = Colour(enabled ? "textMuted" : "textOff");
    Canvas().Text(QRectF(X(), below, Width(), kLine), caption, quiet, 10);
    const QString text = ValueText();
    Canvas().Text(QRectF(X(), below + kLine, Width(), kLine), text, Colour(enabled ? "text" : "textOff"),
                  FittingHeight(text, Width(), true), Qt::AlignCenter, true);
    DrawParameterMarks(Canvas(), Skin(), centre + QPointF(radius + 8, 4 - radius), automated, learned);
}

}  // namespace quib
