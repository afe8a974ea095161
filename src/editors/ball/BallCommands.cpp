// SPDX-License-Identifier: GPL-3.0-or-later
// What the ball pad's window changes: balls, what they move, and the lanes that keep a movement.
#include <algorithm>

#include "editors/ball/CBallPadCtrl.h"
#include "editors/ball/CWinControlBall.h"
#include "model/edits/LaneShapes.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

// --- Changes ----------------------------------------------------------------------------------------------

void CWinControlBall::Publish(BallSoundList next, const char* step) {
    if (!shown) return;
    Document().Contents().SetBallSounds(shown->Id(), std::make_shared<const BallSoundList>(std::move(next)),
                                        Text(step));
}

void CWinControlBall::ChangeBall(const std::function<void(BallSound&)>& change, const char* step) {
    if (Ball() == nullptr) return;
    BallSound next = *Ball();
    change(next);
    BallSoundList changed = WithBall(Balls(), selected, std::move(next));
    if (changed != Balls()) Publish(std::move(changed), step);
}

void CWinControlBall::AddBall() {
    if (Balls().size() >= kMostBalls) return;
    selected = static_cast<int>(Balls().size());
    Publish(WithNewBall(Balls()), TextKey("Add ball"));
    const BallSound fresh;
    Place(selected, {fresh.x, fresh.y});
}

void CWinControlBall::DeleteBall() {
    if (Ball() == nullptr) return;
    std::vector<PadPlace> places = pad->Balls();
    places.erase(places.begin() + selected);
    const CChanges::CMacro step(Document().Changes(), Text("Delete ball"));
    Document().Controllers().Retarget(
        [id = shown->Id(), gone = selected](ControlTarget& target) {
            const bool isBall = target.kind == EControlTarget::kBallX || target.kind == EControlTarget::kBallY;
            if (!isBall || target.instrument != id || target.index < gone) return true;
            return target.index-- != gone;
        },
        Text("Delete ball"));
    Publish(WithoutBall(Balls(), selected), TextKey("Delete ball"));
    // The engine counts balls by their number.
    for (std::size_t ball = 0; ball < places.size(); ++ball) Place(static_cast<int>(ball), places[ball]);
}

void CWinControlBall::Select(int ball) {
    selected = ball;
    memory.Forget();
    ShowBalls();
}

void CWinControlBall::Place(int ball, const PadPlace& place) {
    if (!shown) return;
    for (const int axis : {0, 1}) Document().AutomationRecording().BallMoved(shown, ball, axis);
    Document().Audio().Post({EngineCommand::EKind::kMoveBall, shown->Id(), ball, place[0], place[1]});
}

// Going back, the engine is told as well, and what follows the ball goes with it.
void CWinControlBall::Dropped(int ball, const PadPlace& before) {
    if (!shown || ball >= static_cast<int>(Balls().size())) return;
    const PadPlace after = pad->Balls()[static_cast<std::size_t>(ball)];
    if (after == before) return;
    const auto tell = [audio = &Document().Audio(), id = shown->Id(), ball](const PadPlace& place) {
        return [audio, id, ball, place] {
            audio->Post({EngineCommand::EKind::kMoveBall, id, ball, place[0], place[1]});
        };
    };
    BallSound moved = Balls()[static_cast<std::size_t>(ball)];
    moved.x = after[0];
    moved.y = after[1];
    publishing = true;
    CGesture gesture(Document().Changes());
    gesture.Publish(BallPlace(shown), std::make_shared<const BallSoundList>(WithBall(Balls(), ball, moved)));
    gesture.Note(pad, tell(before), tell(after));
    gesture.Finish(Text("Move ball"));
    publishing = false;
    ShowBalls();
}

void CWinControlBall::SetSpan(int axis, int assignment, float low, float high) {
    if (!shown || Ball() == nullptr) return;
    if (!span) span = std::make_unique<CGesture>(Document().Changes());
    const BallSound next = WithSpan(*Ball(), axis, assignment, low * kBallSpan, high * kBallSpan);
    span->Publish(BallPlace(shown), std::make_shared<const BallSoundList>(WithBall(Balls(), selected, next)));
    const PadPlace place = pad->Balls()[static_cast<std::size_t>(selected)];
    Place(selected, place);
}

void CWinControlBall::Learn(int axis) {
    if (axis >= 0 && Ball() == nullptr) AddBall();
    learning = Ball() != nullptr ? axis : -1;
    ShowAssignments();
}

void CWinControlBall::Assign(const InstrumentLane& lane) {
    if (lane.instrument != shown || lane.key.group == ELaneGroup::kMidi || lane.key.group > ELaneGroup::kInsert2)
        return;
    const int axis = std::exchange(learning, -1);
    ChangeBall([&](BallSound& ball) { ball = Assigned(ball, axis, TargetOf(lane.key.group), lane.key.index); },
               TextKey("Ball assignment"));
    ShowAssignments();
}

// --- The last minute --------------------------------------------------------------------------------------

void CWinControlBall::Remember(const PlayPicture& picture) {
    if (!picture.playing || Ball() == nullptr || selected >= static_cast<int>(pad->Balls().size())) return;
    const PadPlace place = pad->Balls()[static_cast<std::size_t>(selected)];
    const LanePlace now = LanePlaceOf(picture, shown->Id(), Document().Audio().settings.songMode.IsOn());
    if (now.slot >= 0 && now.step >= 0) memory.Remember({now.slot, now.step, place[0], place[1], Nanoseconds()});
}

void CWinControlBall::KeepMovement() {
    if (Ball() == nullptr || memory.IsEmpty()) return;
    CGesture gesture(Document().Changes());
    for (const int axis : {0, 1}) {
        for (const BallAssignment& assignment : AssignmentsOf(*Ball(), axis)) {
            const LaneEntry* const entry = EntryOf(assignment);
            const auto place = Document().Lanes().PlaceOf(shown, GroupOf(assignment.target));
            if (entry == nullptr || !place.target) continue;
            const LaneDescription& range = entry->description;
            const LaneLimits limits = {range.minimum, range.maximum, range.kind, static_cast<float>(kMaximumSongStep)};
            memory.Replay(assignment, axis, [&](int slot, PointList movement) {
                const bool ofInsert =
                    entry->key.group == ELaneGroup::kInsert1 || entry->key.group == ELaneGroup::kInsert2;
                if (ofInsert && slot != CEventLanes::kSongSlot) return;
                for (Point& point : movement) point.y = range.minimum + limits.Range() * point.y;
                const PointList* const old = place.target->ForEdit()->Find(slot, entry->key.index);
                const LaneState before = {std::make_shared<const PointList>(old != nullptr ? *old : PointList()), {}};
                const LaneState after =
                    ReplaceSpan(before, limits, Thinned(movement, limits, kRecordingTolerance * limits.Range()), false);
                gesture.Publish(place, std::make_shared<const CEventLanes>(
                                           place.target->ForEdit()->With(slot, entry->key.index, *after.points)));
            });
        }
    }
    gesture.Finish(Text("Keep the ball's movement"));
}

}  // namespace quib
