// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the mouse does on the step boxes of a strip: a click sets or clears, a drag across paints what the
// first box did, up and down while pressed is the velocity. Each gesture is one step of undo.
// User-interface thread.

#include <memory>
#include <optional>

#include "document/CWorkstation.h"
#include "model/edits/NoteState.h"

namespace quib {

class CStepGestures {
public:
    CStepGestures(CWorkstation& document, std::shared_ptr<CInstrument> edited)
        : station(document), instrument(std::move(edited)) {}

    // `pattern`: the one that the boxes show.
    void Press(int pattern, int step);
    // `step`: the box below the mouse. `up`: pixels above the press.
    void Drag(int step, int up);
    void Release();
    void Cancel();

    // Each is one step of undo.
    void Clear(int pattern, int step);
    void SetVelocity(int pattern, int step, int velocity);
    void SetLength(int pattern, int step, float steps);

private:
    enum class EMode { kUndecided, kSet, kClear, kVelocity };

    NoteState Shown(int pattern) const;
    Note NewNote(const CPattern& pattern) const;
    void Show(NoteState next);
    void Apply(int pattern, const NoteState& next, const QString& name);

    CWorkstation& station;
    std::shared_ptr<CInstrument> instrument;
    std::unique_ptr<CGesture> gesture;
    EMode mode = EMode::kUndecided;
    int shownPattern = 0;
    int pressedStep = 0;
    int lastStep = 0;
    NoteState now;    // with what has been painted so far
    NoteState start;  // with the first box set, where velocities are counted from
};

}  // namespace quib
