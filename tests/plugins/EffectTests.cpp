// SPDX-License-Identifier: GPL-3.0-or-later
// What holds for every built-in effect.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

#include "plugins/CLoadedEffect.h"
#include "plugins/CountedAllocations.h"

namespace quibtest {

namespace {

constexpr long kSecond = 48000;

class Effect : public testing::TestWithParam<const char*> {};

// Noise, a long silence that lets the effect fall asleep, and a tone that wakes it.
StereoSignal NoiseSilenceTone() {
    StereoSignal signal = Noise(kSecond / 3, 0.4f);
    signal.Append(StereoSignal(4 * kSecond));
    signal.Append(SineTone(kSecond / 2, 700.0, 48000.0, 0.4f));
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

}  // namespace

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

TEST_P(Effect, SoundsTheSameHoweverTheStreamIsCutIntoBlocks) {
    const StereoSignal whole = Played(GetParam(), {5000});
    EXPECT_GT(PeakOf(whole.left), 0.1f);
    EXPECT_EQ(whole, Played(GetParam(), {1000}));
    EXPECT_EQ(whole, Played(GetParam(), {1, 7, 16, 100, 876}));
    EXPECT_EQ(whole, Played(GetParam(), {333, 31, 636}));
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
        const StereoSignal burst = Noise(kSecond / 4, 0.5f);
        const StereoSignal first = Tail(effect, burst, 1.3 * seconds + 8.0);
        const long end = burst.Frames() + tail;
        EXPECT_LT(PeakOf(first.left, end), 3e-5f) << program;
        EXPECT_EQ(PeakOf(first.left, first.Frames() - kSecond / 2), 0.0f) << program;
        EXPECT_TRUE(Tail(effect, burst, 1.3 * seconds + 8.0) == first) << program;
    }
}

TEST_P(Effect, MayBeEditedByAnotherThreadWhileItRenders) {
    CLoadedEffect effect(GetParam());
    effect.SetTempo(120.0);
    std::atomic<bool> done = false;
    std::thread editor([&] {
        std::vector<char> bank = effect.Chunk();
        for (int i = 0; !done.load(); ++i) {
            effect.Set(i % effect.Effect().numParams, static_cast<float>(i % 7) / 6.0f);
            effect.Text(vst2::effGetParamDisplay, i % effect.Effect().numParams);
            effect.Call(vst2::effGetTailSize);
            if (i % 10 == 0) effect.Call(vst2::effSetProgram, 0, i / 10 % 8);
            if (i % 100 == 0) effect.SetChunk(bank);
            if (i % 100 == 50) bank = effect.Chunk();
        }
    });
    const StereoSignal sound = effect.Run(Noise(4 * kSecond, 0.5f), {64});
    done.store(true);
    editor.join();
    EXPECT_TRUE(AllFinite(sound));
    EXPECT_LT(PeakOf(sound.left), 16.0f);
}

#if !defined(QUIB_SANITIZED)
TEST_P(Effect, AllocatesNothingWhileItRenders) {
    for (const float rate : {44100.0f, 192000.0f}) {
        CLoadedEffect effect(GetParam(), rate);
        effect.SetTempo(120.0);
        StereoSignal signal = Noise(2 * kSecond, 0.3f);
        long before = AllocationsOfThisThread();
        effect.Chunk();
        ASSERT_GT(AllocationsOfThisThread(), before) << "allocations of the plug-in are not seen";
        before = AllocationsOfThisThread();
        for (long begin = 0; begin < signal.Frames(); begin += 480) {
            const auto index = static_cast<std::int32_t>(begin / 480 % effect.Effect().numParams);
            effect.Effect().setParameter(&effect.Effect(), index, begin % 960 == 0 ? 1.0f : 0.3f);
            effect.RunInPlace(signal, begin, 480);
        }
        EXPECT_EQ(AllocationsOfThisThread(), before) << rate;
    }
}
#endif

TEST_P(Effect, StaysFiniteWhateverComesIn) {
    CLoadedEffect effect(GetParam());
    StereoSignal signal = Noise(kSecond, 1e30f);
    for (std::size_t i = 0; i < signal.left.size(); i += 97) {
        signal.left[i] = std::numeric_limits<float>::quiet_NaN();
        signal.right[i] = std::numeric_limits<float>::infinity();
    }
    EXPECT_TRUE(AllFinite(effect.Run(signal)));
    const StereoSignal after = effect.Run(StereoSignal(20 * kSecond));
    EXPECT_TRUE(AllFinite(after));
    EXPECT_LT(PeakOf(after.left, 19 * kSecond), 1e-3f);
}

TEST_P(Effect, NeverJumpsWhenAParameterMoves) {
    const int parameters = CLoadedEffect(GetParam()).Effect().numParams;
    const StereoSignal tone = SineTone(3 * kSecond, 60.0, 48000.0, 0.25f);
    for (int index = 0; index < parameters; ++index) {
        CLoadedEffect effect(GetParam());
        effect.SetTempo(120.0);
        const std::string name = effect.Text(vst2::effGetParamName, index);
        const StereoSignal moved = effect.Run(tone, {480}, [&](long frame) {
            if (frame < kSecond || frame % 4800 != 0) return;
            effect.Effect().setParameter(&effect.Effect(), index, frame % 9600 == 0 ? 0.0f : 1.0f);
        });
        // A steady tone of 60 Hz takes steps of 0.008 times its amplitude.
        const float natural = 0.009f * std::max(PeakOf(moved.left), PeakOf(moved.right));
        EXPECT_LT(LargestStep(moved.left, kSecond, 3 * kSecond), natural + 0.01f) << name;
        EXPECT_LT(LargestStep(moved.right, kSecond, 3 * kSecond), natural + 0.01f) << name;
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

TEST_P(Effect, KeepsItsStateInChunksAndRefusesDamagedOnes) {
    CLoadedEffect effect(GetParam());
    effect.Call(vst2::effSetProgram, 0, 2);
    for (int i = 0; i < effect.Effect().numParams; ++i) {
        effect.Effect().setParameter(&effect.Effect(), i, 0.01f * static_cast<float>(i));
    }
    const std::vector<char> saved = effect.Chunk();
    CLoadedEffect other(GetParam());
    for (std::size_t i = 0; i < saved.size(); i += 5) {
        std::vector<char> damaged = saved;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x10);
        EXPECT_EQ(other.SetChunk(damaged), 0) << i;
    }
    EXPECT_EQ(other.SetChunk({saved.begin(), saved.end() - 1}), 0);
    const char* stranger = std::string(GetParam()) == "QUIB delay" ? "QUIB reverb" : "QUIB delay";
    EXPECT_EQ(other.SetChunk(CLoadedEffect(stranger).Chunk()), 0);
    EXPECT_EQ(other.Call(vst2::effGetProgram), 0);
    EXPECT_EQ(other.SetChunk(saved), 1);
    EXPECT_EQ(other.Chunk(), saved);
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, Effect,
                         testing::Values("QUIB delay", "QUIB reverb", "QUIB chorus", "QUIB flanger", "QUIB compressor"),
                         [](const auto& test) { return std::string(test.param).substr(5); });

}  // namespace quibtest
