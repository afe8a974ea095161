// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/ball/CBallMemory.h"

#include "model/edits/BallEdits.h"

namespace quib {

namespace {
constexpr std::uint64_t kMinute = 60'000'000'000;  // nanoseconds
}  // namespace

void CBallMemory::Remember(const Moment& moment) {
    moments.push_back(moment);
    while (moment.time - moments.front().time > kMinute) moments.pop_front();
}

void CBallMemory::Replay(const BallAssignment& assignment, int axis,
                         const std::function<void(int slot, PointList movement)>& write) const {
    PointList pass;
    int slot = -1;
    const auto finish = [&] {
        if (!pass.empty()) write(slot, pass);
        pass.clear();
    };
    for (const Moment& moment : moments) {
        if (moment.slot != slot || (!pass.empty() && moment.step < pass.back().x)) finish();
        slot = moment.slot;
        pass.push_back({moment.step, BallShare(assignment, axis == 0 ? moment.x : moment.y)});
    }
    finish();
}

}  // namespace quib
