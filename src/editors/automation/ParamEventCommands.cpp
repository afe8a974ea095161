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

void CWinControlParamEvent::ClearLane() { curve->ClearLane(); }

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
    if (source.Entry(key) == nullptr) return;
    source.Choose(key);
    source.MarkShown();
    ShowLane();
    ShowList();
}

// One that was shown before is not forced upon the user again.
bool CWinControlParamEvent::TakeTouched() {
    const auto& last = Document().AutomationRecording().LastTouched();
    const std::uint32_t owner = shown ? shown->Id() : 0;
    if (!last || last == seenTouch || (last->first != owner && last->first != 0)) return false;
    if (source.Entry(last->second) == nullptr) return false;
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
    const LaneEntry* const entry = source.Entry(source.Chosen());
    const auto typed = entry != nullptr ? catalog.ValueOf(*entry, text) : std::nullopt;
    CLaneEdit& edit = curve->Edit();
    if (typed) edit.Apply(SetValueOfSelected(edit.State(), edit.limits, *typed), TextKey("Move points"));
}

void CWinControlParamEvent::Locate(double step) {
    if (song) Document().Transport().Locate(static_cast<int>(step));
}

// --- What its bars show -----------------------------------------------------------------------------------

std::optional<ESection> CWinControlParamEvent::LaneSection() const {
    const auto& chosen = source.Chosen();
    return chosen ? std::optional(CLaneCatalog::SectionOf(*chosen)) : std::nullopt;
}

QString CWinControlParamEvent::LaneName() const {
    const LaneEntry* const entry = source.Entry(source.Chosen());
    return entry != nullptr ? QString::fromStdString(entry->description.name) : QString();
}

QString CWinControlParamEvent::OwnerName() const {
    if (!source.Chosen()) return {};
    const bool ofMaster = source.Chosen()->group >= ELaneGroup::kMaster;
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
    const LaneEntry* const entry = source.Entry(source.Chosen());
    if (state.selection.empty() || entry == nullptr) return {};
    return catalog.ValueText(*entry, (*state.points)[state.selection.front()].y);
}

// --- Commands ---------------------------------------------------------------------------------------------

bool CWinControlParamEvent::CanEdit(EEdit command) const { return curve->CanEdit(command); }

void CWinControlParamEvent::Edit(EEdit command) { curve->DoEdit(command); }

}  // namespace quib
