// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CAutomationRecording.h"

#include <algorithm>

#include "document/CChanges.h"
#include "engine/CAudio.h"
#include "model/edits/BallEdits.h"
#include "model/edits/LaneShapes.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr const char* kReplaceSetting = "AutomationReplace";

}  // namespace

void CAutomationRecording::Mark(const InstrumentLane& lane, bool held) {
    EngineSettings& settings = context.audio.settings;
    if (lane.key.group == ELaneGroup::kMix && lane.instrument) {
        const std::uint32_t bit = 1U << lane.key.index;
        held ? lane.instrument->heldMix.SetBits(bit) : lane.instrument->heldMix.ClearBits(bit);
    } else if (const auto plugin = lanes.PluginOf(lane.instrument, lane.key.group)) {
        plugin->Hold(lane.key.index, held);
    } else if (lane.key.group == ELaneGroup::kMaster) {
        const std::uint32_t bit = 1U << lane.key.index;
        held ? settings.heldLanes.SetBits(bit) : settings.heldLanes.ClearBits(bit);
    }
}

void CAutomationRecording::Begin(const InstrumentLane& lane, int restingTicks) {
    const Key key{lane.instrument ? lane.instrument->Id() : 0, lane.key};
    const auto known = holding.find(key);
    if (known != holding.end()) {
        // One that is held in its own window is let go there.
        if (known->second.restingTicks >= 0 || known->second.isLetGo) known->second.restingTicks = restingTicks;
        known->second.isLetGo = false;
        return;
    }
    for (const LaneEntry& entry : lanes.Lanes(lane.instrument, true)) {
        if (entry.key != lane.key) continue;
        Mark(lane, true);
        Held held{lane, entry, -1, restingTicks, false, {}};
        Sample(held, context.audio.Picture());
        holding.emplace(key, std::move(held));
        return;
    }
}

void CAutomationRecording::Hold(const CValue* setting, bool held) {
    const auto lane = lanes.Find(setting);
    if (!lane) return;
    if (held) return Begin(*lane, -1);
    const auto known = holding.find({lane->instrument ? lane->instrument->Id() : 0, lane->key});
    if (known != holding.end()) LetGo(known);
}

void CAutomationRecording::HoldParameter(const CPlugin* plugin, int parameter, bool held) {
    const auto lane = lanes.Find(plugin, parameter);
    if (!lane) return;
    if (held) return Begin(*lane, -1);
    const auto known = holding.find({lane->instrument ? lane->instrument->Id() : 0, lane->key});
    if (known != holding.end()) LetGo(known);
}

bool CAutomationRecording::Replaces() const { return context.settings.IsOn(QLatin1String(kReplaceSetting)); }

void CAutomationRecording::SetReplaces(bool on) { context.settings.SetOn(QLatin1String(kReplaceSetting), on); }

bool CAutomationRecording::IsWritten() const {
    return context.audio.Picture().playing && context.audio.recordAutomation.IsOn();
}

void CAutomationRecording::LetGo(std::map<Key, Held>::iterator held) {
    if (!Replaces() || !IsWritten()) return Release(held);
    held->second.isLetGo = true;
    held->second.restingTicks = -1;
}

void CAutomationRecording::ParameterMoved(const CPlugin* plugin, int parameter) {
    if (const auto lane = lanes.Find(plugin, parameter)) Begin(*lane, CAutomationTake::kRestingTicks);
}

void CAutomationRecording::ControllerMoved(const ControlTarget& target) {
    const auto instrument = IsOfInstrument(target.kind) ? context.InstrumentById(target.instrument) : nullptr;
    if (IsOfInstrument(target.kind) && !instrument) return;
    if (target.kind == EControlTarget::kBallX || target.kind == EControlTarget::kBallY) {
        return BallMoved(instrument, target.index, target.kind == EControlTarget::kBallY ? 1 : 0);
    }
    const auto lane = LaneOf(target, instrument);
    if (!lane) return;
    lastTouched = {instrument ? instrument->Id() : 0, lane->key};
    Begin(*lane, CAutomationTake::kRestingTicks);
}

void CAutomationRecording::BallMoved(const std::shared_ptr<CInstrument>& instrument, int ball, int axis) {
    const BallSoundList& balls = *instrument->ballSounds.ForEdit();
    if (ball < 0 || ball >= static_cast<int>(balls.size())) return;
    for (const BallAssignment& follower : AssignmentsOf(balls[static_cast<std::size_t>(ball)], axis)) {
        Begin({instrument, {GroupOf(follower.target), follower.parameter}}, CAutomationTake::kRestingTicks);
    }
}

