// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One of a few texts, stepped by a click on its arrows or the wheel, or chosen from the list that a click
// on the text opens. The value is the index of the text. User-interface thread.

#include <QStringList>

#include "controls/CControl.h"

namespace quib {

class CSelectorCtrl : public CControl {
public:
    CSelectorCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                  CValue* bound, const QStringList& texts);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kMenu; }
    bool IsTurned() const override { return true; }
    QString SpokenValue() const override { return choices.value(Index()); }

private:
    int Index() const;
    void Step(int by);
    void OpenList();

    QStringList choices;
    float wheelRest = 0;
};

}  // namespace quib
