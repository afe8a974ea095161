// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/CEventLanes.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quib {

namespace {

void Sort(PointList& points) {
    std::erase_if(points, [](const Point& point) { return !std::isfinite(point.x) || !std::isfinite(point.y); });
    const auto earlier = [](const Point& a, const Point& b) { return a.x < b.x; };
    if (!std::is_sorted(points.begin(), points.end(), earlier)) {
        std::stable_sort(points.begin(), points.end(), earlier);
    }
}

bool Steps(ELaneKind kind) noexcept { return kind == ELaneKind::kSwitch || kind == ELaneKind::kProgram; }

}  // namespace

std::optional<float> ValueAt(std::span<const Point> points, float position, ELaneKind kind) noexcept {
    const auto next = std::upper_bound(points.begin(), points.end(), position,
                                       [](float wanted, const Point& point) { return wanted < point.x; });
    if (next == points.begin()) return std::nullopt;
    const Point& before = *std::prev(next);
    if (next == points.end() || Steps(kind)) return before.y;
    const float share = (position - before.x) / (next->x - before.x);
    return before.y + share * (next->y - before.y);
}

CEventLanes::CEventLanes(std::array<LaneList, kSlotCount> lists) {
    for (std::size_t slot = 0; slot < lists.size(); ++slot) {
        if (!lists[slot].empty()) slots[slot] = std::make_shared<const LaneList>(std::move(lists[slot]));
    }
}

std::span<const CEventLanes::Lane> CEventLanes::Lanes(int slot) const noexcept {
    if (slot < 0 || slot >= kSlotCount) return {};
    const auto& list = slots[static_cast<std::size_t>(slot)];
    return list ? std::span<const Lane>(*list) : std::span<const Lane>();
}

const PointList* CEventLanes::Find(int slot, int lane) const noexcept {
    for (const Lane& candidate : Lanes(slot)) {
        if (candidate.index == lane) return candidate.points.get();
    }
    return nullptr;
}

CEventLanes CEventLanes::With(int slot, int lane, PointList points) const {
    CEventLanes changed = *this;
    if (slot < 0 || slot >= kSlotCount || lane < 0) return changed;
    Sort(points);
    const auto old = Lanes(slot);
    LaneList list(old.begin(), old.end());
    auto place = std::lower_bound(list.begin(), list.end(), lane,
                                  [](const Lane& candidate, int wanted) { return candidate.index < wanted; });
    if (place != list.end() && place->index == lane) place = list.erase(place);
    if (!points.empty()) list.insert(place, {lane, std::make_shared<const PointList>(std::move(points))});
    auto& target = changed.slots[static_cast<std::size_t>(slot)];
    target = list.empty() ? nullptr : std::make_shared<const LaneList>(std::move(list));
    return changed;
}

CEventLanes CEventLanes::WithSlotOf(const CEventLanes& other, int slot) const {
    CEventLanes changed = *this;
    if (slot < 0 || slot >= kSlotCount) return changed;
    const auto index = static_cast<std::size_t>(slot);
    changed.slots[index] = other.slots[index];
    return changed;
}

void CEventLanesBuilder::Append(int slot, int lane, PointList points) {
    if (slot < 0 || slot >= CEventLanes::kSlotCount || lane < 0) return;
    auto& list = slots[static_cast<std::size_t>(slot)];
    if (list.empty() || list.back().lane != lane) {
        list.push_back({lane, std::move(points)});
    } else {
        list.back().points.insert(list.back().points.end(), points.begin(), points.end());
    }
}

CEventLanes CEventLanesBuilder::Build() {
    std::array<CEventLanes::LaneList, CEventLanes::kSlotCount> lists;
    for (std::size_t slot = 0; slot < slots.size(); ++slot) {
        auto& pending = slots[slot];
        std::stable_sort(pending.begin(), pending.end(),
                         [](const Pending& a, const Pending& b) { return a.lane < b.lane; });
        for (std::size_t first = 0, next = 0; first < pending.size(); first = next) {
            PointList points = std::move(pending[first].points);
            for (next = first + 1; next < pending.size() && pending[next].lane == pending[first].lane; ++next) {
                points.insert(points.end(), pending[next].points.begin(), pending[next].points.end());
            }
            Sort(points);
            if (points.empty()) continue;
            lists[slot].push_back({pending[first].lane, std::make_shared<const PointList>(std::move(points))});
        }
        pending.clear();
    }
    return CEventLanes(std::move(lists));
}

}  // namespace quib
