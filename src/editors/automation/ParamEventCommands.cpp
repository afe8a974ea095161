// SPDX-License-Identifier: GPL-3.0-or-later
// What the automation window changes, what its bars ask it for, and the commands of the Edit menu.
#include <QLineEdit>
#include <algorithm>

#include "controls/CEntryDialog.h"
#include "editors/automation/CEventBar.h"
#include "editors/automation/CWinControlParamEvent.h"
#include "texts/Texts.h"

namespace quib {

// --- Changes ----------------------------------------------------------------------------------------------

void CWinControlParamEvent::Publish(const LaneState& state) {
    if (!chosen) return;
    const Place<CEventLanes> place = Document().Lanes().PlaceOf(shown, chosen->group);
    if (!place.target) return;
    if (!gesture) gesture = std::make_unique<CGesture>(Document().Changes());
    publishing = true;
    gesture->Publish(place, std::make_shared<const CEventLanes>(
                                place.target->ForEdit()->With(Slot(), chosen->index, *state.points)));
    publishing = false;
}

void CWinControlParamEvent::FinishEdit(const char* name) {
    if (!gesture) return;
    gesture->Finish(Text(name));
    gesture.reset();
    ShowList();
}

void CWinControlParamEvent::ClearLane() {
    CLaneEdit& edit = curve->Edit();
    edit.Settle();
    edit.Apply(RemoveSelected(SelectAll(edit.State())), TextKey("Clear the lane"));
}

void CWinControlParamEvent::SetSong(bool on) {
    song = on;
    ShowSelection();
    ShowTitle();
}

void CWinControlParamEvent::SetTool(int number) {
    tool = static_cast<ELaneTool>(number);
    curve->Gestures().tool = tool;
    bar->ShowState();
}

void CWinControlParamEvent::SetSnap(const Snap& snap) {
    curve->View().time.snap = snap;
    bar->ShowState();
}

void CWinControlParamEvent::ChooseLane(const LaneKey& key) {
    if (Entry(key) == nullptr) return;
    chosen = key;
    // Which parameters of the plug-in have a lane shown is part of the project.
    if (key.group == ELaneGroup::kPlugin && shown) {
        auto& parameters = shown->eventPluginParameters;
        if (std::find(parameters.begin(), parameters.end(), key.index) == parameters.end()) {
            parameters.push_back(key.index);
            Document().Changes().Touch();
        }
    }
    ShowLane();
    ShowList();
}

// One that was shown before is not forced upon the user again.
bool CWinControlParamEvent::TakeTouched() {
    const auto& last = Document().AutomationRecording().LastTouched();
    const std::uint32_t owner = shown ? shown->Id() : 0;
    if (!last || last == seenTouch || (last->first != owner && last->first != 0)) return false;
    if (Entry(last->second) == nullptr) return false;
    seenTouch = last;
    touched = last->second;
    return true;
}

void CWinControlParamEvent::ShowTouched() {
    if (!isVisible() || curve->Gestures().IsBusy()) return;
    if (TakeTouched()) return ChooseLane(*touched);
    ShowList();
}

void CWinControlParamEvent::TypeTime(const QString& text) {
    CLaneEdit& edit = curve->Edit();
    edit.Apply(MoveSelectedTo(edit.State(), edit.limits, CEntryDialog::NumberOf(text)), TextKey("Move points"));
}

void CWinControlParamEvent::TypeValue(const QString& text) {
    const LaneEntry* const entry = Entry(chosen);
    const auto typed = entry != nullptr ? catalog.ValueOf(*entry, text) : std::nullopt;
    CLaneEdit& edit = curve->Edit();
    if (typed) edit.Apply(SetValueOfSelected(edit.State(), edit.limits, *typed), TextKey("Move points"));
}

void CWinControlParamEvent::Locate(double step) {
    if (song) Document().Transport().Locate(static_cast<int>(step));
}

// --- What its bars show -----------------------------------------------------------------------------------

std::optional<ESection> CWinControlParamEvent::LaneSection() const {
    return chosen ? std::optional(CLaneCatalog::SectionOf(*chosen)) : std::nullopt;
}

QString CWinControlParamEvent::LaneName() const {
    const LaneEntry* const entry = Entry(chosen);
    return entry != nullptr ? QString::fromStdString(entry->description.name) : QString();
}

QString CWinControlParamEvent::OwnerName() const {
    if (!chosen) return {};
    const bool ofMaster = chosen->group >= ELaneGroup::kMaster;
    const QString name = ofMaster || !shown ? Text("Master") : QString::fromStdString(shown->title);
    return QStringLiteral("%1  ·  %2").arg(name, song ? Text("Song") : Text("Pattern %1").arg(pattern + 1));
}

QString CWinControlParamEvent::TimeText() const {
    const LaneState& state = curve->Edit().State();
    if (state.selection.empty()) return {};
    return QString::number(static_cast<double>((*state.points)[state.selection.front()].x), 'f', 2);
}

QString CWinControlParamEvent::ValueText() const {
    const LaneState& state = curve->Edit().State();
    const LaneEntry* const entry = Entry(chosen);
    if (state.selection.empty() || entry == nullptr) return {};
    return catalog.ValueText(*entry, (*state.points)[state.selection.front()].y);
}

// --- Commands ---------------------------------------------------------------------------------------------

bool CWinControlParamEvent::CanEdit(EEdit command) const {
    const LaneState& state = curve->Edit().State();
    if (!chosen) return false;
    if (command == EEdit::kPaste) return !clip.points.empty();
    if (command == EEdit::kSelectAll) return !state.points->empty();
    return !state.selection.empty();
}

void CWinControlParamEvent::Edit(EEdit command) {
    CLaneEdit& edit = curve->Edit();
    edit.Settle();
    switch (command) {
        case EEdit::kCut:
        case EEdit::kCopy:
            clip = CopySelected(edit.State());
            if (command == EEdit::kCut) edit.Apply(RemoveSelected(edit.State()), TextKey("Cut points"));
            return;
        case EEdit::kPaste: {
            const CTimeGrid& time = curve->View().time;
            const auto origin = static_cast<double>(clip.origin);
            const bool visible = origin >= time.FirstStep() && origin < time.EndStep();
            const double place = curve->Playhead() >= 0 ? curve->Playhead() : visible ? origin : time.FirstStep();
            return edit.Apply(PastePoints(edit.State(), edit.limits, clip, time.SnapDown(place)),
                              TextKey("Paste points"));
        }
        case EEdit::kDelete:
            return curve->Gestures().Delete();
        case EEdit::kSelectAll:
            return edit.Select(SelectAll(edit.State()));
    }
}

}  // namespace quib
