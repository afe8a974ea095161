// SPDX-License-Identifier: GPL-3.0-or-later
#include "EngineFixture.h"

namespace quib {
namespace {

// Keeps the left sample of the last frame that it was given.
struct CLastFrame final : CBlockRecorder {
    bool IsRecording() const noexcept override { return true; }
    void PushBlock(std::span<const std::int16_t> values) noexcept override { left = values[values.size() - 2]; }
    std::int16_t left = 0;
};

class CMasterSectionTest : public CEngineTest {};

TEST_F(CMasterSectionTest, HeadphonesAreTurnedDownWithoutAClickAndTheRecordingStaysAsItIs) {
    constexpr int kFrames = 256;
    Prepare(kFrames);
    CInstrument& instrument = AddInstrument();
    PluginOf(instrument).SetParameter(0, 0.5F);
    instrument.strip.level.Set(127.0F);
    CLastFrame recorder;
    audio.SetRecorder(&recorder);
    for (int block = 0; block < 20; ++block) audio.RenderBlock();
    const float heard = audio.Master(0)[kFrames - 1];
    const std::int16_t recorded = recorder.left;
    ASSERT_GT(heard, 0.9F);

    audio.settings.headphonesLevel.Set(63.0F);  // a quarter
    audio.RenderBlock();
    for (int frame = 1; frame < kFrames; ++frame) {
        for (const int channel : {0, 1}) {
            const float* const samples = audio.Master(channel);
            ASSERT_NEAR(samples[frame - 1] - samples[frame], 0.75F * heard / kFrames, 1e-4F);
        }
    }
    EXPECT_NEAR(audio.Master(0)[kFrames - 1], 0.25F * heard, 1e-4F);
    EXPECT_EQ(recorder.left, recorded);
    EXPECT_NEAR(audio.masterPeak[0].Get(), heard, 0.01F);
    audio.SetRecorder(nullptr);
}

}  // namespace
}  // namespace quib
