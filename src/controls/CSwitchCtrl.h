// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A switch: a click turns its value from 0 to 1 and from anything else to 0. User-interface thread.

#include "controls/CControl.h"

namespace quib {

class CSwitchCtrl : public CControl {
public:
    // Shows a text, or a glyph of the skin; with both, the glyph stands over the text where there is room for
    // that, else before it.
    CSwitchCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                CValue* bound, const QString& text);
    CSwitchCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                CValue* bound, int glyphNumber);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseLeave() override;
    ERole Role() const override;
    QString ShownText() const override { return label; }
    QString SpokenValue() const override;

    bool readOnly = false;   // only shows its value
    bool momentary = false;  // never stays on: a button
    bool lamp = false;       // a round light without a cap
    bool flat = false;       // without a cap until the mouse is on it
    QRgb onColour = 0;       // 0: the section's accent
    int fontHeight = 0;      // 0: as the height wants it
    QString label;
    int glyph = -1;

protected:
    bool IsOn() const noexcept { return Value() != nullptr && Value()->IsOn(); }
    void DrawLamp(const QRectF& area, QRgb accent);
    void DrawFace(const QRectF& area, QRgb colour);

private:
    static constexpr int kOverHeight = 34;  // from which a glyph stands over its text
};

// The cap of a button in a state, shared by whatever can be pressed.
void DrawCap(CCanvas& canvas, const QRectF& area, EState state, QRgb accent);
// The colour of a text or glyph upon it.
QRgb CapTextColour(EState state, QRgb accent);

}  // namespace quib
