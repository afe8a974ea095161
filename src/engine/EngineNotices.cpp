// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EngineNotices.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "model/plugin/PluginBank.h"

namespace quib {

namespace {

// Instrument, pattern and lane that a recorded point belongs to.
using LaneKey = std::tuple<std::uint32_t, std::int32_t, std::int32_t>;
using RecordedPoints = std::map<LaneKey, PointList>;

std::shared_ptr<CInstrument> Find(const CAudio& audio, std::uint32_t id) {
    for (const auto& instrument : *audio.instruments.ForEdit()) {
        if (instrument->Id() == id) return instrument;
    }
    return nullptr;
}

void AppendPoints(CAudio& audio, const LaneKey& key, const PointList& recorded, const LanesChange& willRecord) {
    const auto& [id, pattern, lane] = key;
    const auto instrument = Find(audio, id);
    if (!instrument || pattern < 0 || pattern >= kPatternCount || lane < 0 || lane >= kMidiLaneCount) return;
    const auto& lanes = instrument->midiLanes.ForEdit();
    const PointList* const known = lanes->Find(pattern, lane);
    PointList points = known != nullptr ? *known : PointList();
    const std::size_t before = points.size();
    for (const Point& point : recorded) {
        if (points.empty() || points.back().x < point.x) points.push_back(point);
    }
    if (points.size() == before) return;
    if (willRecord) willRecord(instrument);
    auto next = std::make_shared<const CEventLanes>(lanes->With(pattern, lane, std::move(points)));
    instrument->midiLanes.Publish(std::move(next), audio.graveyard);
}

void SetProgram(const CAudio& audio, std::uint32_t id, int program) {
    const auto instrument = Find(audio, id);
    if (!instrument) return;
    if (const auto& plugin = instrument->plugin.ForEdit()->plugin) SelectProgram(*plugin, program);
}

}  // namespace

void FollowNotices(CAudio& audio, const std::function<void(const EngineNotice&)>& show, const LanesChange& willRecord) {
    RecordedPoints recorded;
    std::map<std::uint32_t, int> programs;  // the newest of each instrument
    std::vector<EngineNotice> notices;
    for (EngineNotice notice; audio.Fetch(notice);) {
        notices.push_back(notice);
        if (notice.kind == EngineNotice::EKind::kLanePoint) {
            recorded[{notice.instrument, notice.pattern, notice.lane}].push_back({notice.x, notice.y});
        } else if (notice.kind == EngineNotice::EKind::kProgramSelected) {
            programs[notice.instrument] = notice.value;
        }
    }
    for (const auto& [key, points] : recorded) AppendPoints(audio, key, points, willRecord);
    for (const auto& [id, program] : programs) SetProgram(audio, id, program);
    if (!show) return;
    for (const EngineNotice& notice : notices) show(notice);
}

}  // namespace quib
