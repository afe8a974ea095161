// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CSongPlayhead.h"

#include "controls/CWinControl.h"

namespace quib {

void CSongPlayhead::Painted(const QRect& area) {
    for (Kept& one : kept) {
        if (one.area.intersects(area)) one.isOld = true;
    }
}

bool CSongPlayhead::TakeAway() {
    bool known = true;
    for (Kept& one : kept) {
        known = known && !one.isOld;
        if (!one.isOld && !one.area.isEmpty()) {
            window.Canvas().PutBack(one.image, one.area);
            window.BlitRectangle(one.area);
        }
        one.isOld = true;
    }
    return known;
}

void CSongPlayhead::Put(const Ground& ground, int x) {
    CCanvas& canvas = window.Canvas();
    const int left = ground.ruler.left() + x;
    kept[0].area =
        QRect(left - kFlagRoom, ground.ruler.top(), kLine + 2 * kFlagRoom, ground.ruler.height()) & ground.ruler;
    kept[1].area = QRect(left, ground.lanes.top(), kLine, ground.lanes.height()) & ground.lanes;
    for (Kept& one : kept) {
        one.isOld = false;
        if (one.area.isEmpty()) continue;
        one.image = canvas.Copied(one.area);
        canvas.SetClip(one.area);
        if (&one == kept.data()) {
            canvas.Fill(QRectF(left, ground.ruler.bottom() - 9, kLine, 10), colours.transport);
            canvas.Mask(masks.PlayheadFlag(), left - 5, ground.ruler.bottom() - 11, colours.transport);
        } else {
            canvas.Fill(QRectF(left, one.area.top(), kLine, one.area.height()), colours.transport);
        }
        window.BlitRectangle(one.area);
    }
}

}  // namespace quib
