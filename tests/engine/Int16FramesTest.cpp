// SPDX-License-Identifier: GPL-3.0-or-later
#include "Testing.h"
#include "engine/Int16Frames.h"

namespace quib {
namespace {

TEST(Int16FramesTest, meetsFullScaleExactlyAndClampsBeyondIt) {
    const float left[] = {1, -1, 0.5f, 0, 1.5f, -7, std::numeric_limits<float>::quiet_NaN()};
    const float right[] = {-1, 1, -0.5f, 1e-9f, -INFINITY, INFINITY, 1};
    const std::int16_t expected[] = {32767, -32768, -32768, 32767,  16383, -16384, 0,
                                     0,     32767,  -32768, -32768, 32767, 0,      32767};
    std::int16_t converted[16] = {};
    ToInt16Frames(left, right, converted, 7);
    for (std::size_t i = 0; i < 14; ++i) EXPECT_EQ(converted[i], expected[i]) << i;
    EXPECT_EQ(converted[14], 0) << "nothing past the frames";
}

TEST(Int16FramesTest, roundsToNearestEvenAtEveryPlaceOfABlock) {
    std::minstd_rand random(2);
    std::uniform_real_distribution<float> noise(-1.01f, 1.01f);
    for (const int frames : {1, 3, 4, 5, 1000}) {
        std::vector<float> left(static_cast<std::size_t>(frames)), right(left.size());
        for (float& sample : left) sample = noise(random);
        for (float& sample : right) sample = static_cast<float>(static_cast<int>(random() % 65536) - 32768) / 32768.0f;
        std::vector<std::int16_t> converted(2 * left.size());
        ToInt16Frames(left.data(), right.data(), converted.data(), frames);
        const auto expected = [](float x) {
            return static_cast<int>(std::nearbyint(std::min(std::max(x, -1.0f), 1.0f) * 32767.505859375f - 0.5f));
        };
        for (std::size_t i = 0; i < left.size(); ++i) {
            ASSERT_EQ(converted[2 * i], expected(left[i])) << left[i];
            ASSERT_EQ(converted[2 * i + 1], expected(right[i])) << right[i];
        }
    }
}

}  // namespace
}  // namespace quib
