// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CRollLaneBar.h"

#include <QMenu>

#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "editors/pianoroll/CLaneCapCtrl.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kChooser = 112;
constexpr int kGap = 4;
constexpr int kMoreWidth = 24;
constexpr int kCount = 156;
constexpr int kStep = 48;
constexpr int kBarEdge = 8;
}  // namespace

CRollLaneBar::CRollLaneBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                           CWinControlPianoRoll& pianoRoll)
    : CRollBar(frame, number, left, top, newWidth, newHeight, pianoRoll) {
    controlTop = 2;
    chooser = &AddMenu(kBarEdge, kChooser, 532, [this](QMenu& menu) { window.FillLanes(menu); });
    for (CLaneCapCtrl*& cap : caps) {
        cap = &AddChild<CLaneCapCtrl>(0U, 0, controlTop, kChooser, controlHeight);
        cap->infoString = 532;
        cap->onChange = [this, made = cap](CControl&) { window.ChooseLane(made->Key()); };
    }
    more = &AddButton(0, kMoreWidth, {}, picture::kGlyphPlus, nullptr, 532,
                      [this] { PopUpMenu(window, [this](QMenu& menu) { window.FillLanes(menu); }); });
    count = &AddLabel(0, kCount, {});
    count->alignment = Qt::AlignRight | Qt::AlignVCenter;
    step = &AddButton(0, kStep, Text("STEP"), 0, &stepShown, 429, [this] { window.SetStepEntry(stepShown.IsOn()); });
    PaintChildren();
}

void CRollLaneBar::Resize(int newWidth, int newHeight) {
    CRollBar::Resize(newWidth, newHeight);
    step->SetPosition(newWidth - kBarEdge - kStep, controlTop);
    count->SetPosition(newWidth - 2 * kBarEdge - kStep - kCount, controlTop);
    PlaceCaps();
}

void CRollLaneBar::ShowCount() {
    const std::size_t selected = window.Roll().State().selection.size();
    count->SetText(selected == 0 ? QString() : Text("%1 notes selected").arg(selected));
}

void CRollLaneBar::ShowLanes() {
    const LaneEntry* const shown = window.Lanes().Entry(window.Lanes().Chosen());
    chooser->SetText(shown != nullptr ? QString::fromStdString(shown->description.name) : Text("Velocity"));
    chooser->textColour = Palette().Accent(shown != nullptr ? CLaneCatalog::SectionOf(shown->key) : ESection::kPattern);
    PlaceCaps();
    if (IsShown()) Layout(0, 0, ShownRectangle());
    Refresh();
}

// Those that find no room are in the menu.
void CRollLaneBar::PlaceCaps() {
    const std::vector<LaneEntry> used = window.Lanes().Used();
    const int end = Width() - 3 * kBarEdge - kStep - kCount - kMoreWidth;
    int left = kBarEdge + kChooser + 2 * kGap;
    std::size_t index = 0;
    for (CLaneCapCtrl* const cap : caps) {
        const bool isUsed = index < used.size();
        const int wide = isUsed ? cap->Show(used[index], used[index].key == window.Lanes().Chosen()) : 0;
        const bool fits = isUsed && left + wide + kGap <= end;
        cap->SetVisible(fits);
        index = fits ? index + 1 : used.size();
        if (!fits) continue;
        cap->SetPosition(left, controlTop);
        cap->SetSize(wide, controlHeight);
        left += wide + kGap;
    }
    more->SetPosition(left, controlTop);
}

}  // namespace quib
