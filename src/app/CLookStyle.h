// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How Qt's own menus and dialogs are drawn: headings of menus that look like headings, boxes that are seen while
// they are not ticked, lists to choose from as on the console, buttons without little pictures. User-interface thread.

#include <QProxyStyle>

namespace quib {

class CLookStyle : public QProxyStyle {
    Q_OBJECT

public:
    CLookStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

}  // namespace quib
