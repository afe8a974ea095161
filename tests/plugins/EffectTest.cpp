// SPDX-License-Identifier: GPL-3.0-or-later
// What holds for every built-in effect.

#include "plugins/CLoadedEffect.h"

namespace quibtest {

namespace {

class Effect : public testing::TestWithParam<const char*> {};

// Noise, a long silence that lets the effect fall asleep, and a tone that wakes it.
StereoSignal NoiseSilenceTone() {
    StereoSignal signal = Noise(kEffectSecond / 3, 0.4f);
    signal.Append(StereoSignal(4 * kEffectSecond));
    signal.Append(SineTone(kEffectSecond / 2, 700.0, 48000.0, 0.4f));
    return signal;
}

// Parameters move at frame 5000 and a program is chosen at 10000: both are ends of blocks below.
void Play(CLoadedEffect& effect, long frame) {
    effect.SetTempo(frame < 10000 ? 131.0 : 97.0);
    if (frame == 5000) {
        for (int i = 2; i < effect.Effect().numParams; ++i) {
            effect.Effect().setParameter(&effect.Effect(), i, i % 3 == 0 ? 0.2f : 0.7f);
        }
    }
    if (frame == 10000) effect.Call(vst2::effSetProgram, 0, 3);
}

StereoSignal Played(const char* name, const std::vector<int>& blocks) {
    CLoadedEffect effect(name);
    effect.Set("Mix", "70");
    return effect.Run(NoiseSilenceTone(), blocks, [&](long frame) { Play(effect, frame); });
}

// Seconds that the sound of `frames` of silence takes, after `input`.
StereoSignal Tail(CLoadedEffect& effect, const StereoSignal& input, double seconds) {
    StereoSignal signal = input;
    signal.Append(StereoSignal(static_cast<long>(seconds * 48000.0)));
    return effect.Run(signal);
}

TEST_P(Effect, SaysWhatItIs) {
    CLoadedEffect effect(GetParam());
    EXPECT_EQ(effect.Text(vst2::effGetEffectName), GetParam());
    EXPECT_EQ(effect.Text(vst2::effGetVendorString), "QUIB");
    EXPECT_EQ(effect.Call(vst2::effGetPlugCategory), vst2::kPlugCategEffect);
    EXPECT_EQ(effect.Effect().flags, vst2::effFlagsCanReplacing | vst2::effFlagsProgramChunks);
    EXPECT_EQ(effect.Effect().numInputs, 2);
    EXPECT_EQ(effect.Effect().numOutputs, 2);
    EXPECT_EQ(effect.Effect().numPrograms, 8);
    char midi[] = "receiveVstMidiEvent";
    EXPECT_EQ(effect.Call(vst2::effCanDo, 0, 0, midi), -1);
    for (int program = 0; program < 4; ++program) {
        effect.Call(vst2::effSetProgram, 0, program);
        EXPECT_EQ(effect.Text(vst2::effGetParamDisplay, 0), "100") << program;
    }
}

TEST_P(Effect, MayWriteOverItsInput) {
    const StereoSignal apart = Played(GetParam(), {1000});
    CLoadedEffect effect(GetParam());
    effect.Set("Mix", "70");
    StereoSignal signal = NoiseSilenceTone();
    for (long begin = 0; begin < signal.Frames(); begin += 1000) {
        const auto frames = static_cast<std::int32_t>(std::min(1000L, signal.Frames() - begin));
        Play(effect, begin);
        effect.RunInPlace(signal, begin, frames);
    }
    EXPECT_EQ(signal, apart);
}

TEST_P(Effect, FallsSilentAfterItsTailAndWakesUnchanged) {
    for (int program = 0; program < 8; ++program) {
        CLoadedEffect effect(GetParam());
        effect.Call(vst2::effSetProgram, 0, program);
        effect.Resume(48000.0f);
        const auto tail = effect.Call(vst2::effGetTailSize);
        ASSERT_GT(tail, 0) << program;
        const double seconds = static_cast<double>(tail) / 48000.0;
        const StereoSignal burst = Noise(kEffectSecond / 4, 0.5f);
        const StereoSignal first = Tail(effect, burst, 1.3 * seconds + 8.0);
        const long end = burst.Frames() + tail;
        EXPECT_LT(PeakOf(first.left, end), 3e-5f) << program;
        EXPECT_EQ(PeakOf(first.left, first.Frames() - kEffectSecond / 2), 0.0f) << program;
        EXPECT_TRUE(Tail(effect, burst, 1.3 * seconds + 8.0) == first) << program;
    }
}

TEST_P(Effect, StaysFiniteWhateverComesIn) {
    CLoadedEffect effect(GetParam());
    StereoSignal signal = Noise(kEffectSecond, 1e30f);
    for (std::size_t i = 0; i < signal.left.size(); i += 97) {
        signal.left[i] = std::numeric_limits<float>::quiet_NaN();
        signal.right[i] = std::numeric_limits<float>::infinity();
    }
    EXPECT_TRUE(AllFinite(effect.Run(signal)));
    const StereoSignal after = effect.Run(StereoSignal(20 * kEffectSecond));
    EXPECT_TRUE(AllFinite(after));
    EXPECT_LT(PeakOf(after.left, 19 * kEffectSecond), 1e-3f);
}

TEST_P(Effect, NeverJumpsWhenAParameterMoves) {
    const int parameters = CLoadedEffect(GetParam()).Effect().numParams;
    const StereoSignal tone = SineTone(3 * kEffectSecond, 60.0, 48000.0, 0.25f);
    for (int index = 0; index < parameters; ++index) {
        CLoadedEffect effect(GetParam());
        effect.SetTempo(120.0);
        const std::string name = effect.Text(vst2::effGetParamName, index);
        const StereoSignal moved = effect.Run(tone, {480}, [&](long frame) {
            if (frame < kEffectSecond || frame % 4800 != 0) return;
            effect.Effect().setParameter(&effect.Effect(), index, frame % 9600 == 0 ? 0.0f : 1.0f);
        });
        // A steady tone of 60 Hz takes steps of 0.008 times its amplitude.
        const float natural = 0.009f * std::max(PeakOf(moved.left), PeakOf(moved.right));
        EXPECT_LT(LargestStep(moved.left, kEffectSecond, 3 * kEffectSecond), natural + 0.01f) << name;
        EXPECT_LT(LargestStep(moved.right, kEffectSecond, 3 * kEffectSecond), natural + 0.01f) << name;
    }
}

TEST_P(Effect, SoundsTheSameAtEveryRate) {
    std::vector<double> levels;
    for (const float rate : {22050.0f, 44100.0f, 96000.0f, 192000.0f}) {
        CLoadedEffect effect(GetParam(), rate);
        effect.SetTempo(120.0);
        StereoSignal burst = SineTone(static_cast<long>(0.2f * rate), 500.0, static_cast<double>(rate), 0.5f);
        burst.Append(StereoSignal(static_cast<long>(1.8f * rate)));
        const StereoSignal out = effect.Run(burst);
        levels.push_back(20.0 * std::log10(Rms(out.left, 0, out.Frames())));
    }
    for (const double level : levels) EXPECT_NEAR(level, levels[1], 1.0);
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, Effect,
                         testing::Values("QUIB delay", "QUIB reverb", "QUIB chorus", "QUIB flanger", "QUIB compressor"),
                         [](const auto& test) { return std::string(test.param).substr(5); });

}  // namespace

}  // namespace quibtest
