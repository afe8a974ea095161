// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A picture of the skin that does nothing but be seen. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CImageCtrl : public CControl {
public:
    CImageCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
               int pictureNumber)
        : CControl(window, number, left, top, newWidth, newHeight), picture(pictureNumber) {}

    void Draw() override;
    ERole Role() const override { return ERole::kNone; }
    void SetPicture(int pictureNumber);

    std::optional<QRgb> colour;  // of a glyph; unset: the accent of its section
    bool isGlyph = false;        // drawn in the section's accent

private:
    int picture;
};

}  // namespace quib
