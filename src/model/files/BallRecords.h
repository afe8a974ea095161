// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The records of ball sounds in instruments and in presets: same shapes under different keys.
// Editing thread.

#include <string_view>

#include "model/BallSound.h"
#include "model/files/CRecordReader.h"
#include "model/files/CRecordWriter.h"

namespace quib {

struct BallKeys {
    std::string_view ball;
    std::string_view midi;
    std::string_view horizontal;
    std::string_view vertical;
};

inline constexpr BallKeys kInstrumentBallKeys = {"PRESET_SOUND_BALL", "PRESET_SOUND_MIDI", "PRESET_SOUND_PARAM_HORZ",
                                                 "PRESET_SOUND_PARAM_VERT"};
inline constexpr BallKeys kPresetBallKeys = {"PRESET_BALL", "PRESET_BALL_MIDI", "PRESET_PARAM_HORZ",
                                             "PRESET_PARAM_VERT"};

// Applies a line to the list: a ball begins a sound, the other records belong to the last one. False
// for a line with another key.
bool ReadBallRecord(const CRecordReader& line, const BallKeys& keys, BallSoundList& balls);
void WriteBalls(CRecordWriter& writer, const BallKeys& keys, const BallSoundList& balls);

}  // namespace quib
