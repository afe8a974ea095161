// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CControlRouter.h"

#include <algorithm>

#include "engine/ControlPorts.h"

namespace quib {

namespace {

constexpr int kMost = 127;
constexpr int kMostFine = 16383;
constexpr float kStep = 1.0F / kMost;
constexpr float kFineStep = 1.0F / kMostFine;
constexpr float kSoftest = 0.005F;  // a fine hand is taken over from this near

bool IsKey(const MidiMessage& message) noexcept {
    return KindOf(message.status) == kNoteOn || KindOf(message.status) == kNoteOff;
}

// What somebody does and means: no clock, no key that comes up.
bool CanBeLearned(const MidiMessage& message) noexcept {
    return KindOf(message.status) != kNoteOff && !(KindOf(message.status) == kNoteOn && message.data2 == 0);
}

bool IsFine(const ControlSource& source) noexcept {
    return source.kind == EControlSource::kFineController || source.kind == EControlSource::kBend;
}

// Both parts of a fine hand in one number; nothing while a part is awaited. A coarse part behind another one comes
// from a controller that sends no fine ones just now.
std::optional<int> FineNumber(ControlPlay& play, const MidiMessage& message) noexcept {
    if (KindOf(message.status) == kPitchBend) return message.data2 << 7 | message.data1;
    if (message.data1 >= kFineControllers) {
        if (play.coarse < 0) return std::nullopt;
        return (play.coarse & kMost) << 7 | message.data2;
    }
    constexpr int kAwaits = 1 << 7;
    const bool second = play.coarse >= 0 && (play.coarse & kAwaits) != 0;
    play.coarse = message.data2 | kAwaits;
    return second ? std::optional(message.data2 << 7) : std::nullopt;
}

}  // namespace

bool CControlRouter::Take(const MidiMessage& message, BlockContext& block) noexcept {
    if (!message.IsValid()) return false;
    if (learning.IsOn() && CanBeLearned(message)) {
        notices.TryPush(
            {EngineNotice::EKind::kControlHeard, 0, message.status | message.data1 << 8 | message.data2 << 16});
        if (IsRelease(message.status, message.data1, message.data2)) return false;
        ++count;
        return true;
    }
    if (block.controls == nullptr || block.controls->IsEmpty()) return false;
    const bool bound = block.controls->ForEach(message.status, message.data1,
                                               [&](const CControlMap::Entry& entry) { Follow(entry, message, block); });
    if (!bound || IsRelease(message.status, message.data1, message.data2)) return false;
    ++count;
    return true;
}

void CControlRouter::Follow(const CControlMap::Entry& entry, const MidiMessage& message, BlockContext& block) noexcept {
    const ControlSource& source = entry.binding.source;
    ControlPlay& play = *entry.play;
    if (IsKey(message)) return Press(entry, KindOf(message.status) == kNoteOn && message.data2 > 0, block);
    if (source.kind == EControlSource::kProgram) {
        play.isDown = false;
        return Press(entry, true, block);
    }
    if (IsRelative(entry.binding.mode)) return Turn(entry, StepsOf(entry.binding.mode, message.data2), block);
    float hand = 0;
    if (IsFine(source)) {
        const auto number = FineNumber(play, message);
        if (!number) return;
        if (KindOf(message.status) == kControlChange && message.data1 >= kFineControllers) play.coarse &= kMost;
        hand = ShareOf(*number, kMostFine);
    } else {
        hand = ShareOf(source.kind == EControlSource::kPressure ? message.data1 : message.data2, kMost);
    }
    const EControlMode mode = entry.binding.mode;
    if (IsAction(entry.binding.target.kind) || mode == EControlMode::kToggle || mode == EControlMode::kWhileDown) {
        return Press(entry, hand > 0.5F, block);
    }
    Move(entry, hand, IsFine(source) ? kFineStep : kStep, block);
}

void CControlRouter::Press(const CControlMap::Entry& entry, bool down, BlockContext& block) noexcept {
    const ControlBinding& binding = entry.binding;
    const bool begins = down && !entry.play->isDown;
    const bool ends = !down && entry.play->isDown;
    entry.play->isDown = down;
    if (IsAction(binding.target.kind)) {
        if (!begins) return;
        notices.TryPush({EngineNotice::EKind::kControlAction, binding.target.instrument, binding.target.index,
                         static_cast<std::int32_t>(binding.target.kind)});
        entry.play->moves.Set(entry.play->moves.Get() + 1);
    } else if (binding.mode == EControlMode::kWhileDown) {
        if (begins || ends) Set(entry, down ? binding.high : binding.low, block);
    } else if (begins) {
        const auto now = ReadControl(binding.target, block, settings);
        if (!now) return;
        const float middle = (binding.low + binding.high) / 2;
        const bool isHigh = binding.high > binding.low ? *now > middle : *now < middle;
        Set(entry, isHigh ? binding.low : binding.high, block);
    }
}

void CControlRouter::Turn(const CControlMap::Entry& entry, int steps, BlockContext& block) noexcept {
    const ControlBinding& binding = entry.binding;
    if (IsAction(binding.target.kind)) return Press(entry, steps > 0, block);
    const auto now = ReadControl(binding.target, block, settings);
    if (!now || steps == 0) return;
    const auto [low, high] = std::minmax(binding.low, binding.high);
    const float way = (binding.high < binding.low ? -kStep : kStep) * static_cast<float>(steps);
    // A value outside of the range comes back by steps, too.
    const float next = *now + way;
    Set(entry, way > 0 ? std::min(next, std::max(high, *now)) : std::max(next, std::min(low, *now)), block);
}

void CControlRouter::Move(const CControlMap::Entry& entry, float hand, float step, BlockContext& block) noexcept {
    const ControlBinding& binding = entry.binding;
    ControlPlay& play = *entry.play;
    const float wanted = binding.low + (binding.high - binding.low) * hand;
    play.hand.Set(wanted);
    if (binding.mode == EControlMode::kPickUp) {
        const auto now = ReadControl(binding.target, block, settings);
        if (!now) return;
        const auto [low, high] = std::minmax(binding.low, binding.high);
        const float near = std::max(step * (high - low), kSoftest);
        const auto taken = play.takeOver.Take(wanted, *now, near, low, high);
        play.waits.Set(taken ? 0 : 1);
        if (!taken) return;
    }
    Set(entry, wanted, block);
}

bool CControlRouter::Set(const CControlMap::Entry& entry, float share, BlockContext& block) noexcept {
    if (!WriteControl(entry.binding.target, std::clamp(share, 0.0F, 1.0F), block, settings)) return false;
    if (const auto now = ReadControl(entry.binding.target, block, settings)) entry.play->takeOver.Written(*now);
    entry.play->moves.Set(entry.play->moves.Get() + 1);
    return true;
}

}  // namespace quib
