// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ProjectEngine.h"

#include <gtest/gtest.h>

#include "GeneratedProject.h"
#include "project/ProjectFields.h"

namespace quib {
namespace {

TEST(ProjectEngine, WhatIsPublishedIsGatheredAgain) {
    ProjectState state;
    int next = 1;
    for (const ProjectField& field : MasterFields()) {
        if (field.integer) field.integer(state) = next++;
        if (field.real) field.real(state) = static_cast<float>(next++);
    }
    state.master.presetMidi = {next, next + 1, next + 2};
    state.instruments.push_back(std::make_shared<CInstrument>());
    state.master.timeSignature = {7, 8};
    state.masterLanes = CEventLanes().With(CEventLanes::kSongSlot, 1, {{0.0F, 5.0F}});
    for (auto& insert : state.masterInserts) {
        insert.on = 1;
        insert.slot = std::make_shared<const PluginSlot>();
    }
    CAudio audio;
    PublishProject(state, audio);

    ProjectState gathered;
    gathered.master.playlistStepNumber = state.master.playlistStepNumber;  // the engine does not know these two
    gathered.master.presetSelected = state.master.presetSelected;
    GatherProject(audio, gathered);
    EXPECT_EQ(gathered.master, state.master);
    EXPECT_EQ(generated::BytesOf(gathered), generated::BytesOf(state));
    EXPECT_EQ(gathered.instruments, state.instruments);
    EXPECT_EQ(gathered.effects, state.effects);
    for (std::size_t index = 0; index < state.masterInserts.size(); ++index)
        EXPECT_EQ(gathered.masterInserts[index].slot, state.masterInserts[index].slot);
}

}  // namespace
}  // namespace quib
