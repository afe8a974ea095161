// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/control/CControlLearner.h"

#include <algorithm>

#include "model/control/ControlMessage.h"

namespace quib {

namespace {

constexpr std::size_t kEnough = 16;      // messages
constexpr std::size_t kFewestSteps = 3;  // of an encoder
constexpr int kFastest = 10;             // steps in one message
constexpr int kMost = 127;

template <class Within>
bool All(const std::vector<int>& values, Within&& within) {
    return std::all_of(values.begin(), values.end(), within);
}

// A knob tells each place once; an encoder says the same step again and again.
std::optional<EControlMode> EncoderOf(const std::vector<int>& values) {
    if (values.size() < kFewestSteps || std::adjacent_find(values.begin(), values.end()) == values.end())
        return std::nullopt;
    const auto isUp = [](int value) { return value >= 1 && value <= kFastest; };
    const auto isDownOfTwos = [](int value) { return value >= 128 - kFastest; };
    const auto isDownOfSign = [](int value) { return value > 64 && value <= 64 + kFastest; };
    if (All(values, [](int value) { return value != 64 && std::abs(value - 64) <= kFastest; }))
        return EControlMode::kOffset;
    if (All(values, [&](int value) { return isUp(value) || isDownOfTwos(value); })) return EControlMode::kTwos;
    if (All(values, [&](int value) { return isUp(value) || isDownOfSign(value); })) return EControlMode::kSign;
    return std::nullopt;
}

// Pressed and let go within moments.
bool IsButton(const std::vector<int>& values) {
    return values.size() >= 2 && values.front() == kMost && values[1] == 0 &&
           All(values, [](int value) { return value == 0 || value == kMost; });
}

}  // namespace

std::optional<CControlLearner::Learned> CControlLearner::Hear(int status, int data1, int data2, std::uint64_t now) {
    const int selector = SelectorOf(status);
    switch (KindOf(status)) {
        case kNoteOn:
            return Learned{{EControlSource::kKey, selector, data1}, EControlMode::kToggle};
        case kProgramChange:
            return Learned{{EControlSource::kProgram, selector, data1}, EControlMode::kToggle};
        case kPitchBend:
            return Learned{{EControlSource::kBend, selector, 0}};
        case kChannelPressure:
            return Learned{{EControlSource::kPressure, selector, 0}, EControlMode::kJump};
        case kControlChange:
            return HearController(selector, data1, data2, now);
        default:
            return std::nullopt;
    }
}

std::optional<CControlLearner::Learned> CControlLearner::HearController(int selector, int number, int data,
                                                                        std::uint64_t now) {
    if (!heard) {
        heard = ControlSource{EControlSource::kController, selector, number};
        first = now;
    }
    if (heard->channelSelector != selector) return std::nullopt;
    if (heard->number != number) {
        const int coarse = std::min(heard->number, number);
        const bool isPair = std::abs(heard->number - number) == kFineControllers && coarse < kFineControllers;
        if (!isPair) return std::nullopt;
        return Learned{{EControlSource::kFineController, selector, coarse}};
    }
    values.push_back(data);
    return values.size() >= kEnough || IsButton(values) ? std::optional(Answer()) : std::nullopt;
}

std::optional<CControlLearner::Learned> CControlLearner::Settle(std::uint64_t now) {
    return heard && now - first >= kPatience ? std::optional(Answer()) : std::nullopt;
}

CControlLearner::Learned CControlLearner::Answer() const {
    if (IsButton(values)) return {*heard, EControlMode::kToggle};
    return {*heard, EncoderOf(values).value_or(EControlMode::kPickUp)};
}

}  // namespace quib
