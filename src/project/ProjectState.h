// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A whole project as plain values: what a project file holds. The reader builds one aside, the
// application publishes it into the engine, and for saving gathers one from it. Editing thread.

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/CEventLanes.h"
#include "model/CInstrument.h"
#include "model/SongMarker.h"
#include "model/control/ControlBinding.h"
#include "model/plugin/PluginSlot.h"

namespace quib {

constexpr int kMasterInsertCount = 2;
constexpr int kSharedEffectCount = 4;

struct MasterSettings {
    float tempo = 120;                    // beats per minute, 20..300
    float level = 127;                    // 0..127
    std::int32_t playlistStepNumber = 0;  // steps of the playlist
    float songMode = 1;                   // switch
    float synchroOn = 0;                  // switch
    float loopOn = 0;                     // switch
    std::int32_t loopStart = 0;           // song step
    std::int32_t loopEnd = 0;             // song step
    float crossfade = 0;                  // 0..127
    float presetSelected = 0;             // of the main console
    std::array<std::int32_t, 3> presetMidi{};
    std::array<std::int32_t, 2> timeSignature{};  // beats of a bar, note of a beat; 0: the project has none

    friend bool operator==(const MasterSettings&, const MasterSettings&) = default;
};

// The rhythm detector's settings as the file keeps them.
struct DetectorSettings {
    float eqFrequency = 0;
    float eqResonance = 0;
    float attack = 0;
    float release = 0;
    float threshold = 0;
    float level = 0;
    float gain = 0;

    friend bool operator==(const DetectorSettings&, const DetectorSettings&) = default;
};

struct MasterInsert {
    float on = 0;  // switch
    std::shared_ptr<const PluginSlot> slot = std::make_shared<const PluginSlot>();
};

struct ProjectState {
    MasterSettings master;
    SongMarkers markers;
    std::vector<ControlBinding> bindings;  // instruments by their places, from 1
    DetectorSettings detector;
    std::array<MasterInsert, kMasterInsertCount> masterInserts;
    CEventLanes masterLanes;  // song slot only
    InstrumentList instruments;
    std::array<std::shared_ptr<const PluginSlot>, kSharedEffectCount> effects = {
        std::make_shared<const PluginSlot>(), std::make_shared<const PluginSlot>(),
        std::make_shared<const PluginSlot>(), std::make_shared<const PluginSlot>()};

    // From reading: one line each about what was left out, for the user.
    std::vector<std::string> warnings;
};

// Calls `visit` with the slot of every plug-in place of the project.
template <class Visit>
void ForEachSlot(const ProjectState& state, const Visit& visit) {
    for (const MasterInsert& insert : state.masterInserts) visit(*insert.slot);
    for (const auto& instrument : state.instruments) {
        visit(*instrument->plugin.ForEdit());
        for (const auto& insert : instrument->inserts) visit(*insert.ForEdit());
    }
    for (const auto& effect : state.effects) visit(*effect);
}

}  // namespace quib
