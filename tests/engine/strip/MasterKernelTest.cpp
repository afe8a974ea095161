// SPDX-License-Identifier: GPL-3.0-or-later

#include "Testing.h"
#include "engine/strip/StripKernels.h"

namespace quib {
namespace {

void ScalarMaster(MasterState& state, const MasterTargets& targets, float* left, float* right, int frames) {
    const auto channel = [&](float& sample, float& peak) {
        sample = std::min(std::max(sample * state.gain, -0.99f), 0.99f);
        peak = std::max(peak, std::abs(sample)) * 0.9999f;
    };
    for (int i = 0; i < frames; ++i) {
        state.crossfadeA += 0.005f * (targets.crossfadeA - state.crossfadeA);
        state.crossfadeB += 0.005f * (targets.crossfadeB - state.crossfadeB);
        state.gain += 0.005f * (targets.gain - state.gain);
        channel(left[i], state.peakLeft);
        channel(right[i], state.peakRight);
    }
}

TEST(MasterKernel, equalsThePlainDescriptionForEveryBlockSizeAndInstructionSet) {
    const CLevelTables tables;
    for (const EStripInstructions instructions : {EStripInstructions::kSse2, EStripInstructions::kAvx2}) {
        const StripKernels* kernels = FindStripKernels(instructions);
        if (!kernels) continue;
        MasterState ours, plain;
        std::minstd_rand random(3);
        std::uniform_real_distribution<float> noise(-1.3f, 1.3f);
        for (const int frames : {1, 2, 5, 8, 63, 64, 65, 257, 1024, 16384, 3, 200}) {
            const MasterTargets targets =
                MakeMasterTargets(static_cast<float>(random() % 128), static_cast<float>(random() % 128), tables);
            std::vector<float> left(static_cast<std::size_t>(frames)), right(left.size());
            for (float& sample : left) sample = noise(random);
            for (float& sample : right) sample = noise(random) * 0.1f;
            std::vector<float> plainLeft = left, plainRight = right;
            kernels->processMaster(ours, targets, left.data(), right.data(), frames);
            ScalarMaster(plain, targets, plainLeft.data(), plainRight.data(), frames);
            EXPECT_EQ(left, plainLeft);
            EXPECT_EQ(right, plainRight);
            EXPECT_EQ(ours.crossfadeA, plain.crossfadeA);
            EXPECT_EQ(ours.crossfadeB, plain.crossfadeB);
            EXPECT_EQ(ours.gain, plain.gain);
            EXPECT_NEAR(ours.peakLeft, plain.peakLeft, 3e-5f);
            EXPECT_NEAR(ours.peakRight, plain.peakRight, 3e-5f);
        }
    }
}

TEST(MasterKernel, neverExceedsTheClipLevelWhateverComesIn) {
    const StripKernels& kernels = BestStripKernels();
    std::vector<float> left(77, 5.0f), right(77, -5.0f);
    left[3] = right[76] = std::numeric_limits<float>::quiet_NaN();
    left[4] = right[75] = -std::numeric_limits<float>::infinity();
    MasterState state;
    kernels.processMaster(state, {}, left.data(), right.data(), 77);
    for (std::size_t i = 0; i < left.size(); ++i)
        ASSERT_TRUE(std::abs(left[i]) <= 0.99f && std::abs(right[i]) <= 0.99f) << i;
    EXPECT_EQ(left[3], 0);
    EXPECT_EQ(right[76], 0);
    EXPECT_NEAR(state.peakLeft, 0.99f, 1e-3f);
}

}  // namespace
}  // namespace quib
