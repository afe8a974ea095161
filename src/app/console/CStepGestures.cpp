// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CStepGestures.h"

#include <algorithm>
#include <utility>

#include "model/edits/NoteEdits.h"
#include "model/edits/NoteShaping.h"
#include "model/edits/PatternEdits.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kShake = 4;  // pixels before a press becomes a change of velocity
constexpr int kVelocity = 100;
constexpr int kMiddleKey = 60;
constexpr int kFirstDrum = 36;

NoteState PaintStep(const NoteState& from, int step, bool set, const Note& model) {
    return set ? SetStep(from, step, model) : ClearStep(from, step);
}

}  // namespace

NoteState CStepGestures::Shown(int pattern) const {
    return {instrument->patterns[static_cast<std::size_t>(pattern)].ForEdit(), {}};
}

// For a step with no note before it: the lowest key of the pattern, else one that is sure to sound.
Note CStepGestures::NewNote(const CPattern& pattern) const {
    const auto plugin = instrument->plugin.ForEdit()->plugin;
    const int usual = plugin && plugin->Identity().isDrumMachine ? kFirstDrum : kMiddleKey;
    return {0, 1, LowestKey(pattern, usual), kVelocity};
}

void CStepGestures::Show(NoteState next) {
    if (next.pattern != now.pattern) gesture->Publish(PatternPlace(instrument, shownPattern), next.pattern);
    now = std::move(next);
}

// A full box waits for what the mouse does: it may be meant to become louder.
void CStepGestures::Press(int pattern, int step) {
    Cancel();
    station.NoteRecording().Hold(true);
    gesture = std::make_unique<CGesture>(station.Changes());
    shownPattern = pattern;
    pressedStep = lastStep = step;
    now = Shown(pattern);
    const bool used = !now.pattern->NotesOfStep(step).empty();
    mode = used ? EMode::kUndecided : EMode::kSet;
    if (!used) Show(SetStep(now, step, NewNote(*now.pattern)));
    start = now;
}

void CStepGestures::Drag(int step, int up) {
    if (!gesture) return;
    if (step != lastStep && mode != EMode::kVelocity) {
        if (mode == EMode::kUndecided) {
            mode = EMode::kClear;
            Show(ClearStep(now, pressedStep));
        }
        const Note model = NewNote(*now.pattern);
        const int way = step > lastStep ? 1 : -1;
        while (lastStep != step) {
            lastStep += way;
            Show(PaintStep(now, lastStep, mode == EMode::kSet, model));
        }
        return;
    }
    const bool alone = step == pressedStep && (mode == EMode::kUndecided || mode == EMode::kSet);
    if (alone && std::abs(up) > kShake) mode = EMode::kVelocity;
    if (mode == EMode::kVelocity) Show(ShiftVelocity(SelectStep(start, pressedStep), up));
}

void CStepGestures::Release() {
    if (!gesture) return;
    if (mode == EMode::kUndecided) {
        mode = EMode::kClear;
        Show(ClearStep(now, pressedStep));
    }
    gesture->Finish(mode == EMode::kVelocity ? Text("Velocity")
                    : mode == EMode::kClear  ? Text("Clear steps")
                                             : Text("Set steps"));
    Cancel();
}

void CStepGestures::Cancel() {
    gesture.reset();
    station.NoteRecording().Hold(false);
}

void CStepGestures::Apply(int pattern, const NoteState& next, const QString& name) {
    if (next.pattern == Shown(pattern).pattern) return;
    station.Contents().SetPattern(instrument->Id(), pattern, next.pattern, name);
}

void CStepGestures::Clear(int pattern, int step) {
    Apply(pattern, ClearStep(Shown(pattern), step), Text("Clear steps"));
}

void CStepGestures::SetVelocity(int pattern, int step, int velocity) {
    Apply(pattern, quib::SetVelocity(SelectStep(Shown(pattern), step), velocity), Text("Velocity"));
}

void CStepGestures::SetLength(int pattern, int step, float steps) {
    Apply(pattern, SetNoteLength(SelectStep(Shown(pattern), step), steps), Text("Length"));
}

}  // namespace quib
