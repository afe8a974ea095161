// SPDX-License-Identifier: GPL-3.0-or-later
// Chorus and flanger, measured.

#include "plugins/CLoadedEffect.h"

namespace quibtest {

namespace {

struct COneVoice : CLoadedEffect {
    COneVoice() : CLoadedEffect("QUIB chorus") {
        Set({{"Voices", "1"}, {"Rate", "2"}, {"Depth", "8"}, {"Delay", "5"}, {"Spread", "0"}});
        Set({{"Low Cut", "10"}, {"High Cut", "20000"}});
        Resume(48000.0f);
    }
};

// Frequency of each period of a tone, by its rising zero crossings.
std::vector<double> Frequencies(const std::vector<float>& samples, long begin) {
    std::vector<double> crossings;
    for (auto i = static_cast<std::size_t>(begin); i + 1 < samples.size(); ++i) {
        if (samples[i] < 0.0f && samples[i + 1] >= 0.0f) {
            crossings.push_back(static_cast<double>(i) +
                                static_cast<double>(samples[i] / (samples[i] - samples[i + 1])));
        }
    }
    std::vector<double> frequencies;
    for (std::size_t i = 1; i < crossings.size(); ++i)
        frequencies.push_back(kEffectRate / (crossings[i] - crossings[i - 1]));
    return frequencies;
}

double Gain(CLoadedEffect& effect, double hertz, float amplitude = 0.1f) {
    effect.Resume(48000.0f);
    const StereoSignal out = effect.Run(SineTone(kEffectSecond, hertz, kEffectRate, amplitude));
    return 20.0 * std::log10(AmplitudeAt(out.left, hertz, kEffectRate, kEffectSecond / 2, kEffectSecond) /
                             static_cast<double>(amplitude));
}

// A delay of d/2 sin(2 pi r t) moves the pitch by pi d r.
TEST(Chorus, BendsThePitchByDepthAndRateAndTheSidesByTheSpread) {
    COneVoice chorus;
    const double bend = 3.14159265 * 0.008 * 2.0;
    for (const auto& [spread, sign] : {std::pair{"0", 1.0}, {"180", -1.0}}) {
        chorus.Set("Spread", spread);
        chorus.Resume(48000.0f);
        const StereoSignal out = chorus.Run(SineTone(2 * kEffectSecond, 1000.0, kEffectRate, 0.3f));
        const std::vector<double> left = Frequencies(out.left, kEffectSecond / 4);
        const std::vector<double> right = Frequencies(out.right, kEffectSecond / 4);
        EXPECT_NEAR(*std::max_element(left.begin(), left.end()), 1000.0 * (1.0 + bend), 2.0);
        EXPECT_NEAR(*std::min_element(left.begin(), left.end()), 1000.0 * (1.0 - bend), 2.0);
        double together = 0.0;
        double power = 0.0;
        for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
            together += (left[i] - 1000.0) * (right[i] - 1000.0);
            power += (left[i] - 1000.0) * (left[i] - 1000.0);
        }
        EXPECT_NEAR(together / power, sign, 0.15) << spread;
    }
}

TEST(Chorus, IsAsLoudWithAnyNumberOfVoices) {
    std::vector<double> levels;
    for (const char* voices : {"1", "2", "3", "4"}) {
        COneVoice chorus;
        chorus.Set("Voices", voices);
        chorus.Resume(48000.0f);
        const StereoSignal out = chorus.Run(Noise(4 * kEffectSecond, 0.5f));
        levels.push_back(20.0 * std::log10(Rms(out.left, kEffectSecond, 4 * kEffectSecond) / (0.5 / std::sqrt(3.0))));
    }
    EXPECT_GT(levels[0], -2.0);  // reading between samples costs the top octave a little
    for (const double level : levels) EXPECT_NEAR(level, levels[0], 0.2);
}

TEST(Chorus, LeavesTheBassAlone) {
    COneVoice chorus;
    chorus.Set({{"Low Cut", "500"}, {"Depth", "0"}});
    EXPECT_LT(Gain(chorus, 60.0), -34.0);
    EXPECT_NEAR(Gain(chorus, 4000.0), 0.0, 0.5);
}

TEST(Flanger, CombsByItsDelayAndRingsByItsFeedback) {
    CLoadedEffect flanger("QUIB flanger");
    flanger.Set({{"Mix", "50"}, {"Delay", "2"}, {"Depth", "0"}, {"Feedback", "0"}, {"Low Cut", "10"}});
    for (const double notch : {250.0, 750.0, 1250.0}) EXPECT_LT(Gain(flanger, notch), -25.0) << notch;
    for (const double peak : {500.0, 1000.0, 1500.0}) EXPECT_NEAR(Gain(flanger, peak), 0.0, 0.3) << peak;
    flanger.Set({{"Mix", "100"}, {"Feedback", "80"}});
    EXPECT_NEAR(Gain(flanger, 1000.0, 0.01f), 20.0 * std::log10(1.0 / (1.0 - 0.8)), 0.5);
    EXPECT_NEAR(Gain(flanger, 1250.0, 0.01f), 20.0 * std::log10(1.0 / (1.0 + 0.8)), 0.5);
    flanger.Set("Feedback", "-80");
    EXPECT_NEAR(Gain(flanger, 1250.0, 0.01f), 20.0 * std::log10(1.0 / (1.0 - 0.8)), 0.5);
}

TEST(Flanger, SweepsOncePerNoteOfTheSong) {
    for (const double tempo : {90.0, 120.0}) {
        CLoadedEffect flanger("QUIB flanger");
        flanger.SetTempo(tempo);
        flanger.Set({{"Mix", "50"}, {"Sync", "Note"}, {"Note", "1 bar"}});
        flanger.Resume(48000.0f);
        const auto bar = static_cast<long>(4.0 * 60.0 / tempo * kEffectRate);
        const StereoSignal out = flanger.Run(SineTone(3 * bar, 1000.0, kEffectRate, 0.3f));
        double same = 0.0;
        double half = 0.0;
        for (long at = bar; at + 480 < 2 * bar; at += 480) {
            const double level = Rms(out.left, at, at + 480);
            same = std::max(same, std::fabs(Rms(out.left, at + bar, at + bar + 480) - level));
            half = std::max(half, std::fabs(Rms(out.left, at + bar / 2, at + bar / 2 + 480) - level));
        }
        EXPECT_LT(same, 0.01) << tempo;
        EXPECT_GT(half, 0.05) << tempo;
    }
}

}  // namespace

}  // namespace quibtest
