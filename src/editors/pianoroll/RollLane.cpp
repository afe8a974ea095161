// SPDX-License-Identifier: GPL-3.0-or-later
// What stands below the notes: their velocities, or a lane of the pattern's automation in their place.
#include <QMenu>

#include "controls/CLabelCtrl.h"
#include "editors/automation/CEventCtrl.h"
#include "editors/pianoroll/CRollBar.h"
#include "editors/pianoroll/CRollLaneBar.h"
#include "editors/pianoroll/CVelocityLaneCtrl.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "texts/Texts.h"

namespace quib {

void CWinControlPianoRoll::BuildLane() {
    curve = &Add<CEventCtrl>(0U, 0, 480, 888, 80, catalog, &roll->view.time);
    curve->View().headerHeight = 0;
    curve->wheelIsValue = true;
    curve->infoString = 531;
    curve->onView = [this] { roll->ViewMoved(); };
    curve->Gestures().onMenu = [this] { PopUpMenu(*this, [this](QMenu& menu) { curve->FillMenu(menu); }); };
    lanes.Serve(*curve);
    GiveKeys(false);
}

void CWinControlPianoRoll::ArrangeLane(const QRect& room) {
    curve->View().scaleWidth = roll->view.GridLeft();
    for (CControl* const part : {static_cast<CControl*>(lane), static_cast<CControl*>(curve)}) {
        part->SetPosition(room.x(), room.y());
        part->Resize(room.width(), room.height());
    }
}

void CWinControlPianoRoll::ShowLane() {
    const bool isCurve = lanes.Chosen().has_value();
    lane->SetVisible(!isCurve);
    curve->SetVisible(isCurve);
    if (!isCurve) GiveKeys(false);
    const int end = roll->State().pattern->StepCount();
    curve->patternEnd = end;
    lanes.Show(*curve, static_cast<float>(end));
    laneBar->ShowLanes();
    if (!isCurve) lane->Refresh();
}

void CWinControlPianoRoll::ChooseLane(const std::optional<LaneKey>& key) {
    curve->Edit().Settle();
    lanes.Choose(key);
    lanes.MarkShown();
    ShowLane();
}

// The control that was pressed last has the keys.
void CWinControlPianoRoll::GiveKeys(bool toCurve) {
    curve->takesKeys = toCurve;
    roll->takesKeys = !toCurve;
}

bool CWinControlPianoRoll::IsCurveKeyed() const { return curve->takesKeys; }

// The velocities, what was touched last and what is in use; then everything by its group.
void CWinControlPianoRoll::FillLanes(QMenu& menu) {
    const auto add = [this](QMenu& into, const LaneEntry& entry) {
        AddChoice(into, QString::fromStdString(entry.description.name), entry.key == lanes.Chosen(),
                  [this, key = entry.key] { ChooseLane(key); });
    };
    AddChoice(menu, Text("Velocity"), !lanes.Chosen(), [this] { ChooseLane({}); });
    const auto& touched = Document().AutomationRecording().LastTouched();
    const bool isOurs = touched && shown && touched->first == shown->Id();
    if (const LaneEntry* const moved = isOurs ? lanes.Entry(touched->second) : nullptr) {
        menu.addSection(Text("LAST TOUCHED"));
        add(menu, *moved);
    }
    const std::vector<LaneEntry> used = lanes.Used();
    if (!used.empty()) menu.addSection(Text("USED"));
    for (const LaneEntry& entry : used) add(menu, entry);
    menu.addSeparator();
    QMenu* group = nullptr;
    std::optional<ELaneGroup> last;
    for (const LaneEntry& entry : lanes.Lanes()) {
        if (last != entry.key.group) group = menu.addMenu(catalog.GroupName(shown, entry.key.group));
        last = entry.key.group;
        add(*group, entry);
    }
}

}  // namespace quib
