// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// List lines of automation points, "KEY;indices;x;y;x;y;...", between files and lanes. Editing thread.

#include <string_view>

#include "model/CEventLanes.h"
#include "model/files/CRecordReader.h"
#include "model/files/CRecordWriter.h"

namespace quib {

// Appends the points of "KEY;lane;x;y;..." to the song slot of a lane below `laneCount`.
void ReadSongPoints(const CRecordReader& line, int laneCount, CEventLanesBuilder& lanes);
// The same for "KEY;pattern;lane;x;y;...".
void ReadPatternPoints(const CRecordReader& line, int laneCount, CEventLanesBuilder& lanes);

// A line for each lane with points of the song, or of one pattern.
void WriteSongPoints(CRecordWriter& writer, std::string_view key, const CEventLanes& lanes);
void WritePatternPoints(CRecordWriter& writer, std::string_view key, const CEventLanes& lanes, int pattern);

}  // namespace quib
