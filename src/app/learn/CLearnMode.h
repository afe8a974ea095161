// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The learn mode of all windows: puts an overlay on each, tells in a line at the foot of the main window what to do and
// what has come of it. Also takes a knob that is moved in a plug-in's own window as picked. User-interface thread.

#include <QFrame>
#include <QPointer>
#include <map>

#include "app/learn/CLearnOverlay.h"
#include "document/CWorkstation.h"

class QLabel;
class QPushButton;

namespace quib {

class CLearnMode : public QObject {
    Q_OBJECT

public:
    CLearnMode(CWorkstation& projectOwner, QWidget* mainWindow);
    ~CLearnMode() override;

    // From the 40 ms timer: windows come and go.
    void Tick();
    // After another language was chosen.
    void Translate();

Q_SIGNALS:
    void ListWanted();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Follow();
    void ShowLine(const QString& text);
    QString LineText() const;
    void PlaceLine();
    void AddOverlay(QWidget& window, CLearnOverlay::List list);
    void ValueMoved(const void* thing, int part);

    CWorkstation& station;
    CControllers& controllers;
    QWidget* main;
    QFrame* line;
    QLabel* text;
    QPushButton* listButton;
    QPushButton* done;
    std::map<QWidget*, QPointer<CLearnOverlay>> overlays;
    QString told;       // what has been bound
    int toldTicks = 0;  // for which it is still shown
};

}  // namespace quib
