// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CLaneEdit.h"

#include <utility>

namespace quib {

void CLaneEdit::Take(const LaneState& next) {
    const LaneState before = std::exchange(state, next);
    if (onShown) onShown(before);
}

void CLaneEdit::Show(const LaneState& next) {
    open = false;
    pending = nullptr;
    Take(quib::Select(next, next.selection));
}

void CLaneEdit::Select(const LaneState& next) { Take({state.points, next.selection}); }

void CLaneEdit::Begin() {
    Settle();
    start = state;
    open = true;
}

void CLaneEdit::Preview(const LaneState& next) {
    if (!open) return;
    const bool changes = next.points != state.points;
    if (changes && onPreview) onPreview(next);
    Take(next);
}

void CLaneEdit::Finish(const char* name) {
    pending = nullptr;
    if (!std::exchange(open, false)) return;
    if (*state.points == *start.points) {
        if (onCancel) onCancel();
    } else if (onFinish) {
        onFinish(name);
    }
}

void CLaneEdit::Settle() {
    if (pending != nullptr) Finish(std::exchange(pending, nullptr));
}

void CLaneEdit::Cancel() {
    pending = nullptr;
    if (!std::exchange(open, false)) return;
    if (onCancel) onCancel();
    Take(start);
}

void CLaneEdit::Apply(const LaneState& next, const char* name) {
    Begin();
    Preview(next);
    Finish(name);
}

}  // namespace quib
