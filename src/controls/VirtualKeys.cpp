// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/VirtualKeys.h"

#include <QKeyEvent>
#include <QWheelEvent>
#include <algorithm>

namespace quib {

int VirtualKeyOf(const QKeyEvent& event) {
    const int key = event.key();
    const bool isKeypad = event.modifiers().testFlag(Qt::KeypadModifier);
    if (isKeypad && key >= Qt::Key_0 && key <= Qt::Key_9) return virtualKey::kKeypad0 + key - Qt::Key_0;
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z)) return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return 112 + key - Qt::Key_F1;
    switch (key) {
        case Qt::Key_Backspace:
            return virtualKey::kBackspace;
        case Qt::Key_Tab:
            return virtualKey::kTab;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return virtualKey::kReturn;
        case Qt::Key_Shift:
            return virtualKey::kShift;
        case Qt::Key_Control:
            return virtualKey::kControl;
        case Qt::Key_Alt:
            return virtualKey::kAlt;
        case Qt::Key_Escape:
            return virtualKey::kEscape;
        case Qt::Key_Space:
            return virtualKey::kSpace;
        case Qt::Key_End:
            return virtualKey::kEnd;
        case Qt::Key_Home:
            return virtualKey::kHome;
        case Qt::Key_Left:
            return virtualKey::kLeft;
        case Qt::Key_Up:
            return virtualKey::kUp;
        case Qt::Key_Right:
            return virtualKey::kRight;
        case Qt::Key_Down:
            return virtualKey::kDown;
        case Qt::Key_Plus:
            return virtualKey::kPlus;
        case Qt::Key_Minus:
            return virtualKey::kMinus;
        case Qt::Key_Backtab:
            return virtualKey::kTab;
        case Qt::Key_Delete:
            return virtualKey::kDelete;
        default:
            return 0;
    }
}

std::uint32_t WheelWordOf(const QWheelEvent& event) {
    // With Alt held the desktop turns the wheel sideways.
    const int turn = event.angleDelta().y() != 0 ? event.angleDelta().y() : event.angleDelta().x();
    std::uint32_t word = static_cast<std::uint32_t>(static_cast<std::uint16_t>(std::clamp(turn, -32768, 32767))) << 16U;
    if (event.modifiers().testFlag(Qt::ShiftModifier)) word |= kWheelShift;
    if (event.modifiers().testFlag(Qt::ControlModifier)) word |= kWheelControl;
    return word;
}

}  // namespace quib
