// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The list of everything that MIDI controllers move, with the settings of the chosen row below it. User-interface
// thread.

#include <QDialog>
#include <optional>

#include "document/CWorkstation.h"

class QComboBox;
class QPushButton;
class QSpinBox;
class QTreeWidget;
class QTreeWidgetItem;

namespace quib {

class CControllerDialog : public QDialog {
    Q_OBJECT

public:
    CControllerDialog(CWorkstation& projectOwner, QWidget* parent);
    ~CControllerDialog() override;

    // Where the hands are; from the 40 ms timer.
    void Tick();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void BuildSettings(QLayout& layout);
    void Fill();
    void ShowChosen();
    int Chosen() const;  // index in the table, -1 none
    void Change(const std::function<void(ControlBinding&)>& change);

    CWorkstation& station;
    CControllers& controllers;
    QTreeWidget* list;
    QComboBox* channel = nullptr;
    QComboBox* mode = nullptr;
    QSpinBox* low = nullptr;
    QSpinBox* high = nullptr;
    QPushButton* invert = nullptr;
    QPushButton* learn = nullptr;
    QPushButton* remove = nullptr;
    std::optional<ControlTarget> wanted;  // chosen again once the table has changed
};

}  // namespace quib
