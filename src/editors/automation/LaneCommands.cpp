// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the Edit menu on a curve, and its own menu.
#include <QMenu>

#include "editors/automation/CEventCtrl.h"
#include "texts/Texts.h"

namespace quib {

bool CEventCtrl::CanEdit(EEdit command) const {
    const LaneState& state = edit.State();
    if (!lane) return false;
    if (command == EEdit::kPaste) return !clip.points.empty();
    if (command == EEdit::kSelectAll) return !state.points->empty();
    return !state.selection.empty();
}

void CEventCtrl::DoEdit(EEdit command) {
    edit.Settle();
    switch (command) {
        case EEdit::kCut:
        case EEdit::kCopy:
            clip = CopySelected(edit.State());
            if (command == EEdit::kCut) edit.Apply(RemoveSelected(edit.State()), TextKey("Cut points"));
            return;
        case EEdit::kPaste: {
            const auto origin = static_cast<double>(clip.origin);
            const bool inSight = origin >= view.time.FirstStep() && origin < view.time.EndStep();
            const double place = playhead >= 0 ? playhead : inSight ? origin : view.time.FirstStep();
            return edit.Apply(PastePoints(edit.State(), edit.limits, clip, view.time.SnapDown(place)),
                              TextKey("Paste points"));
        }
        case EEdit::kDelete:
            return gestures.Delete();
        case EEdit::kSelectAll:
            return edit.Select(SelectAll(edit.State()));
    }
}

void CEventCtrl::ClearLane() {
    edit.Settle();
    edit.Apply(RemoveSelected(SelectAll(edit.State())), TextKey("Clear the lane"));
}

void CEventCtrl::FillMenu(QMenu& menu) {
    const std::array<std::pair<EEdit, const char*>, 5> rows = {{{EEdit::kCut, TextKey("Cut")},
                                                                {EEdit::kCopy, TextKey("Copy")},
                                                                {EEdit::kPaste, TextKey("Paste")},
                                                                {EEdit::kDelete, TextKey("Delete")},
                                                                {EEdit::kSelectAll, TextKey("Select All")}}};
    for (const auto& [command, text] : rows) {
        menu.addAction(Text(text), [this, chosen = command] { DoEdit(chosen); })->setEnabled(CanEdit(command));
    }
    menu.addSeparator();
    menu.addAction(Text("Clear the lane"), [this] { ClearLane(); });
}

}  // namespace quib
