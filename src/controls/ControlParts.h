// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a control is for a user who sees or reaches it otherwise than with the mouse: its kind, and the parts that
// are chosen one by one. Plain values.

#include <QRect>
#include <QString>

namespace quib {

enum class ERole {
    kNone,  // nothing that needs a name
    kPicture,
    kText,
    kGroup,
    kButton,
    kSwitch,
    kSlider,
    kMenu,    // opens one
    kChoice,  // of its parts
    kField,   // a text that Enter opens for typing
    kMeter,
    kKeys,  // of a piano
    kScrollBar,
    kArea,  // takes the keys itself while it has them
};

// A cell, segment, row or handle of a control.
struct ControlPart {
    QString name;
    QString value;  // may be empty
    QRect area;     // of the window, in skin pixels; where a click means this part
    bool on = false;
    bool isSlider = false;  // Up and Down change it
};

}  // namespace quib
