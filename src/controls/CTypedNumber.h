// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The number that is typed while the mouse is over a control: set with Return, when the mouse leaves, or when
// nothing more is typed for a while; Escape gives it up. User-interface thread.

#include <QString>
#include <QTimer>

class QKeyEvent;

namespace quib {

class CControl;
class CWinControl;

class CTypedNumber {
public:
    explicit CTypedNumber(CWinControl& window);

    // Whether a key would be a part of a number.
    bool WouldTake(const QKeyEvent& event) const;
    // False for a key that is none of a number.
    bool Take(const QKeyEvent& event);
    // Sets what was typed so far, if anything.
    void Commit();
    // The control is about to go.
    void Forget(const CControl& control) noexcept;
    // Null while nothing is typed.
    CControl* Target() const noexcept { return target; }

private:
    CControl* NextTarget() const;
    bool Edit(const QKeyEvent& event);
    void Show();

    CWinControl& owner;
    CControl* target = nullptr;
    QString typed;
    QTimer end;
};

}  // namespace quib
