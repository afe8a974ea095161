// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CLookStyle.h"

#include <QPainter>
#include <QStyleOption>

#include "app/Look.h"

namespace quib {

namespace {

// A box, or for one of several a circle, that is filled with its sign when it is ticked.
void DrawMark(QPainter& painter, const QRectF& place, bool round, bool ticked, bool enabled) {
    const qreal side = std::min({place.width(), place.height(), 14.0 * place.height() / 16});
    const QRectF box(place.center().x() - side / 2, place.center().y() - side / 2, side, side);
    const QColor accent = LookColour(enabled ? "keyboard" : "textOff");
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ticked ? accent : LookColour(enabled ? "textDim" : "edge"), 1.4));
    painter.setBrush(ticked ? accent : LookColour("well"));
    round ? painter.drawEllipse(box) : painter.drawRoundedRect(box, 3, 3);
    painter.setPen(QPen(LookColour("onAccent"), side / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(LookColour("onAccent"));
    if (ticked && round) painter.drawEllipse(box.center(), side / 8, side / 8);
    if (ticked && !round) {
        painter.setBrush(Qt::NoBrush);
        const auto at = [&box](qreal x, qreal y) {
            return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
        };
        painter.drawPolyline(QPolygonF({at(0.24, 0.52), at(0.43, 0.71), at(0.77, 0.31)}));
    }
    painter.restore();
}

// A well with a small arrow; the text is drawn over it.
void DrawComboBox(QPainter& painter, const QStyleOptionComboBox& box, const QRectF& arrow) {
    const bool isEnabled = (box.state & QStyle::State_Enabled) != 0;
    const bool isFocused = (box.state & QStyle::State_HasFocus) != 0;
    const bool isContrast = ChosenPalette() == EPalette::kContrast;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(LookColour(isFocused ? "focus" : isContrast ? "line" : "edge"), isFocused ? 2 : 1));
    painter.setBrush(LookColour("well"));
    painter.drawRoundedRect(QRectF(box.rect).adjusted(1, 1, -1, -1), 3, 3);
    const qreal half = box.fontMetrics.height() / 5.0;
    const QPointF middle = arrow.center();
    painter.setPen(Qt::NoPen);
    painter.setBrush(LookColour(isEnabled ? "textDim" : "textOff"));
    painter.drawPolygon(QPolygonF(
        {middle + QPointF(-half, -half / 2), middle + QPointF(half, -half / 2), middle + QPointF(0, half / 2)}));
    painter.restore();
}

// A word over a line.
void DrawHeading(QPainter& painter, const QStyleOptionMenuItem& item) {
    painter.save();
    QFont font = item.font;
    font.setWeight(QFont::DemiBold);
    font.setPixelSize(std::max(9, font.pixelSize() - 2));
    painter.setFont(font);
    painter.fillRect(item.rect, item.palette.window());
    painter.setPen(LookColour("textDim"));
    const QRect room = item.rect.adjusted(8, 0, -8, 0);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, item.text.toUpper());
    painter.fillRect(QRect(room.left(), item.rect.bottom(), room.width(), 1), LookColour("edge"));
    painter.restore();
}

}  // namespace

int CLookStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
}

void CLookStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    if (element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton) {
        return DrawMark(*painter, option->rect, element == PE_IndicatorRadioButton, option->state & State_On,
                        option->state & State_Enabled);
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    // The style's own edges are shades of the ground, which black has not.
    const bool hasEdge = element == PE_FrameLineEdit || element == PE_PanelButtonCommand || element == PE_FrameMenu ||
                         element == PE_PanelButtonTool || element == PE_FrameGroupBox;
    if (!hasEdge || ChosenPalette() != EPalette::kContrast) return;
    painter->save();
    painter->setPen(LookColour(option->state & State_HasFocus ? "focus" : "line"));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

void CLookStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const bool isHeading = element == CE_MenuItem && item != nullptr &&
                           item->menuItemType == QStyleOptionMenuItem::Separator && !item->text.isEmpty();
    if (isHeading) return DrawHeading(*painter, *item);
    QProxyStyle::drawControl(element, option, painter, widget);
}

void CLookStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                    const QWidget* widget) const {
    const auto* const box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (control != CC_ComboBox || box == nullptr)
        return QProxyStyle::drawComplexControl(control, option, painter, widget);
    DrawComboBox(*painter, *box, proxy()->subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget));
}

}  // namespace quib
