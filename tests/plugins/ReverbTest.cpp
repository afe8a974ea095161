// SPDX-License-Identifier: GPL-3.0-or-later

#include "plugins/CLoadedEffect.h"

namespace quibtest {

namespace {

// The late reverberation alone, undamped.
struct CLateReverb : CLoadedEffect {
    explicit CLateReverb(float rate = 44100.0f) : CLoadedEffect("QUIB reverb", rate) {
        Set({{"Early", "-oo"}, {"High Decay", "100"}, {"Low Cut", "10"}, {"High Cut", "20000"}});
    }
};

StereoSignal Response(CLoadedEffect& reverb, double seconds, double rate) {
    reverb.Resume(static_cast<float>(rate));
    return reverb.Run(Impulse(static_cast<long>(seconds * rate)));
}

// Reverberation time by backward integration (Schroeder) and a straight line through the fall from
// 5 to 35 dB.
double DecaySeconds(const std::vector<float>& samples, double rate) {
    std::vector<double> energy(samples.size() + 1);
    for (std::size_t i = samples.size(); i-- > 0;) {
        energy[i] = energy[i + 1] + static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
    }
    double n = 0, sumX = 0, sumY = 0, sumXX = 0, sumXY = 0;
    for (std::size_t i = 0; i < samples.size(); i += 16) {
        const double level = 10.0 * std::log10(energy[i] / energy[0]);
        if (level > -5.0 || level < -35.0) continue;
        const double time = static_cast<double>(i) / rate;
        n += 1;
        sumX += time;
        sumY += level;
        sumXX += time * time;
        sumXY += time * level;
    }
    return -60.0 * (n * sumXX - sumX * sumX) / (n * sumXY - sumX * sumY);
}

// Twice through a one-pole low-pass or its complement.
std::vector<float> Band(std::vector<float> samples, double hertz, double rate, bool high) {
    const auto share = static_cast<float>(1.0 - std::exp(-2.0 * 3.14159265 * hertz / rate));
    for (int pass = 0; pass < 2; ++pass) {
        float state = 0.0f;
        for (float& sample : samples) {
            state += share * (sample - state);
            sample = high ? sample - state : state;
        }
    }
    return samples;
}

std::vector<double> Envelope(const std::vector<float>& samples, long window) {
    std::vector<double> levels;
    for (long i = 0; i + window <= static_cast<long>(samples.size()); i += window / 2) {
        levels.push_back(20.0 * std::log10(Rms(samples, i, i + window) + 1e-12));
    }
    return levels;
}

TEST(Reverb, DecaysAsLongAsItSays) {
    for (const double rate : {22050.0, 48000.0, 192000.0}) {
        for (const char* size : {"4", "15", "50"}) {
            for (const char* decay : {"0.4", "3"}) {
                for (const char* modulation : {"0", "100"}) {
                    CLateReverb reverb(static_cast<float>(rate));
                    reverb.Set("Size", size);
                    reverb.Set("Decay", decay);
                    reverb.Set("Modulation", modulation);
                    const double seconds = std::stod(decay);
                    const StereoSignal out = Response(reverb, 1.2 * seconds + 0.5, rate);
                    for (const auto& side : {out.left, out.right}) {
                        EXPECT_NEAR(DecaySeconds(side, rate), seconds, 0.1 * seconds)
                            << size << " m at " << rate << ", modulation " << modulation;
                    }
                }
            }
        }
    }
}

TEST(Reverb, DampsHighsByTheirOwnDecayTime) {
    CLateReverb reverb(48000.0f);
    reverb.Set({{"Decay", "3"}, {"High Decay", "30"}, {"Damping", "1500"}});
    const StereoSignal out = Response(reverb, 5.0, kEffectRate);
    EXPECT_NEAR(DecaySeconds(Band(out.left, 150.0, kEffectRate, false), kEffectRate), 3.0, 0.3);
    EXPECT_NEAR(DecaySeconds(Band(out.left, 12000.0, kEffectRate, true), kEffectRate), 0.9, 0.15);
}

// Against the mean over the 0.4 seconds about it, in windows of 10 ms.
TEST(Reverb, TailHasNoFlutter) {
    for (int program = 0; program < 8; ++program) {
        CLoadedEffect reverb("QUIB reverb", 44100.0f);
        reverb.Call(vst2::effSetProgram, 0, program);
        reverb.Resume(44100.0f);
        const auto tail = static_cast<double>(reverb.Call(vst2::effGetTailSize)) / 44100.0;
        const StereoSignal out = Response(reverb, tail, 44100.0);
        const std::vector<double> levels = Envelope(out.left, 441);
        const auto loudest = static_cast<std::size_t>(std::max_element(levels.begin(), levels.end()) - levels.begin());
        constexpr std::size_t kReach = 40;
        for (std::size_t i = loudest + kReach; i + kReach < levels.size(); ++i) {
            if (levels[i] < levels[loudest] - 60.0) break;
            double power = 0.0;
            for (std::size_t k = i - kReach; k <= i + kReach; ++k) power += std::pow(10.0, 0.1 * levels[k]);
            ASSERT_LT(levels[i], 10.0 * std::log10(power / (2.0 * kReach + 1.0)) + 6.0) << program << " at " << i;
        }
    }
}

// The share of samples beyond one standard deviation is that of noise soon after the onset.
TEST(Reverb, BecomesDenseSoon) {
    CLateReverb reverb;
    const StereoSignal out = Response(reverb, 1.0, 44100.0);
    for (long begin = 44100 / 4; begin + 882 < 44100; begin += 441) {
        const auto deviation = static_cast<float>(Rms(out.left, begin, begin + 882));
        const auto beyond = std::count_if(out.left.begin() + begin, out.left.begin() + begin + 882,
                                          [&](float sample) { return std::fabs(sample) > deviation; });
        EXPECT_GT(static_cast<double>(beyond) / 882.0, 0.8 * 0.317) << begin;
    }
}

// The mean of the tail's spectrum over its geometric mean: 2.5 dB for noise, more where few modes ring.
TEST(Reverb, SmallRoomsRingInManyModes) {
    for (const char* size : {"4", "7", "20"}) {
        CLateReverb reverb;
        reverb.Set("Size", size);
        reverb.Set("Decay", "1");
        const StereoSignal out = Response(reverb, 0.6, 44100.0);
        double sum = 0.0;
        double logarithms = 0.0;
        int count = 0;
        for (int hertz = 500; hertz < 8000; hertz += 10, ++count) {
            const double power = std::pow(AmplitudeAt(out.left, hertz, 44100.0, 4410, 4410 + 17640), 2.0);
            sum += power;
            logarithms += std::log10(power);
        }
        EXPECT_LT(10.0 * std::log10(sum / count) - 10.0 * logarithms / count, 4.2) << size;
    }
}

TEST(Reverb, KeepsItsLevelInMonoAndOnBothSides) {
    for (int program = 0; program < 8; ++program) {
        CLoadedEffect reverb("QUIB reverb", 44100.0f);
        reverb.Call(vst2::effSetProgram, 0, program);
        reverb.Resume(44100.0f);
        const StereoSignal out = reverb.Run(Noise(6L * 44100, 0.5f));
        std::vector<float> sum = out.left;
        for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += out.right[i];
        const auto level = [&](const std::vector<float>& samples) {
            return 20.0 * std::log10(Rms(samples, 3L * 44100, 6L * 44100));
        };
        EXPECT_NEAR(level(out.left), level(out.right), 1.0) << program;
        EXPECT_NEAR(level(sum), level(out.left) + 3.0, 2.0) << program;
        EXPECT_LT(level(out.left), 20.0 * std::log10(0.5 / std::sqrt(3.0))) << program;
        EXPECT_LT(PeakOf(out.left), 1.3f) << program;
    }
}

TEST(Reverb, WaitsForItsPreDelay) {
    CLoadedEffect reverb("QUIB reverb", 48000.0f);
    reverb.Set("Diffusion", "0");
    std::vector<long> onsets;
    for (const char* milliseconds : {"10", "110"}) {
        reverb.Set("Pre-Delay", milliseconds);
        const StereoSignal out = Response(reverb, 1.0, 48000.0);
        onsets.push_back(std::find_if(out.left.begin(), out.left.end(), [](float s) { return std::fabs(s) > 0.01f; }) -
                         out.left.begin());
    }
    EXPECT_NEAR(static_cast<double>(onsets[1] - onsets[0]), 4800.0, 1.0);
}

}  // namespace

}  // namespace quibtest
