// SPDX-License-Identifier: GPL-3.0-or-later

#include <numeric>

#include "plugins/CLoadedPlugin.h"

namespace quibtest {

namespace {

// One plain oscillator through an open filter.
void MakePlain(CLoadedPlugin& plugin, const char* wave) {
    static const std::pair<const char*, const char*> kPlain[] = {
        {"Osc 1 Octave", "0"},   {"Osc 1 Semitone", "0"},    {"Osc 1 Fine", "0"},      {"Osc 1 Level", "0"},
        {"Osc 2 Level", "-oo"},  {"Sub Level", "-oo"},       {"Noise Level", "-oo"},   {"Osc 2 > FM", "0"},
        {"Mod Env > FM", "0"},   {"Unison Voices", "1"},     {"Play Mode", "Poly"},    {"Filter Type", "LP 24"},
        {"Cutoff", "20000"},     {"Resonance", "0"},         {"Drive", "0"},           {"Mod Env > Cutoff", "0"},
        {"Key > Cutoff", "0"},   {"Velocity > Cutoff", "0"}, {"Amp Attack", "1"},      {"Amp Sustain", "0"},
        {"Amp Release", "20"},   {"Mod Env > Pitch", "0"},   {"Mod Env > Width", "0"}, {"LFO 1 > Pitch", "0"},
        {"LFO 1 > Cutoff", "0"}, {"LFO 2 > Level", "0"},     {"LFO 2 > Pan", "0"},     {"LFO 2 > Cutoff", "0"},
        {"Glide Time", "1"},     {"Start Phase", "Fixed"},   {"Bend Range", "2"},      {"Volume", "-6"},
        {"Stereo Width", "0"}};
    for (const auto& [name, shown] : kPlain) plugin.Set(name, shown);
    plugin.Set("Osc 1 Wave", wave);
    plugin.Resume(static_cast<float>(kRate));
}

// Frequency near `expected`, from the strongest of finely spaced correlations.
double FrequencyNear(const std::vector<float>& samples, double expected, double rate, long begin, long end) {
    double best = expected;
    double span = expected * 0.02;
    for (int pass = 0; pass < 3; ++pass, span /= 20.0) {
        double strongest = 0.0;
        const double centre = best;
        for (int i = -20; i <= 20; ++i) {
            const double hertz = centre + span * i / 20.0;
            const double amplitude = AmplitudeAt(samples, hertz, rate, begin, end);
            if (amplitude > strongest) {
                strongest = amplitude;
                best = hertz;
            }
        }
    }
    return best;
}

double Cents(double measured, double expected) { return 1200.0 * std::log2(measured / expected); }

TEST(Synth, IsInTuneAtEveryRateAndBendsByItsRange) {
    for (const float rate : {22050.0f, 44100.0f, 96000.0f, 192000.0f}) {
        CLoadedPlugin plugin("QUIB synth");
        MakePlain(plugin, "Saw");
        plugin.Resume(rate);
        const auto frames = static_cast<long>(rate) / 2;
        const Channels sound = plugin.Render(frames, {{0, 0x90, 69, 100}});
        EXPECT_NEAR(Cents(FrequencyNear(sound[0], 440.0, static_cast<double>(rate), frames / 8, frames), 440.0), 0.0,
                    2.0);
        plugin.Resume(rate);
        const Channels bent = plugin.Render(frames, {{0, 0xe0, 127, 127}, {0, 0x90, 67, 100}});
        EXPECT_NEAR(Cents(FrequencyNear(bent[0], 440.0, static_cast<double>(rate), frames / 8, frames), 440.0), 0.0,
                    2.0);
    }
}

TEST(Synth, FoldsNoAudiblePartialsBackOfAHighSaw) {
    for (const char* wave : {"Saw", "Pulse", "Triangle"}) {
        for (const int key : {60, 84, 96, 103}) {
            CLoadedPlugin plugin("QUIB synth");
            MakePlain(plugin, wave);
            const Channels sound = plugin.Render(kSecond, {{0, 0x90, key, 100}});
            const double base = 440.0 * std::exp2((key - 69) / 12.0);
            const double fundamental = AmplitudeAt(sound[0], base, kRate, 4000, kSecond);
            double worst = 0.0;
            const auto first = static_cast<int>(kRate / 2.0 / base) + 1;
            for (int partial = first; partial < 8192 + 8; ++partial) {
                // Beyond the folds of a naive oscillator, those of a table's images: 2^n periods apart.
                if (partial > 120 && (partial + 8) % 2048 > 16) continue;
                const double folded = std::fabs(partial * base - kRate * std::round(partial * base / kRate));
                // A fold beside a true partial cannot be told from it.
                const double beside = std::fabs(folded / base - std::round(folded / base)) * base;
                if (beside > 30.0) worst = std::max(worst, AmplitudeAt(sound[0], folded, kRate, 4000, kSecond));
            }
            const double decibels = 20.0 * std::log10(worst / fundamental);
            RecordProperty(std::string(wave) + std::to_string(key), std::to_string(decibels));
            EXPECT_LT(decibels, -80.0) << wave << " at key " << key;
        }
    }
}

TEST(Synth, FiltersByTheSlopeOfItsType) {
    // Gain at the third partial, two octaves and a fifth above 100 Hz against an open filter.
    const auto gain = [](const char* type, const char* cutoff, int partial) {
        CLoadedPlugin plugin("QUIB synth");
        MakePlain(plugin, "Saw");
        const double base = 440.0 * std::exp2((43 - 69) / 12.0);
        const Channels open = plugin.Render(kSecond, {{0, 0x90, 43, 100}});
        plugin.Set("Filter Type", type);
        plugin.Set("Cutoff", cutoff);
        plugin.Resume(static_cast<float>(kRate));
        const Channels filtered = plugin.Render(kSecond, {{0, 0x90, 43, 100}});
        return 20.0 * std::log10(AmplitudeAt(filtered[0], partial * base, kRate, 4000, kSecond) /
                                 AmplitudeAt(open[0], partial * base, kRate, 4000, kSecond));
    };
    // Per octave: from partial 16 (1568 Hz) to 32, well above 300 Hz.
    EXPECT_NEAR(gain("LP 24", "300", 16) - gain("LP 24", "300", 32), 24.0, 1.5);
    EXPECT_NEAR(gain("LP 12", "300", 16) - gain("LP 12", "300", 32), 12.0, 1.0);
    EXPECT_NEAR(gain("HP 12", "3000", 2) - gain("HP 12", "3000", 1), 12.0, 1.0);
    EXPECT_NEAR(gain("BP 12", "3000", 2) - gain("BP 12", "3000", 1), 6.0, 1.0);
}

// All sources silent and the resonance at 100 %: the filter is the oscillator, C4 on key 60.
void MakeWhistle(CLoadedPlugin& plugin, const char* type, float rate) {
    MakePlain(plugin, "Saw");
    plugin.Set("Osc 1 Level", "-oo");
    plugin.Set("Filter Type", type);
    plugin.Set({{"Cutoff", "261.626"}, {"Key > Cutoff", "100"}, {"Resonance", "100"}});
    plugin.Resume(rate);
}

TEST(Synth, WhistlesInTuneAndCleanlyOverFiveOctavesWhenTheResonanceIsFull) {
    for (const float rate : {22050.0f, 44100.0f, 96000.0f}) {
        for (const char* type : {"LP 24", "LP 12", "BP 12", "HP 12"}) {
            for (int key = 36; key <= 96; key += 5) {
                CLoadedPlugin plugin("QUIB synth");
                MakeWhistle(plugin, type, rate);
                const auto second = static_cast<long>(rate);
                const Channels sound = plugin.Render(second, {{0, 0x90, key, 127}});
                const double expected = 261.626 * std::exp2((key - 60) / 12.0);
                const auto at = [&](double hertz, long begin, long end) {
                    return AmplitudeAt(sound[0], hertz, static_cast<double>(rate), begin, end);
                };
                const double pitch = FrequencyNear(sound[0], expected, static_cast<double>(rate), second / 4, second);
                EXPECT_NEAR(Cents(pitch, expected), 0.0, 5.0) << type << " " << key << " " << rate;
                const double level = at(expected, second / 2, second);
                EXPECT_NEAR(level, std::string(type) == "LP 12" || std::string(type) == "HP 12" ? 0.25 : 0.14, 0.03);
                EXPECT_NEAR(at(expected, second / 8, second / 2), level, 0.01 * level) << "it has not settled";
                for (const int harmonic : {2, 3}) {
                    EXPECT_LT(at(harmonic * expected, second / 2, second), 1e-3 * level) << type << " " << key;
                }
            }
        }
    }
}

TEST(Synth, WhistlesTheSameInAnyBlocksAndAfterATurnOfTheKnob) {
    CLoadedPlugin plugin("QUIB synth");
    const auto play = [&](const std::vector<int>& blocks) {
        MakeWhistle(plugin, "LP 12", static_cast<float>(kRate));
        plugin.Set("Resonance", "90");
        plugin.Resume(static_cast<float>(kRate));
        return plugin.Render(kSecond, {{0, 0x90, 60, 127}}, blocks, [&](long frame) {
            if (frame == kSecond / 3) plugin.Set("Resonance", "100");
        })[0];
    };
    const std::vector<float> whole = play({kSecond / 3});
    EXPECT_EQ(PeakOf(whole, 0, kSecond / 3), 0.0f) << "below the onset nothing sounds by itself";
    EXPECT_NEAR(AmplitudeAt(whole, 261.626, kRate, kSecond * 2 / 3, kSecond), 0.25, 0.01);
    EXPECT_EQ(play({1, 7, 300, 392}), whole);
}

// A step of half a percent of the knob, sound going in: no jump, and no way to a sound out of bounds.
TEST(Synth, GoesSmoothlyIntoTheOscillation) {
    CLoadedPlugin plugin("QUIB synth");
    MakePlain(plugin, "Saw");
    plugin.Set("Cutoff", "1046.5");  // a partial's frequency, where it is loudest
    plugin.Set("Sub Level", "0");
    double before = 0.0;
    for (double resonance = 92.0; resonance <= 100.0; resonance += 0.5) {
        plugin.Set("Resonance", std::to_string(resonance).c_str());
        plugin.Resume(static_cast<float>(kRate));
        const Channels sound = plugin.Render(kSecond, {{0, 0x90, 48, 127}});
        const auto peak = static_cast<double>(PeakOf(sound[0], kSecond / 2, kSecond));
        if (before > 0.0) {
            EXPECT_NEAR(20.0 * std::log10(peak / before), 0.0, 1.5) << resonance;
        }
        EXPECT_LT(PeakOf(sound[0]), 1.0f) << resonance;
        before = peak;
    }
}

TEST(Synth, LeavesNoMeanInAnyProgram) {
    CLoadedPlugin plugin("QUIB synth");
    for (int program = 0; program < plugin.Effect().numPrograms; ++program) {
        plugin.Call(vst2::effSetProgram, 0, program);
        plugin.Resume(static_cast<float>(kRate));
        const Channels sound = plugin.Render(2 * kSecond, {{0, 0x90, 48, 100}});
        // At 0 Hz a mean counts twice.
        EXPECT_LT(AmplitudeAt(sound[0], 0.0, kRate, kSecond / 4, 2 * kSecond), 2.0 * 0.0015)
            << plugin.Text(vst2::effGetProgramName);
    }
}

// The sum of both sides is what it is without the width, and no bass is spread.
TEST(Synth, IsWideWithoutALossInMono) {
    CLoadedPlugin plugin("QUIB synth");
    const auto middle = [](const Channels& sound) {
        std::vector<float> sum;
        for (std::size_t i = 0; i < sound[0].size(); ++i) sum.push_back(0.5f * (sound[0][i] + sound[1][i]));
        return sum;
    };
    const auto power = [](const std::vector<float>& samples) {
        return std::inner_product(samples.begin(), samples.end(), samples.begin(), 0.0);
    };
    int wide = 0;
    for (int program = 0; program < 64; ++program) {
        plugin.Call(vst2::effSetProgram, 0, program);
        const auto play = [&] {
            plugin.Resume(static_cast<float>(kRate));
            return plugin.Render(kSecond, {{0, 0x90, 48, 100}, {0, 0x90, 55, 100}, {0, 0x90, 60, 100}});
        };
        Channels sound = play();
        const std::vector<float> sum = middle(sound);
        for (std::size_t i = 0; i < sum.size(); ++i) sound[0][i] -= sum[i];
        wide += power(sound[0]) > 0.1 * power(sum) ? 1 : 0;
        plugin.Set("Stereo Width", "0");
        const std::vector<float> plain = middle(play());
        for (std::size_t i = 0; i < sum.size(); ++i) ASSERT_NEAR(sum[i], plain[i], 1e-6f) << program;
    }
    EXPECT_GE(wide, 32);
    MakePlain(plugin, "Sine");
    plugin.Set("Stereo Width", "100");
    plugin.Resume(static_cast<float>(kRate));
    const Channels bass = plugin.Render(kSecond, {{0, 0x90, 29, 100}});  // 44 Hz
    const double left = AmplitudeAt(bass[0], 43.65, kRate, 4000, kSecond);
    EXPECT_NEAR(20.0 * std::log10(left / AmplitudeAt(bass[1], 43.65, kRate, 4000, kSecond)), 0.0, 1.5);
}

TEST(Synth, HoldsNotesByPedalAndEndsThemOnDemand) {
    const std::vector<Message> start = {{0, 0x90, 60, 100}, {100, 0xb0, 64, 127}, {2000, 0x80, 60, 0}};
    const auto peakAfter = [&](std::vector<Message> more, long from) {
        CLoadedPlugin plugin("QUIB synth");
        MakePlain(plugin, "Saw");
        more.insert(more.begin(), start.begin(), start.end());
        return PeakOf(plugin.Render(kSecond, more)[0], from);
    };
    EXPECT_GT(peakAfter({}, 40000), 0.1f);
    EXPECT_LT(peakAfter({{10000, 0xb0, 64, 0}}, 14000), 1e-3f);
    EXPECT_GT(peakAfter({{10000, 0xb0, 123, 0}}, 14000), 0.1f) << "the pedal outlasts all notes off";
    EXPECT_EQ(peakAfter({{10000, 0xb0, 120, 0}}, 10400), 0.0f);
}

TEST(Synth, ChangesAnyParameterOrProgramWithoutAJump) {
    CLoadedPlugin plugin("QUIB synth");
    MakePlain(plugin, "Sine");
    plugin.Set("Volume", "-12");
    const std::vector<Message> notes = {{0, 0x90, 45, 100}};
    constexpr long kChange = kSecond / 2;
    const auto check = [&](const std::string& what, const std::function<void()>& before,
                           const std::function<void()>& change) {
        before();
        plugin.Resume(static_cast<float>(kRate));
        const Channels sound = plugin.Render(kSecond, notes, {kChange / 100}, [&](long frame) {
            if (frame == kChange) change();
        });
        const float steady = std::max(LargestStep(sound[0], kChange / 2, kChange),
                                      LargestStep(sound[0], kChange + kSecond / 4, kSecond));
        EXPECT_LT(LargestStep(sound[0], kChange, kChange + kSecond / 8), 1.3f * steady + 0.012f) << what;
    };
    for (int i = 0; i < plugin.Effect().numParams; ++i) {
        const float kept = plugin.Get(i);
        for (const float from : {0.0f, 1.0f}) {
            check(
                plugin.Text(vst2::effGetParamName, i), [&] { plugin.Set(i, from); },
                [&] { plugin.Set(i, 1.0f - from); });
        }
        plugin.Set(i, kept);
    }
    for (int program = 0; program < plugin.Effect().numPrograms; ++program) {
        const int next = (program + 5) % plugin.Effect().numPrograms;
        check(
            plugin.Text(vst2::effGetProgramNameIndexed, program), [&] { plugin.Call(vst2::effSetProgram, 0, program); },
            [&] { plugin.Call(vst2::effSetProgram, 0, next); });
    }
}

TEST(Synth, TakesTheOldestVoiceWithoutAJump) {
    CLoadedPlugin plugin("QUIB synth");
    MakePlain(plugin, "Sine");
    plugin.Set({{"Volume", "-30"}, {"Amp Attack", "20"}});
    std::vector<Message> messages;
    messages.reserve(48);
    for (int i = 0; i < 48; ++i) messages.push_back({1000L * i, 0x90, 24 + i, 100});
    const Channels sound = plugin.Render(58000, messages);
    // 32 sines up to 494 Hz: each steps by at most 0.07 of its amplitude of 0.03.
    EXPECT_LT(LargestStep(sound[0], 0, 58000), 32.0f * 0.07f * 0.035f);
    EXPECT_LT(AmplitudeAt(sound[0], 440.0 * std::exp2((24 - 69) / 12.0), kRate, 48500, 57500), 5e-4);
    EXPECT_GT(AmplitudeAt(sound[0], 440.0 * std::exp2((40 - 69) / 12.0), kRate, 48500, 57500), 5e-3);
}

TEST(Synth, GlidesInLegatoModeAndReturnsToTheHeldKey) {
    CLoadedPlugin plugin("QUIB synth");
    MakePlain(plugin, "Sine");
    plugin.Set({{"Play Mode", "Legato"}, {"Glide Time", "100"}});
    plugin.Resume(static_cast<float>(kRate));
    const Channels sound =
        plugin.Render(3 * kSecond, {{0, 0x90, 57, 100}, {kSecond, 0x90, 69, 100}, {2 * kSecond, 0x80, 69, 0}});
    EXPECT_NEAR(Cents(FrequencyNear(sound[0], 220.0, kRate, 10000, kSecond), 220.0), 0.0, 2.0);
    EXPECT_LT(AmplitudeAt(sound[0], 440.0, kRate, kSecond, kSecond + 1500), 0.1);
    EXPECT_NEAR(Cents(FrequencyNear(sound[0], 440.0, kRate, kSecond + 20000, 2 * kSecond), 440.0), 0.0, 2.0);
    EXPECT_NEAR(Cents(FrequencyNear(sound[0], 220.0, kRate, 2 * kSecond + 20000, 3 * kSecond), 220.0), 0.0, 2.0);
}

}  // namespace

}  // namespace quibtest
