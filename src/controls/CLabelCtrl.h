// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Texts: a plain label, fixed, of the value that it is bound to or asked for anew with each tick, and one that
// opens a menu at the mouse. User-interface thread.

#include "controls/CControl.h"

class QMenu;

namespace quib {

class CLabelCtrl : public CControl {
public:
    CLabelCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
               const QString& fixedText = {});

    void Draw() override;
    bool HasChanged() const override;
    ERole Role() const override;
    QString ShownText() const override { return text; }

    void SetText(const QString& newText);
    const QString& Text() const noexcept { return text; }

    QRgb textColour;
    std::optional<QRgb> fill;  // unset: the background
    int fontHeight = 10;
    bool strong = false;
    bool digits = false;                     // figures of equal width
    bool sunken = false;                     // drawn as a well
    bool vacant = false;                     // a place that holds nothing: a word over a hairline
    const CValue* struckWhileOff = nullptr;  // the switch of what it names
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;

protected:
    QRectF DrawGround(QRgb ground);
    bool IsStruck() const { return struckWhileOff != nullptr && !struckWhileOff->IsOn(); }
    // The text, dimmed and struck out where it names what is off.
    void DrawText(const QRectF& area, QRgb colour);

private:
    QString text;
    bool drawnStruck = false;
};

// A label whose text follows a function. Costs a comparison a tick while it stays the same.
class CLiveLabelCtrl : public CLabelCtrl, public CTicked {
public:
    CLiveLabelCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                   std::function<QString()> textSource);
    void Tick() override;

private:
    std::function<QString()> source;
};

// Shows a menu at the mouse, which goes when it is closed; nothing when it is left empty.
void PopUpMenu(CWinControl& window, const std::function<void(QMenu&)>& fillMenu);

class CLabelMenuCtrl : public CLabelCtrl {
public:
    // `fillMenu` fills the menu at each click; a menu that it leaves empty is not shown.
    CLabelMenuCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                   const QString& fixedText, std::function<void(QMenu&)> fillMenu);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnMouseLeave() override;
    ERole Role() const override { return ERole::kMenu; }

private:
    std::function<void(QMenu&)> buildMenu;
};

}  // namespace quib
