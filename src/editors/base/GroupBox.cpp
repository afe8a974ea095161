// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/base/GroupBox.h"

#include "controls/Colours.h"

namespace quib {

void DrawGroupBox(CCanvas& canvas, const QRectF& area, const QString& title, ESection section) {
    canvas.Box(area, 4, Colour("panel"), Colour("line"));
    if (title.isEmpty()) return;
    canvas.Fill(QRectF(area.left() + 10, area.top() + 9, 3, 12), Palette().Accent(section));
    canvas.Text(QRectF(area.left() + 20, area.top() + 7, area.width() - 28, 16), title, Colour("text"), 12,
                Qt::AlignLeft | Qt::AlignVCenter, true);
}

}  // namespace quib
