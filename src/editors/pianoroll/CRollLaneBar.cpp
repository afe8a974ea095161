// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CRollLaneBar.h"

#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "texts/Texts.h"

namespace quib {

CRollLaneBar::CRollLaneBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                           CWinControlPianoRoll& pianoRoll)
    : CRollBar(frame, number, left, top, newWidth, newHeight, pianoRoll) {
    controlTop = 2;
    auto& shownLane = AddLabel(8, 120, Text("Velocity"));
    shownLane.textColour = Palette().Accent(ESection::kPattern);
    shownLane.strong = true;
    AddButton(132, 44, Text("STEP"), 0, &stepShown, 429, [this] { window.SetStepEntry(stepShown.IsOn()); });
    count = &AddLabel(newWidth - 208, 200, {});
    count->alignment = Qt::AlignRight | Qt::AlignVCenter;
    PaintChildren();
}

void CRollLaneBar::Resize(int newWidth, int newHeight) {
    CRollBar::Resize(newWidth, newHeight);
    count->SetPosition(newWidth - 220, controlTop);
}

void CRollLaneBar::ShowCount() {
    const std::size_t selected = window.Roll().State().selection.size();
    count->SetText(selected == 0 ? QString() : Text("%1 notes selected").arg(selected));
}

}  // namespace quib
