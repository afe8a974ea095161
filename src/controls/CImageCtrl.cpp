// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CImageCtrl.h"

#include "controls/CWinControl.h"

namespace quib {

void CImageCtrl::SetPicture(int pictureNumber) {
    if (picture == pictureNumber) return;
    picture = pictureNumber;
    Update(false, true);
}

void CImageCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    const QPointF centre = QRectF(Rectangle()).center();
    if (isGlyph) return Canvas().Glyph(Skin(), picture, centre, colour.value_or(Palette().Accent(section)));
    const SkinBitmap& bitmap = Skin().Bitmap(picture, enabled ? EState::kNormal : EState::kDisabled, section);
    Canvas().Blit(bitmap, centre.x() - bitmap.width / 2.0, centre.y() - bitmap.height / 2.0);
}

}  // namespace quib
