// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Automation: the points of one family of lanes (MIDI, mix or plug-in parameters), an immutable value
// that the editing thread builds and publishes whole. Only lanes with points take memory and time.

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "model/CPattern.h"

namespace quib {

// How the value of a lane is shown and applied.
enum class ELaneKind : int {
    kContinuous = 0,
    kLowPassFrequency = 1,
    kBandPassFrequency = 2,
    kHighPassFrequency = 3,
    kGain = 4,
    kResonance = 5,
    kLevel = 6,
    kProgram = 7,
    kSwitch = 8,
};

// What a lane controls. Its index is its place in the family.
struct LaneDescription {
    std::string name;
    float minimum = 0;
    float maximum = 1;
    float thirdValue = 0;  // 2 for switches
    ELaneKind kind = ELaneKind::kContinuous;
};

struct Point {
    float x = 0;  // steps: from the start of the pattern, or of the song for free points
    float y = 0;  // value in the lane's range

    friend bool operator==(const Point&, const Point&) = default;
};

// Sorted by x; equal positions in the order in which they were added.
using PointList = std::vector<Point>;

// The value that `points` give at `position` (steps): the line between the neighbours, or the last
// value passed for kinds that step (switches, programs). Nothing before the first point.
std::optional<float> ValueAt(std::span<const Point> points, float position, ELaneKind kind) noexcept;

class CEventLanes {
public:
    // Points belong to one of the sixteen patterns or, under this slot, to the song.
    static constexpr int kSongSlot = kPatternCount;
    static constexpr int kSlotCount = kPatternCount + 1;

    struct Lane {
        int index = 0;
        std::shared_ptr<const PointList> points;  // never null, never empty
    };
    using LaneList = std::vector<Lane>;  // ascending index

    CEventLanes() = default;
    // `lists`: ascending lane indices, sorted points, no empty list.
    explicit CEventLanes(std::array<LaneList, kSlotCount> lists);

    // Lanes with points in a slot; empty for a slot out of range.
    std::span<const Lane> Lanes(int slot) const noexcept;
    // The points of one lane, or null where it has none.
    const PointList* Find(int slot, int lane) const noexcept;

    // A copy in which one lane holds `points`, sorted here; positions that are no number are left out.
    CEventLanes With(int slot, int lane, PointList points) const;
    // A copy whose points of one slot are those of `other`.
    CEventLanes WithSlotOf(const CEventLanes& other, int slot) const;

private:
    std::array<std::shared_ptr<const LaneList>, kSlotCount> slots;
};

// Gathers points in any order of lanes, as files bring them.
class CEventLanesBuilder {
public:
    // Appends to what the lane has. A slot or lane out of range is ignored.
    void Append(int slot, int lane, PointList points);
    // Leaves the builder empty.
    CEventLanes Build();

private:
    struct Pending {
        int lane;
        PointList points;
    };
    std::array<std::vector<Pending>, CEventLanes::kSlotCount> slots;
};

}  // namespace quib
