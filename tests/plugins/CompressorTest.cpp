// SPDX-License-Identifier: GPL-3.0-or-later

#include "plugins/CLoadedEffect.h"

namespace quibtest {

namespace {

float Amplitude(double decibels) { return static_cast<float>(std::pow(10.0, decibels / 20.0)); }

struct CPlainCompressor : CLoadedEffect {
    explicit CPlainCompressor(float rate = 48000.0f) : CLoadedEffect("QUIB compressor", rate) {
        Set({{"Threshold", "-20"}, {"Ratio", "4"}, {"Knee", "0"}, {"Attack", "5"}, {"Release", "2000"}});
        Set({{"Make-Up", "0"}, {"Ceiling", "0"}});
        Resume(rate);
    }
    // Decibels by which a steady tone of that level is turned down.
    double ReductionAt(double decibels, double hertz = 1000.0) {
        Resume(48000.0f);
        const StereoSignal out = Run(SineTone(kEffectSecond, hertz, kEffectRate, Amplitude(decibels)));
        return decibels -
               20.0 * std::log10(AmplitudeAt(out.left, hertz, kEffectRate, kEffectSecond / 2, kEffectSecond));
    }
};

TEST(Compressor, FollowsItsCurve) {
    CPlainCompressor compressor;
    EXPECT_NEAR(compressor.ReductionAt(-26.0), 0.0, 0.05);
    EXPECT_NEAR(compressor.ReductionAt(-16.0), 3.0, 0.2);
    EXPECT_NEAR(compressor.ReductionAt(-4.0), 12.0, 0.2);
    // At the threshold the parabola has reached an eighth of slope times knee.
    compressor.Set("Knee", "12");
    EXPECT_NEAR(compressor.ReductionAt(-20.0), 0.75 * 12.0 / 8.0, 0.1);
    compressor.Set("Make-Up", "6");
    EXPECT_NEAR(compressor.ReductionAt(-40.0), -6.0, 0.1);
    compressor.Set({{"Make-Up", "0"}, {"Detector Low Cut", "400"}});
    EXPECT_LT(compressor.ReductionAt(-10.0, 60.0), 0.1);
}

TEST(Compressor, LinksItsSidesAsFarAsToldTo) {
    for (const auto& [link, expected] : {std::pair{"100", 12.0}, {"0", 0.0}}) {
        CPlainCompressor compressor;
        compressor.Set("Stereo Link", link);
        compressor.Resume(48000.0f);
        StereoSignal tone = SineTone(kEffectSecond, 1000.0, kEffectRate, Amplitude(-4.0));
        for (float& sample : tone.right) sample *= Amplitude(-30.0);
        const StereoSignal out = compressor.Run(tone);
        const double right = AmplitudeAt(out.right, 1000.0, kEffectRate, kEffectSecond / 2, kEffectSecond);
        EXPECT_NEAR(-34.0 - 20.0 * std::log10(right), expected, 0.2) << link;
    }
}

TEST(Compressor, TellsWhatItMeasuresSinceItWasAskedLast) {
    CPlainCompressor compressor;
    const auto ask = [](CLoadedEffect& effect, vst2::Measured& told) {
        return effect.Call(vst2::effVendorSpecific, vst2::kTellMeasured, 0, &told);
    };
    vst2::Measured told{};
    const StereoSignal tone = SineTone(kEffectSecond, 1000.0, kEffectRate, Amplitude(-4.0));
    compressor.Run(tone);
    ASSERT_EQ(ask(compressor, told), 1);
    compressor.Run(tone);
    ASSERT_EQ(ask(compressor, told), 1);
    EXPECT_NEAR(told.level, -4.0, 0.1);
    EXPECT_NEAR(told.reduction, 12.0, 0.2);
    compressor.Run(StereoSignal(kEffectSecond));
    ask(compressor, told);
    compressor.Run(StereoSignal(256));
    ASSERT_EQ(ask(compressor, told), 1);
    EXPECT_LT(told.level, -60.0);
    EXPECT_LT(told.reduction, 12.0);
    CLoadedEffect chorus("QUIB chorus");
    EXPECT_EQ(ask(chorus, told), 0);
}

// An attack of one time constant: 63 % of the way in decibels.
TEST(Compressor, TakesItsTimeToComeDown) {
    CPlainCompressor compressor;
    compressor.Set("Attack", "100");
    compressor.Resume(48000.0f);
    const StereoSignal out = compressor.Run(SineTone(kEffectSecond, 2000.0, kEffectRate, Amplitude(-4.0)));
    const long at = compressor.Effect().initialDelay + kEffectSecond / 10;
    const double reduction = -4.0 - 20.0 * std::log10(static_cast<double>(PeakOf(out.left, at - 24, at + 24)));
    EXPECT_NEAR(reduction, 12.0 * (1.0 - std::exp(-1.0)), 0.4);
}

TEST(Compressor, LimiterDelaysByWhatItReportsAndLeavesSoftSoundAlone) {
    for (const float rate : {22050.0f, 48000.0f, 192000.0f}) {
        CPlainCompressor compressor(rate);
        const auto latency = static_cast<std::size_t>(compressor.Effect().initialDelay);
        EXPECT_NEAR(static_cast<double>(latency) / static_cast<double>(rate), 0.00215, 0.00015);
        const StereoSignal noise = Noise(static_cast<long>(rate), 0.05f);
        const StereoSignal out = compressor.Run(noise);
        for (std::size_t i = latency; i < out.left.size(); ++i) {
            ASSERT_NEAR(out.left[i], noise.left[i - latency], 1e-6f) << rate << " at " << i;
        }
    }
}

TEST(Compressor, LimiterNeverExceedsItsCeiling) {
    for (const float rate : {22050.0f, 44100.0f, 192000.0f}) {
        for (const double ceiling : {-12.0, -1.0, 0.0}) {
            for (const char* release : {"10", "1000"}) {
                CPlainCompressor compressor(rate);
                compressor.Set({{"Ratio", "1"}, {"Level", "6"}});
                compressor.Set("Limiter Release", release);
                compressor.Set("Ceiling", std::to_string(ceiling).c_str());
                compressor.Resume(rate);
                StereoSignal signal = Impulse(500, 15.0f, -15.0f);
                signal.Append(Noise(9000, 8.0f));
                signal.Append(SineTone(9000, 40.0, static_cast<double>(rate), 3.0f));
                signal.Append(Impulse(300, -0.9f, 12.0f));
                signal.Append(Noise(9000, 0.4f));
                const StereoSignal out = compressor.Run(signal);
                const float limit = Amplitude(ceiling) * 1.000002f;
                EXPECT_LE(PeakOf(out.left), limit) << rate << " " << ceiling;
                EXPECT_LE(PeakOf(out.right), limit) << rate << " " << ceiling;
                EXPECT_GT(PeakOf(out.left, 600, 18000), 0.65f * limit) << "quieter than it need be";
            }
        }
    }
}

// A quarter of the rate, sampled beside its crests: 3 dB higher between the samples than at them.
TEST(Compressor, LimiterHoldsTheWaveBetweenTheSamples) {
    CPlainCompressor compressor;
    compressor.Set({{"Ratio", "1"}, {"Ceiling", "-3"}});
    compressor.Resume(48000.0f);
    StereoSignal tone(kEffectSecond);
    for (std::size_t i = 0; i < tone.left.size(); ++i) tone.left[i] = tone.right[i] = i % 4 < 2 ? 0.65f : -0.65f;
    ASSERT_GT(AmplitudeAt(tone.left, 12000.0, kEffectRate, 0, kEffectSecond), 0.91);
    const StereoSignal out = compressor.Run(tone);
    const double level =
        20.0 * std::log10(AmplitudeAt(out.left, 12000.0, kEffectRate, kEffectSecond / 2, kEffectSecond));
    EXPECT_LT(level, -2.9);
    EXPECT_GT(level, -3.3);
}

TEST(Compressor, LimiterBendsASteadyBassNoteLittle) {
    CPlainCompressor compressor;
    compressor.Set({{"Ratio", "1"}, {"Ceiling", "-6"}, {"Limiter Release", "500"}});
    compressor.Resume(48000.0f);
    const StereoSignal out = compressor.Run(SineTone(2 * kEffectSecond, 50.0, kEffectRate, 1.0f));
    const auto level = [&](double hertz) {
        return AmplitudeAt(out.left, hertz, kEffectRate, kEffectSecond, 2 * kEffectSecond);
    };
    EXPECT_NEAR(20.0 * std::log10(level(50.0)), -6.0, 0.3);
    EXPECT_LT(20.0 * std::log10(level(150.0) / level(50.0)), -40.0);
    EXPECT_LT(20.0 * std::log10(level(250.0) / level(50.0)), -46.0);
}

}  // namespace

}  // namespace quibtest
