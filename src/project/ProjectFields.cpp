// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ProjectFields.h"

#include <array>

namespace quib {

namespace {

using State = ProjectState;

constexpr float kSlowest = 20;
constexpr float kFastest = 300;
constexpr float kFull = 127;
constexpr float kFarthest = kMaximumSongStep;
constexpr float kWidest = 1e6F;  // settings whose range the detector's owner knows

constexpr ProjectField Integer(std::string_view key, std::int32_t& (*value)(State&)) {
    return {key, value, nullptr, 0, kFarthest};
}

constexpr ProjectField Real(std::string_view key, float& (*value)(State&), float low, float high) {
    return {key, nullptr, value, low, high};
}

constexpr ProjectField Detector(std::string_view key, float& (*value)(State&)) {
    return Real(key, value, -kWidest, kWidest);
}

}  // namespace

std::span<const ProjectField> MasterFields() {
    static constexpr std::array<ProjectField, 10> fields = {{
        {"TEMPO", nullptr, [](State& s) -> float& { return s.master.tempo; }, kSlowest, kFastest, true},
        Real(
            "MASTER_LEVEL", [](State& s) -> float& { return s.master.level; }, 0, kFull),
        Integer("PLAYLIST_STEP_NUMBER", [](State& s) -> std::int32_t& { return s.master.playlistStepNumber; }),
        Real(
            "SONG_MODE", [](State& s) -> float& { return s.master.songMode; }, 0, 1),
        Real(
            "SYNCHRO_ON", [](State& s) -> float& { return s.master.synchroOn; }, 0, 1),
        Real(
            "LOOP_ON", [](State& s) -> float& { return s.master.loopOn; }, 0, 1),
        Integer("LOOP_START", [](State& s) -> std::int32_t& { return s.master.loopStart; }),
        Integer("LOOP_END", [](State& s) -> std::int32_t& { return s.master.loopEnd; }),
        Real(
            "CROSSFADE", [](State& s) -> float& { return s.master.crossfade; }, 0, kFull),
        Real(
            "PRESET_SELECTED", [](State& s) -> float& { return s.master.presetSelected; }, -1, kWidest),
    }};
    return fields;
}

std::span<const ProjectField> DetectorFields() {
    static constexpr std::array<ProjectField, 7> fields = {{
        Detector("DETECTOR_EQFREQ", [](State& s) -> float& { return s.detector.eqFrequency; }),
        Detector("DETECTOR_EQRES", [](State& s) -> float& { return s.detector.eqResonance; }),
        Detector("DETECTOR_ATTACK", [](State& s) -> float& { return s.detector.attack; }),
        Detector("DETECTOR_RELEASE", [](State& s) -> float& { return s.detector.release; }),
        Detector("DETECTOR_THRESHOLD", [](State& s) -> float& { return s.detector.threshold; }),
        Detector("DETECTOR_LEVEL", [](State& s) -> float& { return s.detector.level; }),
        Detector("DETECTOR_GAIN", [](State& s) -> float& { return s.detector.gain; }),
    }};
    return fields;
}

}  // namespace quib
