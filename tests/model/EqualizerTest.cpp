// SPDX-License-Identifier: GPL-3.0-or-later
#include "Testing.h"
#include "model/Equalizer.h"

namespace quib {
namespace {

TEST(Equalizer, mapsControlsToUnits) {
    EXPECT_NEAR(EqFrequencyHertz(0), 20, 1e-9);
    EXPECT_NEAR(EqFrequencyHertz(1), 16000, 1e-6);
    EXPECT_NEAR(EqQuality(1, 0), 0.2, 1e-9);
    EXPECT_NEAR(EqQuality(1, 1), 5, 1e-9);
    EXPECT_NEAR(EqQuality(0, 1), 1.4, 1e-9);
    EXPECT_NEAR(EqQuality(2, 1), 1.4, 1e-9);
    EXPECT_NEAR(EqGainDecibels(-0.5f), -10, 1e-9);
}

TEST(Equalizer, hasTheGainOfItsKindAtTheBottomTheCentreAndTheTop) {
    constexpr double kRate = 48000;
    const struct {
        EqFilter filter;
        double bottom, centre, top;
    } cases[] = {{EqFilter::lowShelf, 12, 6, 0},
                 {EqFilter::peaking, 0, 12, 0},
                 {EqFilter::highShelf, 0, 6, 12},
                 {EqFilter::bandPass, -50, 0, -50},
                 {EqFilter::lowPass, 0, 0, -50}};
    for (const auto& c : cases) {
        const double quality = c.filter == EqFilter::bandPass || c.filter == EqFilter::lowPass ? 1 : 0.9;
        const EqBandUpdate filter = DesignEqFilter(c.filter, 1000, quality, 12, kRate);
        const double floor = -50;  // zeros are only as deep as float coefficients make them
        EXPECT_NEAR(std::max(EqResponseDecibels(filter, 0.01, kRate), floor), c.bottom, 0.05);
        EXPECT_NEAR(std::max(EqResponseDecibels(filter, 23999, kRate), floor), c.top, 0.05);
        EXPECT_NEAR(EqResponseDecibels(filter, 1000, kRate), c.centre, 0.05);
    }
}

TEST(Equalizer, isTransparentAtNoGain) {
    for (int band = 0; band < kEqBandCount; ++band) {
        const EqBandUpdate filter = DesignEqBand(band, 0.5f, 0.5f, 0, 44100);
        EXPECT_EQ(filter.band, band);
        for (const double hertz : {30.0, 500.0, 15000.0})
            EXPECT_NEAR(EqResponseDecibels(filter, hertz, 44100), 0, 0.01);
    }
}

TEST(Equalizer, isStableForEveryControlAtEveryRate) {
    for (const double rate : {8000.0, 22050.0, 32000.0, 44100.0, 96000.0, 192000.0})
        for (int band = 0; band < kEqBandCount; ++band)
            for (int step = 0; step < 11 * 11 * 11; ++step) {
                const float frequency = static_cast<float>(step % 11) / 10;
                const int qualityStep = step / 11 % 11;
                const int gainStep = step / 121 - 5;
                const float quality = static_cast<float>(qualityStep) / 10;
                const float gain = static_cast<float>(gainStep) / 5;
                const EqBandUpdate f = DesignEqBand(band, frequency, quality, gain, rate);
                ASSERT_LT(std::abs(f.a2), 1) << rate << " " << frequency;
                ASSERT_LT(std::abs(f.a1), 1 + f.a2) << rate << " " << frequency;
            }
}

}  // namespace
}  // namespace quib
