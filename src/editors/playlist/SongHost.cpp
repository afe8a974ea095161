// SPDX-License-Identifier: GPL-3.0-or-later
// What lanes, ruler and commands ask of the song pane, and its keys.
#include <algorithm>

#include "controls/CInfoCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "editors/playlist/CSongPane.h"
#include "texts/Texts.h"

namespace quib {

void CSongPane::MakeCurrent(CPlayListCtrlEx& lane) {
    const int index = station.Stack().IndexOf(lane.Instrument().Id());
    active = true;
    if (index == station.Selection().CurrentIndex()) return;
    station.Selection().SetCurrent(index);
    if (onCurrent) onCurrent(index);
}

bool CSongPane::HasKeys(const CPlayListCtrlEx& lane) const { return IsActive() && &lane == Current(); }

void CSongPane::OpenPattern(int pattern) {
    station.Contents().SelectPattern(station.Selection().CurrentIndex(), pattern);
    if (onOpenPianoRoll) onOpenPianoRoll();
}

void CSongPane::ScrollTo(int pixels) {
    if (view.time.ScrollTo(pixels)) ViewMoved();
}

void CSongPane::ScrollBy(int pixels) { ScrollTo(view.time.Scroll() + pixels); }

void CSongPane::Zoom(bool in, int anchor) {
    if (in ? view.time.ZoomIn(anchor) : view.time.ZoomOut(anchor)) ViewMoved();
}

void CSongPane::SetLaneHeight(int wanted) {
    const int next = std::clamp(wanted, SongView::kLowestLane, SongView::kHighestLane);
    if (next == view.laneHeight) return;
    view.laneHeight = next;
    PlaceLanes();
    area->Layout(X(), Y(), ShownRectangle());
    area->Refresh();
    laneBar->Refresh();
}

void CSongPane::TurnWheel(int place, std::uint32_t word) {
    const bool up = NotchesOf(word) > 0;
    const bool shift = (word & kWheelShift) != 0;
    const bool control = (word & kWheelControl) != 0;
    if (control && shift) return SetLaneHeight(view.laneHeight + (up ? 12 : -12));
    if (control) return Zoom(up, place);
    if (shift) return ScrollBy(static_cast<int>(-NotchesOf(word) * 60));
    laneBar->OnMouseWheel(0, 0, word);
}

void CSongPane::Tell(const QString& text) {
    if (Owner().infoPanel != nullptr) Owner().infoPanel->Show(text);
}

void CSongPane::Locate(int step) {
    if (step != station.Audio().Picture().globalStep) station.Transport().Locate(step);
}

void CSongPane::CurrentPatternChanged(CPlayListCtrlEx& lane) {
    if (&lane == Current()) ShowTexts();
}

void CSongPane::DraggedTo(CPlayListCtrlEx& lane, int py) {
    CPlayListCtrlEx* over = &lane;
    constexpr int kShake = 4;  // pixels beyond its lane that an item may be taken and stay
    if (py < lane.Y() - kShake || py >= lane.Y() + lane.Height() + kShake) {
        const auto under = std::find_if(lanes.begin(), lanes.end(), [py](const CPlayListCtrlEx* one) {
            return py >= one->Y() && py < one->Y() + one->Height();
        });
        over = under != lanes.end() ? *under : nullptr;
    }
    drag.Follow(lane, over);
}

void CSongPane::ShowItemMenu(CPlayListCtrlEx& /*lane*/) {
    PopUpMenu(Owner(), [this](QMenu& menu) { commands.FillItemMenu(menu); });
}

void CSongPane::ShowRulerMenu(int step) {
    PopUpMenu(Owner(), [this, step](QMenu& menu) { commands.FillRulerMenu(menu, step); });
}

void CSongPane::AskMarker(int step) {
    QString known;
    for (const SongMarker& marker : view.markers) {
        if (marker.step == step) known = QString::fromStdString(marker.name);
    }
    ruler->onTextEntry = [this, step](CControl&, const QString& text) { station.Song().SetMarker(step, text); };
    ruler->entryText = known.isEmpty() ? Text("Part") : known;
    ruler->entryTitle = Text("Marker");
    Owner().RunManualEntry(*ruler);
    ruler->entryTitle.clear();  // a double click is no way to it
}

void CSongPane::Bounce(bool loop) {
    if (onBounce) onBounce(loop);
}

// --- Keys

void CSongPane::OnKeyDown(int key) {
    if (IsActive()) commands.RunKey(key, Owner().IsControlHeld());
}

bool CSongPane::RepeatKey(int key) {
    CPlayListCtrlEx* const lane = Current();
    if (!IsActive() || lane == nullptr) return false;
    if (!commands.RunKey(key, Owner().IsControlHeld())) lane->RepeatKey(key);
    return true;
}

}  // namespace quib
