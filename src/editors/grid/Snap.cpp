// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/grid/Snap.h"

namespace quib {

double SnapLength(const Snap& snap, const Meter& meter) noexcept {
    switch (snap.kind) {
        case Snap::EKind::kOff:
            return 0;
        case Snap::EKind::kTimebase:
            return meter.StepsPerTick();
        case Snap::EKind::kFraction:
            return meter.StepsPerWhole() / (snap.denominator < 1 ? 1 : snap.denominator) *
                   (snap.triplet ? 2.0 / 3.0 : 1.0);
        case Snap::EKind::kStep:
            break;
    }
    return 1;
}

std::string SnapName(const Snap& snap) {
    switch (snap.kind) {
        case Snap::EKind::kOff:
            return "Off";
        case Snap::EKind::kTimebase:
            return "Tick";
        case Snap::EKind::kFraction:
            return "1/" + std::to_string(snap.denominator) + (snap.triplet ? "T" : "");
        case Snap::EKind::kStep:
            break;
    }
    return "Step";
}

std::vector<Snap> SnapChoices() {
    std::vector<Snap> choices = {{Snap::EKind::kOff}, {Snap::EKind::kTimebase}, {Snap::EKind::kStep}};
    for (const bool triplet : {false, true}) {
        for (int denominator = 1; denominator <= 64; denominator *= 2) {
            choices.push_back({Snap::EKind::kFraction, denominator, triplet});
        }
    }
    return choices;
}

}  // namespace quib
