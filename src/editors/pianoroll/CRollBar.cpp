// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CRollBar.h"

#include <QMenu>

#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"

namespace quib {

CRollBar::CRollBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                   CWinControlPianoRoll& pianoRoll)
    : CControl(frame, number, left, top, newWidth, newHeight), window(pianoRoll) {}

void CRollBar::Draw() { Canvas().Fill(Rectangle(), Palette().Colour(QStringLiteral("panel"))); }

void CRollBar::Resize(int newWidth, int newHeight) { SetSize(newWidth, newHeight); }

CLabelCtrl& CRollBar::AddLabel(int left, int newWidth, const QString& text) {
    auto& label = AddChild<CLabelCtrl>(0U, left, controlTop, newWidth, controlHeight, text);
    label.textColour = Palette().Colour(QStringLiteral("textMuted"));
    return label;
}

CSwitchCtrl& CRollBar::AddButton(int left, int newWidth, const QString& text, int glyph, CValue* shown, int info,
                                 std::function<void()> run) {
    CSwitchCtrl& button = glyph > 0 ? AddChild<CSwitchCtrl>(0U, left, controlTop, newWidth, controlHeight, shown, glyph)
                                    : AddChild<CSwitchCtrl>(0U, left, controlTop, newWidth, controlHeight, shown, text);
    button.momentary = shown == nullptr;
    button.section = ESection::kPattern;
    button.infoString = info;
    button.onChange = [run = std::move(run)](CControl&) { run(); };
    return button;
}

CLabelMenuCtrl& CRollBar::AddMenu(int left, int newWidth, int info, std::function<void(QMenu&)> fill) {
    auto& menu = AddChild<CLabelMenuCtrl>(0U, left, controlTop, newWidth, controlHeight, QString(), std::move(fill));
    menu.infoString = info;
    return menu;
}

void CRollBar::PaintChildren() {
    for (const auto& child : Children()) child->backgroundColour = Palette().Colour(QStringLiteral("panel"));
}

QAction* AddChoice(QMenu& menu, const QString& text, bool chosen, const std::function<void()>& choose) {
    QAction* const action = menu.addAction(text, choose);
    action->setCheckable(true);
    action->setChecked(chosen);
    return action;
}

}  // namespace quib
