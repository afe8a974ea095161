// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CPianoRollEdit.h"

#include <cstring>
#include <utility>

namespace quib {

CPianoRollEdit::CPianoRollEdit(IPianoRollHost& window)
    : host(window),
      state{std::make_shared<const CPattern>(), {}},
      start(state),
      index(std::make_unique<CNoteIndex>(state.pattern)) {}

void CPianoRollEdit::Take(const NoteState& next) {
    const NoteState before = std::exchange(state, next);
    if (state.pattern != before.pattern) index = std::make_unique<CNoteIndex>(state.pattern);
    if (onShown) onShown(before);
}

void CPianoRollEdit::Show(const NoteState& next) {
    if (next.pattern == state.pattern && next.selection == state.selection) return;
    if (next.pattern != state.pattern) {
        open = previewed = false;
        pending = nullptr;
    }
    Take(next);
}

void CPianoRollEdit::Begin() {
    Settle();
    start = state;
    open = true;
    previewed = false;
}

void CPianoRollEdit::Preview(const NoteState& next) {
    const bool isAnother = next.pattern != state.pattern;
    if (!isAnother && next.selection == state.selection) return;
    Take(next);
    if (!isAnother) return host.SelectionChanged(state);
    previewed = true;
    host.Preview(state);
}

void CPianoRollEdit::Finish(const char* name) {
    if (!std::exchange(open, false)) return;
    pending = nullptr;
    const bool changed = state.pattern != start.pattern;
    if (!std::exchange(previewed, false)) return;
    // A way back to where it began is no step.
    if (changed) {
        host.Finish(name);
    } else {
        host.Cancel();
    }
}

void CPianoRollEdit::Cancel() {
    if (!std::exchange(open, false)) return;
    pending = nullptr;
    if (std::exchange(previewed, false)) host.Cancel();
    if (state.pattern != start.pattern || state.selection != start.selection) Take(start);
}

void CPianoRollEdit::Apply(const NoteState& next, const char* name) {
    Begin();
    Preview(next);
    Finish(name);
}

void CPianoRollEdit::Accumulate(const NoteState& next, const char* name) {
    if (pending == nullptr || std::strcmp(pending, name) != 0) Begin();
    Preview(next);
    FinishLater(name);
}

void CPianoRollEdit::Settle() {
    if (pending != nullptr) Finish(std::exchange(pending, nullptr));
}

void CPianoRollEdit::Select(const NoteState& next) {
    if (next.selection == state.selection) return;
    Take(next);
    host.SelectionChanged(state);
}

}  // namespace quib
