// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Presets.h"

#include "Testing.h"
#include "model/plugin/CPlugin.h"

namespace quib {
namespace {

class CPresetsTest : public testing::Test {
protected:
    CPresetsTest() {
        std::string error;
        synth = CPlugin::Load(QUIB_BIN_DIR "/testplugins/ChunkSynth.so", ESlotKind::kInstrument, environment, error);
        EXPECT_TRUE(synth) << error;
        instrument.plugin.Prepare(std::make_shared<const PluginSlot>(PluginSlot{synth, nullptr}));
    }

    PluginEnvironment environment;
    CRenderClock clock;
    CGraveyard graveyard{clock};
    CInstrument instrument;
    std::shared_ptr<CPlugin> synth;
};

std::shared_ptr<const CEventLanes> Lane(int slot, float value) {
    return std::make_shared<const CEventLanes>(CEventLanes().With(slot, 0, {{0.0F, value}}));
}

TEST_F(CPresetsTest, RecallBringsBackEverythingButTheSong) {
    instrument.strip.level.Set(12.5F);
    instrument.strip.eqGain[2].Set(-0.5F);
    instrument.patterns[4].Prepare(std::make_shared<const CPattern>(8, std::vector<Note>{{1.0F, 2.0F, 60, 100}}));
    instrument.patternUsed[4].Set(1);
    SelectStepNumberMode(instrument, EStepNumberMode::kHold);
    instrument.mixLanes.Prepare(Lane(4, 0.25F));
    synth->lanes.Prepare(Lane(4, 0.75F));
    synth->SetParameter(3, 0.5F);
    instrument.presets.push_back(TakePreset(instrument, std::array{60, 64}));

    instrument.strip.level.Set(100.0F);
    instrument.patterns[4].Prepare(std::make_shared<const CPattern>());
    instrument.mixLanes.Prepare(Lane(CEventLanes::kSongSlot, 0.125F));
    synth->lanes.Prepare(std::make_shared<const CEventLanes>());
    SelectStepNumberMode(instrument, EStepNumberMode::kLoop);
    synth->SetParameter(3, 0.9F);

    CPresetRecall recall(instrument, instrument.presets[0], graveyard, 44100.0);
    EXPECT_EQ(instrument.strip.level.Get(), 12.5F);
    EXPECT_EQ(instrument.patterns[4].ForEdit()->Notes().size(), 1U);
    EXPECT_EQ(SelectedStepNumberMode(instrument), EStepNumberMode::kHold);
    ASSERT_NE(instrument.mixLanes.ForEdit()->Find(4, 0), nullptr);
    ASSERT_NE(instrument.mixLanes.ForEdit()->Find(CEventLanes::kSongSlot, 0), nullptr);
    EXPECT_EQ(synth->lanes.ForEdit()->Find(4, 0)->front().y, 0.75F);
    EXPECT_FALSE(recall.Poll());  // nothing renders: patience first
    EXPECT_TRUE(recall.Poll());
    EXPECT_EQ(synth->Parameter(3), 0.5F);
    EXPECT_TRUE(recall.Warnings().empty());
    EXPECT_EQ(instrument.presets[0].keyboardKeys, (std::vector<std::int32_t>{60, 64}));
}

// The output of the plug-in is a constant while a note is held, so any jump is a click of ours.
TEST_F(CPresetsTest, RecallDuringRenderingDoesNotClick) {
    synth->SetParameter(0, 0.8F);
    const Preset loud = TakePreset(instrument, {});
    synth->SetParameter(0, 0.1F);
    const Preset soft = TakePreset(instrument, {});

    constexpr int frames = 512;
    std::atomic<bool> go{true};
    std::atomic<int> blocks{0};
    float largestStep = 0;
    float loudest = 0;
    std::thread render([&] {
        const CRenderThreadScope scope;
        const std::array<BlockEvent, 1> noteOn = {{{0x90, 60, 100, 0}}};
        float last = 0;
        while (go) {
            clock.BeginBlock();
            if (blocks == 0) synth->SendEvents(noteOn);
            synth->Process(frames);
            for (int i = blocks == 0 ? frames : 0; i < frames; ++i) {
                const float sample = synth->Output(0)[i];
                largestStep = std::max(largestStep, std::abs(sample - last));
                loudest = std::max(loudest, sample);
                last = sample;
            }
            if (blocks == 0) last = synth->Output(0)[frames - 1];
            clock.EndBlock();
            ++blocks;
            std::this_thread::yield();
        }
    });
    const auto afterBlocks = [&blocks](int count) {
        for (const int wanted = blocks + count; blocks < wanted;) std::this_thread::yield();
    };
    for (int round = 0; round < 200; ++round) {
        CPresetRecall recall(instrument, round % 2 == 0 ? loud : soft, graveyard, 44100.0);
        do {
            afterBlocks(2);
        } while (!recall.Poll());
        afterBlocks(2);
    }
    go = false;
    render.join();
    EXPECT_GT(loudest, 0.75F);
    EXPECT_LT(largestStep, 0.8F * 2.0F / 256.0F);  // the fade of 256 samples, not the step of 0.7
}

}  // namespace
}  // namespace quib