void CAutomationRecording::PointPlayed(const EngineNotice& notice) {
    if (const auto instrument = context.InstrumentById(notice.instrument))
        take.Take(instrument, {notice.pattern, notice.lane}, {notice.x, notice.y});
}

void CAutomationRecording::Touched(const void* thing, int part) {
    auto lane = lanes.Find(thing);
    if (!lane) lane = lanes.Find(static_cast<const CPlugin*>(thing), part);
    if (lane) lastTouched = {lane->instrument ? lane->instrument->Id() : 0, lane->key};
}

void CAutomationRecording::Release(std::map<Key, Held>::iterator held) {
    Sample(held->second, context.audio.Picture());
    Commit(held->second);
    Mark(held->second.lane, false);
    holding.erase(held);
}

// A place before the last one is the next pass of a loop, which is a movement of its own.
void CAutomationRecording::Sample(Held& held, const PlayPicture& picture) {
    const bool song = context.audio.settings.songMode.IsOn();
    const ELaneGroup group = held.lane.key.group;
    const bool hasPlace = song || group == ELaneGroup::kMix || group == ELaneGroup::kPlugin;
    const std::uint32_t owner = held.lane.instrument ? held.lane.instrument->Id() : 0;
    const LanePlace now =
        hasPlace && context.audio.recordAutomation.IsOn() ? LanePlaceOf(picture, owner, song) : LanePlace();
    const bool goesOn = now.slot == held.slot && (held.samples.empty() || now.step >= held.samples.back().x);
    if (!goesOn) Commit(held);
    held.slot = now.slot;
    if (now.slot < 0) return;
    if (const auto value = lanes.ValueNow(held.lane.instrument, held.lane.key)) {
        held.samples.push_back({now.step, *value});
    }
}

void CAutomationRecording::Commit(Held& held) {
    const PointList samples = std::exchange(held.samples, {});
    if (samples.empty()) return;
    const LaneDescription& range = held.entry.description;
    const LaneLimits limits = {range.minimum, range.maximum, range.kind, static_cast<float>(kMaximumSongStep)};
    const Place<CEventLanes> place = lanes.PlaceOf(held.lane.instrument, held.lane.key.group);
    if (!place.target) return;
    const PointList movement = Thinned(samples, limits, kRecordingTolerance * limits.Range());
    const PointList* const old = place.target->ForEdit()->Find(held.slot, held.lane.key.index);
    const LaneState before = {std::make_shared<const PointList>(old != nullptr ? *old : PointList()), {}};
    const LaneState after = ReplaceSpan(before, limits, movement, false);
    gesture.Publish(place, std::make_shared<const CEventLanes>(
                               place.target->ForEdit()->With(held.slot, held.lane.key.index, *after.points)));
}

void CAutomationRecording::Tick() {
    const PlayPicture& picture = context.audio.Picture();
    for (auto held = holding.begin(); held != holding.end();) {
        const auto current = held++;
        Sample(current->second, picture);
        int& resting = current->second.restingTicks;
        if (resting >= 0 && --resting < 0) LetGo(current);
    }
    // Asked for only where something may be held: settings are looked for by name.
    const bool replaces = context.audio.recordAutomation.IsOn() && Replaces();
    take.Tick(picture, replaces, context.audio.graveyard);
    if (IsWritten()) return;
    for (auto held = holding.begin(); held != holding.end();) {
        const auto current = held++;
        current->second.isLetGo ? Release(current) : Commit(current->second);
    }
    take.AddTo(gesture);
    if (!gesture.IsEmpty()) gesture.Finish(Text("Record automation"));
}

bool CAutomationRecording::IsWriting(const LaneKey& lane) const noexcept {
    if (lane.group == ELaneGroup::kMidi) return take.IsWriting(lane.index);
    return std::any_of(holding.begin(), holding.end(),
                       [&](const auto& held) { return held.first.second == lane && !held.second.samples.empty(); });
}

void CAutomationRecording::Abandon() {
    for (auto& [key, held] : holding) Mark(held.lane, false);
    holding.clear();
    take.Forget();
    lastTouched.reset();
    gesture.Finish(Text("Record automation"));
}

}  // namespace quib
