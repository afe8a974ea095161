// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/EventRecords.h"

#include <utility>

namespace quib {

namespace {

void ReadPoints(CRecordFields fields, int slot, int lane, CEventLanesBuilder& lanes) {
    PointList points;
    points.reserve(fields.Count() / 2);
    Point point;
    while (fields.Next(point.x) && fields.Next(point.y)) points.push_back(point);
    if (!points.empty()) lanes.Append(slot, lane, std::move(points));
}

void WritePoints(CRecordWriter& writer, const PointList& points) {
    for (const Point& point : points) writer.Real(point.x).Real(point.y);
    writer.EndLine();
}

}  // namespace

void ReadSongPoints(const CRecordReader& line, int laneCount, CEventLanesBuilder& lanes) {
    const int lane = line.Integer(1);
    if (!line.HasFields(2) || lane < 0 || lane >= laneCount) return;
    ReadPoints(line.FieldsFrom(2), CEventLanes::kSongSlot, lane, lanes);
}

void ReadPatternPoints(const CRecordReader& line, int laneCount, CEventLanesBuilder& lanes) {
    const int pattern = line.Integer(1);
    const int lane = line.Integer(2);
    if (!line.HasFields(3) || pattern < 0 || pattern >= kPatternCount || lane < 0 || lane >= laneCount) return;
    ReadPoints(line.FieldsFrom(3), pattern, lane, lanes);
}

void WriteSongPoints(CRecordWriter& writer, std::string_view key, const CEventLanes& lanes) {
    for (const CEventLanes::Lane& lane : lanes.Lanes(CEventLanes::kSongSlot)) {
        writer.Key(key).Integer(lane.index);
        WritePoints(writer, *lane.points);
    }
}

void WritePatternPoints(CRecordWriter& writer, std::string_view key, const CEventLanes& lanes, int pattern) {
    for (const CEventLanes::Lane& lane : lanes.Lanes(pattern)) {
        writer.Key(key).Integer(pattern).Integer(lane.index);
        WritePoints(writer, *lane.points);
    }
}

}  // namespace quib
