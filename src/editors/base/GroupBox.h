// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The framed group of controls of tool windows and panels, with its title and the accent of its section; without
// a title the frame alone. User-interface thread.

#include <QRectF>
#include <QString>

#include "controls/CCanvas.h"
#include "controls/CPalette.h"

namespace quib {

void DrawGroupBox(CCanvas& canvas, const QRectF& area, const QString& title, ESection section);

}  // namespace quib
