// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Finds out what a hand moves on a controller from the first messages of it: a key, a knob, a knob with a fine part, an
// encoder that tells steps, a button. One thread.

#include <cstdint>
#include <optional>
#include <vector>

#include "model/control/ControlBinding.h"

namespace quib {

class CControlLearner {
public:
    static constexpr std::uint64_t kPatience = 400'000'000;  // nanoseconds from the first message on

    struct Learned {
        ControlSource source;
        EControlMode mode = EControlMode::kPickUp;  // the usual one for it
    };

    // A message and its nanosecond. Gives the answer as soon as it is certain.
    std::optional<Learned> Hear(int status, int data1, int data2, std::uint64_t now);
    // The best answer, once enough time has gone by.
    std::optional<Learned> Settle(std::uint64_t now);
    void Forget() { *this = {}; }

private:
    std::optional<Learned> HearController(int selector, int number, int data, std::uint64_t now);
    Learned Answer() const;

    std::optional<ControlSource> heard;  // a controller
    std::vector<int> values;
    std::uint64_t first = 0;
};

}  // namespace quib
