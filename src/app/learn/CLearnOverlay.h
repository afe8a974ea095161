// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Lies over a window while MIDI is being learned: tints what can be learned, names what is bound, and takes the clicks.
// User-interface thread.

#include <QWidget>
#include <functional>
#include <vector>

#include "controls/CControl.h"
#include "document/CControllers.h"

namespace quib {

class CLearnOverlay : public QWidget {
    Q_OBJECT

public:
    // The places of what can be learned, in pixels of the window.
    using List = std::function<std::vector<CControl::Learnable>()>;

    CLearnOverlay(CControllers& controllerMap, List listParts, QWidget* window);

    // Follows what moves below it; from the 40 ms timer.
    void Tick();

Q_SIGNALS:
    // The user wants the menu of a part.
    void MenuWanted(const quib::ControlTarget& target);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

private:
    const CControl::Learnable* PartAt(const QPoint& point) const;
    void DrawPart(QPainter& painter, const CControl::Learnable& part) const;

    CControllers& controllers;
    List list;
    std::vector<CControl::Learnable> parts;
    int blink = 0;  // ticks
};

// The parts of a window of controls.
std::vector<CControl::Learnable> LearnableParts(const CWinControl& window);

}  // namespace quib
