// SPDX-License-Identifier: GPL-3.0-or-later

#include "Testing.h"
#include "engine/CTestTone.h"

namespace quib {
namespace {

TEST(TestToneTest, IsAThousandHertzAtItsLevelAndNeverClicks) {
    for (const double rate : {44100.0, 96000.0}) {
        CTestTone tone;
        const int second = static_cast<int>(rate);
        std::vector<float> left;
        for (int block = 0; block < 30; ++block) {
            std::vector<float> right(static_cast<std::size_t>(second) / 10);
            std::vector<float> samples = right;
            tone.Add(block < 20, rate, samples.data(), right.data(), static_cast<int>(samples.size()));
            EXPECT_EQ(samples, right);
            left.insert(left.end(), samples.begin(), samples.end());
        }
        int crossings = 0;
        float steepest = 0;
        for (std::size_t i = 1; i < left.size(); ++i) {
            if (i >= static_cast<std::size_t>(second) / 2 && i < static_cast<std::size_t>(second) * 3 / 2) {
                crossings += left[i - 1] < 0 && left[i] >= 0 ? 1 : 0;
            }
            steepest = std::max(steepest, std::abs(left[i] - left[i - 1]));
        }
        EXPECT_NEAR(crossings, 1000, 1);
        EXPECT_NEAR(*std::max_element(left.begin(), left.end()), CTestTone::kGain, 1e-3F);
        EXPECT_LT(steepest, CTestTone::kGain * 6.4F * 1000.0F / static_cast<float>(rate));
        EXPECT_EQ(left.back(), 0.0F);
    }
}

}  // namespace
}  // namespace quib
