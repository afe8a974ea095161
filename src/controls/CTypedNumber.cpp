// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CTypedNumber.h"

#include <QKeyEvent>
#include <utility>

#include "controls/CEntryDialog.h"
#include "controls/CWinControl.h"

namespace quib {

namespace {
constexpr int kTypingTime = 1200;  // milliseconds after the last digit
}

CTypedNumber::CTypedNumber(CWinControl& window) : owner(window) {
    end.setSingleShot(true);
    QObject::connect(&end, &QTimer::timeout, &end, [this] { Commit(); });
}

void CTypedNumber::Forget(const CControl& control) noexcept {
    if (target != &control) return;
    target = nullptr;
    typed.clear();
}

// The control that digits go to; null for none.
CControl* CTypedNumber::NextTarget() const {
    CControl* const focused = owner.Keys().Control();
    CControl* const next = target != nullptr ? target : focused != nullptr ? focused : owner.Mouse().Hovered();
    return next != nullptr && next->TakesDigits() ? next : nullptr;
}

bool CTypedNumber::WouldTake(const QKeyEvent& event) const {
    const QString text = event.text();
    const bool plain = (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    if (!plain || text.size() != 1 || NextTarget() == nullptr) return false;
    const QChar character = text[0];
    if (character.isDigit()) return true;
    if (character == QLatin1Char('-')) return typed.isEmpty();
    return (character == QLatin1Char('.') || character == QLatin1Char(',')) && !typed.contains(QLatin1Char('.'));
}

void CTypedNumber::Show() {
    owner.ShowBubble(*target, typed + QLatin1Char('_'));
    end.start(kTypingTime);
}

// Return, Escape and Backspace while something is typed.
bool CTypedNumber::Edit(const QKeyEvent& event) {
    if (target == nullptr) return false;
    switch (event.key()) {
        case Qt::Key_Escape:
            typed.clear();
            break;
        case Qt::Key_Backspace:
            typed.chop(1);
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Commit();
            return true;
        default:
            return false;
    }
    if (typed.isEmpty()) {
        Commit();
        owner.HideBubble();
    } else {
        Show();
    }
    return true;
}

bool CTypedNumber::Take(const QKeyEvent& event) {
    if (Edit(event)) return true;
    if (!WouldTake(event)) return false;
    target = NextTarget();
    const QChar character = event.text()[0];
    typed += character == QLatin1Char(',') ? QLatin1Char('.') : character;
    Show();
    return true;
}

void CTypedNumber::Commit() {
    CControl* const control = std::exchange(target, nullptr);
    const QString text = std::exchange(typed, {});
    end.stop();
    if (control == nullptr || text.isEmpty()) return;
    if (control->onTextEntry) return control->onTextEntry(*control, text);
    control->TakeNumber(CEntryDialog::NumberOf(text));
}

}  // namespace quib
