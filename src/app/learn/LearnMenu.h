// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The entries by which a control's menu learns MIDI. User-interface thread.

#include <QString>

#include "document/CControllers.h"

class QMenu;

namespace quib {

// "Learn MIDI", and what it is bound to with its settings. `what` names the control where a menu has several.
void AddLearnItems(QMenu& menu, CControllers& controllers, const ControlTarget& target, const QString& what = {});

// What a mode is called, for menus and lists.
QString ModeText(EControlMode mode);

}  // namespace quib
