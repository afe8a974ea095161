// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/BallRecords.h"

#include <algorithm>
#include <array>
#include <optional>

#include "model/CInstrument.h"
#include "model/plugin/CPlugin.h"

namespace quib {

namespace {

constexpr float kBallRange = 127;
constexpr float kAssignmentRange = 128;
constexpr int kSlowestRate = 16;
constexpr int kLastController = 127;

// Keys that say themselves what the assignment moves.
struct TargetKey {
    std::string_view key;
    EBallTarget target;
    bool horizontal;
};
constexpr std::array<TargetKey, 6> kTargetKeys = {{
    {"PRESET_SOUND_MIX_PARAM_HORZ", EBallTarget::kMix, true},
    {"PRESET_SOUND_MIX_PARAM_VERT", EBallTarget::kMix, false},
    {"PRESET_SOUND_INSERT1_PARAM_HORZ", EBallTarget::kInsert1, true},
    {"PRESET_SOUND_INSERT1_PARAM_VERT", EBallTarget::kInsert1, false},
    {"PRESET_SOUND_INSERT2_PARAM_HORZ", EBallTarget::kInsert2, true},
    {"PRESET_SOUND_INSERT2_PARAM_VERT", EBallTarget::kInsert2, false},
}};

BallSound ReadBall(const CRecordReader& line) {
    BallSound ball;
    ball.x = std::clamp(line.Real(1), 0.0F, kBallRange);
    ball.y = std::clamp(line.Real(2), 0.0F, kBallRange);
    ball.rate = std::clamp(line.Integer(3), 0, kSlowestRate);
    return ball;
}

void ReadMidi(const CRecordReader& line, BallSound& ball) {
    ball.channelSelector = std::clamp(line.Integer(1), 0, kLastChannelSelector);
    ball.controllerX = std::clamp(line.Integer(2), 0, kLastController);
    ball.controllerY = std::clamp(line.Integer(3), 0, kLastController);
}

// Nothing for a target or a parameter that cannot be.
std::optional<BallAssignment> ReadAssignment(const CRecordReader& line, std::optional<EBallTarget> target) {
    const std::int32_t number = target ? static_cast<std::int32_t>(*target) : line.Integer(1);
    const std::int32_t parameter = line.Integer(2);
    if (!line.HasFields(6) || number < 0 || number > static_cast<std::int32_t>(EBallTarget::kInsert2)) return {};
    if (parameter < 0 || parameter >= CPlugin::kMaximumParameters) return {};
    return BallAssignment{static_cast<EBallTarget>(number), parameter, std::clamp(line.Real(3), 0.0F, kAssignmentRange),
                          std::clamp(line.Real(4), 0.0F, kAssignmentRange), line.Real(5)};
}

void AddAssignment(const CRecordReader& line, std::optional<EBallTarget> target, bool horizontal,
                   BallSoundList& balls) {
    const auto assignment = ReadAssignment(line, target);
    if (balls.empty() || !assignment) return;
    (horizontal ? balls.back().horizontal : balls.back().vertical).push_back(*assignment);
}

void WriteAssignments(CRecordWriter& writer, std::string_view key, const std::vector<BallAssignment>& assignments) {
    for (const BallAssignment& assignment : assignments) {
        writer.Key(key).Integer(static_cast<std::int32_t>(assignment.target)).Integer(assignment.parameter);
        writer.Real(assignment.low).Real(assignment.high).Real(assignment.value).EndLine();
    }
}

}  // namespace

bool ReadBallRecord(const CRecordReader& line, const BallKeys& keys, BallSoundList& balls) {
    const std::string_view key = line.Key();
    if (key == keys.ball) {
        if (line.HasFields(4)) balls.push_back(ReadBall(line));
        return true;
    }
    if (key == keys.midi) {
        if (line.HasFields(4) && !balls.empty()) ReadMidi(line, balls.back());
        return true;
    }
    if (key == keys.horizontal || key == keys.vertical) {
        AddAssignment(line, std::nullopt, key == keys.horizontal, balls);
        return true;
    }
    const auto* const known = std::find_if(kTargetKeys.begin(), kTargetKeys.end(),
                                           [key](const TargetKey& entry) { return entry.key == key; });
    if (known == kTargetKeys.end()) return false;
    AddAssignment(line, known->target, known->horizontal, balls);
    return true;
}

void WriteBalls(CRecordWriter& writer, const BallKeys& keys, const BallSoundList& balls) {
    for (const BallSound& ball : balls) {
        writer.Key(keys.ball).Real(ball.x).Real(ball.y).Integer(ball.rate).EndLine();
        writer.Key(keys.midi).Integer(ball.channelSelector).Integer(ball.controllerX).Integer(ball.controllerY);
        writer.EndLine();
        WriteAssignments(writer, keys.horizontal, ball.horizontal);
        WriteAssignments(writer, keys.vertical, ball.vertical);
    }
}

}  // namespace quib
