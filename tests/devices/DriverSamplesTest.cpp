// SPDX-License-Identifier: GPL-3.0-or-later
#include "Testing.h"
#include "devices/DriverSamples.h"

namespace quib {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes Convert(const std::vector<float>& samples, ESampleType type, EByteOrder order = EByteOrder::kLittle) {
    Bytes bytes(samples.size() * BytesOf(type) + 2, 0xee);
    ToDriverSamples(samples.data(), bytes.data() + 1, samples.size(), type, order);  // not aligned
    EXPECT_EQ(bytes.front(), 0xee);
    EXPECT_EQ(bytes.back(), 0xee) << "written behind the end";
    return {bytes.begin() + 1, bytes.end() - 1};
}

std::int64_t IntegerAt(const Bytes& bytes, std::size_t index, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;) value = value << 8 | bytes[index * size + i];
    const int unused = 64 - static_cast<int>(size) * 8;
    return static_cast<std::int64_t>(value << unused) >> unused;
}

TEST(DriverSamplesTest, EdgesBecomeExactlyTheseIntegers) {
    const std::vector<float> samples = {
        0.0F, 0.99F, -0.99F, 0.5F, -1.0F, 1e-7F, 3.0F / 16777216.0F, std::numeric_limits<float>::quiet_NaN()};
    const struct {
        ESampleType type;
        std::vector<std::int64_t> expected;
    } cases[] = {
        {ESampleType::kInt16, {0, 32439, -32440, 16383, -32768, 0, 0, 0}},
        {ESampleType::kInt24, {0, 8304722, -8304722, 4194304, -8388608, 0, 1, 0}},
        {ESampleType::kInt32, {0, 8304722 * 256, -8304722 * 256, 4194304 * 256, -2147483648, 0, 256, 0}},
        {ESampleType::kInt32Of24, {0, 8304722, -8304722, 4194304, -8388608, 0, 1, 0}},
        {ESampleType::kInt32Of20, {0, 519045, -519046, 262144, -524288, 0, 0, 0}},
        {ESampleType::kInt32Of18, {0, 129761, -129762, 65536, -131072, 0, 0, 0}},
        {ESampleType::kInt32Of16, {0, 32440, -32441, 16384, -32768, 0, 0, 0}},
    };
    for (const auto& [type, expected] : cases) {
        const Bytes bytes = Convert(samples, type);
        for (std::size_t index = 0; index < samples.size(); ++index) {
            EXPECT_EQ(IntegerAt(bytes, index, BytesOf(type)), expected[index])
                << "type " << static_cast<int>(type) << ", sample " << samples[index];
        }
    }
}

TEST(DriverSamplesTest, EverySampleIsTheRoundedValueInEitherByteOrder) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> noise(-0.99F, 0.99F);
    std::vector<float> samples(1003);
    for (float& sample : samples) sample = noise(random);
    for (int number = 0; number <= static_cast<int>(ESampleType::kFloat64); ++number) {
        const auto type = static_cast<ESampleType>(number);
        const std::size_t size = BytesOf(type);
        const Bytes little = Convert(samples, type);
        Bytes big = Convert(samples, type, EByteOrder::kBig);
        for (std::size_t at = 0; at < big.size(); at += size) {
            std::reverse(big.begin() + static_cast<std::ptrdiff_t>(at),
                         big.begin() + static_cast<std::ptrdiff_t>(at + size));
        }
        EXPECT_EQ(big, little) << number;
        for (std::size_t index = 0; index < samples.size(); ++index) {
            if (type == ESampleType::kInt16) {
                const float exact = samples[index] * 32767.505859375F - 0.5F;
                EXPECT_EQ(IntegerAt(little, index, 2), std::lrint(exact));
            } else if (type == ESampleType::kInt24) {
                EXPECT_EQ(IntegerAt(little, index, 3), std::lrint(samples[index] * 8388608.0F - 0.5F));
            } else if (type == ESampleType::kFloat64) {
                double value = 0;
                std::memcpy(&value, little.data() + index * 8, 8);
                EXPECT_EQ(value, static_cast<double>(samples[index]));
            } else if (type == ESampleType::kFloat32) {
                EXPECT_EQ(std::memcmp(little.data() + index * 4, &samples[index], 4), 0);
            }
        }
    }
}

}  // namespace
}  // namespace quib
