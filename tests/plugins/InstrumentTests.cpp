// SPDX-License-Identifier: GPL-3.0-or-later
// What holds for every built-in instrument.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <memory>
#include <random>
#include <thread>

#include "plugins/CLoadedPlugin.h"
#include "plugins/CountedAllocations.h"

namespace quibtest {

namespace {

// Notes that every instrument answers: a chord for the synthesiser, a kit's strokes for the drums, a
// beat and a bass for the loops.
const std::vector<int> kSynthKeys = {48, 52, 55, 60};
const std::vector<int> kDrumKeys = {36, 38, 42, 49};
const std::vector<int> kLoopKeys = {36, 60};
constexpr long kSecond = 44100;

std::vector<Message> Phrase(const std::vector<int>& keys, double scale = 1.0) {
    std::vector<Message> messages;
    const auto at = [&](double frame) { return static_cast<long>(frame * scale); };
    for (int beat = 0; beat < 4; ++beat) {
        for (const int key : keys) {
            messages.push_back({at(11027.0 * beat + 3.0 * (key - keys[0])), 0x90, key, 60 + 15 * beat});
            messages.push_back({at(11027.0 * beat + 7001.0), 0x80, key, 0});
        }
        messages.push_back({at(11027.0 * beat + 2000.0), 0xe0, 0, 64 + 10 * beat});
        messages.push_back({at(11027.0 * beat + 3001.0), 0xb0, 1, 30 * beat});
    }
    return messages;
}

class Instrument : public testing::TestWithParam<const char*> {
protected:
    bool Drums() const { return std::string(GetParam()) == "QUIB drums"; }
    bool Loops() const { return std::string(GetParam()) == "QUIB Loops"; }
    const std::vector<int>& Keys() const { return Drums() ? kDrumKeys : (Loops() ? kLoopKeys : kSynthKeys); }
    std::vector<Message> Chord(int velocity) const {
        std::vector<Message> messages;
        for (const int key : Keys()) messages.push_back({0, 0x90, key, velocity});
        for (const int key : Keys()) messages.push_back({3 * kSecond / 2, 0x80, key, 0});
        return messages;
    }
};

}  // namespace

TEST_P(Instrument, SaysWhatItIs) {
    CLoadedPlugin plugin(GetParam());
    EXPECT_EQ(plugin.Effect().magic, vst2::kEffectMagic);
    EXPECT_EQ(plugin.Text(vst2::effGetEffectName), GetParam());
    EXPECT_EQ(plugin.Text(vst2::effGetVendorString), "QUIB");
    EXPECT_EQ(plugin.Call(vst2::effGetPlugCategory), vst2::kPlugCategSynth);
    EXPECT_EQ(plugin.Effect().flags, vst2::effFlagsCanReplacing | vst2::effFlagsIsSynth | vst2::effFlagsProgramChunks);
    EXPECT_EQ(plugin.Effect().numInputs, 0);
    EXPECT_EQ(plugin.Effect().numOutputs, Drums() ? 10 : 2);
    EXPECT_GE(plugin.Effect().numPrograms, Drums() ? 16 : (Loops() ? 8 : 64));
    char what[] = "receiveVstMidiEvent";
    EXPECT_EQ(plugin.Call(vst2::effCanDo, 0, 0, what), 1);
}

TEST_P(Instrument, ShowsEveryParameterAndTakesItsDisplayBack) {
    CLoadedPlugin plugin(GetParam());
    for (int i = 0; i < plugin.Effect().numParams; ++i) {
        EXPECT_FALSE(plugin.Text(vst2::effGetParamName, i).empty());
        for (const float value : {0.0f, 0.3f, 0.77f, 1.0f}) {
            plugin.Set(i, value);
            std::string shown = plugin.Text(vst2::effGetParamDisplay, i);
            plugin.Set(i, 0.5f);
            ASSERT_EQ(plugin.Call(vst2::effString2Parameter, i, 0, shown.data()), 1) << shown;
            EXPECT_EQ(plugin.Text(vst2::effGetParamDisplay, i), shown);
        }
    }
}

TEST_P(Instrument, IgnoresParametersAndProgramsOutOfRange) {
    CLoadedPlugin plugin(GetParam());
    const std::vector<char> before = plugin.Chunk();
    for (const int index : {-1, plugin.Effect().numParams, 0x500008, 0x7fffffff}) {
        plugin.Set(index, 4660.0f);
        EXPECT_EQ(plugin.Get(index), 0.0f);
        EXPECT_EQ(plugin.Text(vst2::effGetParamName, index), "");
    }
    plugin.Set(0, std::nanf(""));
    for (const int program : {-1, plugin.Effect().numPrograms, 0x7fffffff})
        plugin.Call(vst2::effSetProgram, 0, program);
    EXPECT_EQ(plugin.Chunk(), before);
}

TEST_P(Instrument, SoundsInEveryProgramWithinBoundsAndFallsSilent) {
    CLoadedPlugin plugin(GetParam());
    for (int program = 0; program < plugin.Effect().numPrograms; ++program) {
        SCOPED_TRACE(plugin.Text(vst2::effGetProgramNameIndexed, program));
        plugin.Call(vst2::effSetProgram, 0, program);
        plugin.Resume(44100.0f);
        const Channels sound = plugin.Render(2 * kSecond, Chord(100));
        EXPECT_TRUE(AllFinite(sound));
        EXPECT_GT(PeakOf(sound), 0.1f);
        EXPECT_LT(PeakOf(sound), 0.891f);  // -1 dBFS
        plugin.Render(12 * kSecond, {}, {16384});
        EXPECT_EQ(PeakOf(plugin.Render(kSecond / 10, {})), 0.0f);
    }
}

TEST_P(Instrument, SoundsTheSameInBlocksOfAnySize) {
    CLoadedPlugin plugin(GetParam());
    const std::vector<std::vector<int>> splits = {{64}, {256}, {2048}, {16384}, {1}, {1, 7, 16, 333, 15, 4096, 2, 100}};
    for (int program = 0; program < plugin.Effect().numPrograms; ++program) {
        SCOPED_TRACE(plugin.Text(vst2::effGetProgramNameIndexed, program));
        plugin.Call(vst2::effSetProgram, 0, program);
        plugin.Resume(44100.0f);
        const Channels reference = plugin.Render(kSecond, Phrase(Keys()), {512});
        for (const auto& split : splits) {
            plugin.Resume(44100.0f);
            ASSERT_EQ(plugin.Render(kSecond, Phrase(Keys()), split), reference) << "first block " << split[0];
        }
    }
}

TEST_P(Instrument, KeepsItsLevelAtEverySampleRate) {
    for (const int program : {0, 5}) {
        double reference = 0.0;
        for (const float rate : {44100.0f, 22050.0f, 48000.0f, 96000.0f, 192000.0f}) {
            CLoadedPlugin plugin(GetParam(), rate);
            plugin.Call(vst2::effSetProgram, 0, program);
            plugin.Resume(rate);
            const double scale = static_cast<double>(rate) / 44100.0;
            const auto frames = static_cast<long>(kSecond * scale);
            const Channels sound = plugin.Render(frames, Phrase(Keys(), scale));
            double power = 0.0;
            for (const float sample : sound[0]) power += static_cast<double>(sample * sample);
            power /= static_cast<double>(frames);
            if (reference == 0.0) reference = power;
            // At 22050 Hz the upper octave is missing.
            EXPECT_NEAR(10.0 * std::log10(power / reference), 0.0, rate < 44100.0f ? 2.0 : 0.75) << rate;
        }
    }
}

TEST_P(Instrument, RestoresItsStateFromAChunk) {
    CLoadedPlugin source(GetParam());
    source.Call(vst2::effSetProgram, 0, 3);
    char name[] = "My own sound";
    source.Call(vst2::effSetProgramName, 0, 0, name);
    for (int i = 0; i < source.Effect().numParams; ++i) source.Set(i, static_cast<float>(i % 11) / 10.0f);
    CLoadedPlugin target(GetParam());
    ASSERT_EQ(target.SetChunk(source.Chunk()), 1);
    EXPECT_EQ(target.Chunk(), source.Chunk());
    EXPECT_EQ(target.Call(vst2::effGetProgram), 3);
    EXPECT_EQ(target.Text(vst2::effGetProgramName), name);

    CLoadedPlugin single(GetParam());
    single.Call(vst2::effSetProgram, 0, 1);
    ASSERT_EQ(single.SetChunk(source.Chunk(false), false), 1);
    EXPECT_EQ(single.Text(vst2::effGetProgramNameIndexed, 1), name);
    EXPECT_EQ(single.Get(7), source.Get(7));
    EXPECT_NE(single.Text(vst2::effGetProgramNameIndexed, 3), name);
}

TEST_P(Instrument, RefusesDamagedChunksAndKeepsItsState) {
    CLoadedPlugin plugin(GetParam());
    CLoadedPlugin other(Drums() ? "QUIB synth" : "QUIB drums");
    plugin.Set(2, 0.123f);
    const std::vector<char> good = plugin.Chunk();
    std::mt19937 random(5);
    for (int i = 0; i < 300; ++i) {
        std::vector<char> bad = good;
        bad[random() % bad.size()] ^= static_cast<char>(1u << (random() % 8));
        EXPECT_EQ(plugin.SetChunk(bad), 0);
        bad = good;
        bad.resize(random() % good.size());
        EXPECT_EQ(plugin.SetChunk(bad), 0);
    }
    EXPECT_EQ(plugin.SetChunk(other.Chunk()), 0);
    EXPECT_EQ(plugin.SetChunk(plugin.Chunk(false)), 0) << "a program for a bank";
    EXPECT_EQ(plugin.Call(vst2::effSetChunk, 0, 100, nullptr), 0);
    EXPECT_EQ(plugin.Chunk(), good);
}

TEST_P(Instrument, StaysFiniteWithRandomParametersProgramsAndMessages) {
    CLoadedPlugin plugin(GetParam());
    std::mt19937 random(1);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    std::vector<Message> messages;
    messages.reserve(6000);
    for (int i = 0; i < 6000; ++i) {
        messages.push_back({below(10 * kSecond), 0x80 + 16 * below(7), below(128), below(128)});
    }
    const Channels sound = plugin.Render(10 * kSecond, messages, {37, 512}, [&](long) {
        plugin.Set(below(plugin.Effect().numParams), static_cast<float>(below(1001)) / 1000.0f);
        if (below(20) == 0) plugin.Call(vst2::effSetProgram, 0, below(plugin.Effect().numPrograms));
    });
    EXPECT_TRUE(AllFinite(sound));
    EXPECT_LT(PeakOf(sound), 400.0f);
}

TEST_P(Instrument, RendersTheSameBytesAgainAfterResuming) {
    CLoadedPlugin plugin(GetParam());
    CLoadedPlugin second(GetParam());
    const Channels first = plugin.Render(kSecond, Phrase(Keys()));
    plugin.Resume(44100.0f);
    EXPECT_EQ(plugin.Render(kSecond, Phrase(Keys())), first);
    EXPECT_EQ(second.Render(kSecond, Phrase(Keys())), first);
}

TEST_P(Instrument, RunsAHundredTimesAtOnce) {
    std::vector<std::unique_ptr<CLoadedPlugin>> plugins;
    plugins.reserve(100);
    for (int i = 0; i < 100; ++i) plugins.push_back(std::make_unique<CLoadedPlugin>(GetParam()));
    const Channels first = plugins.back()->Render(2000, Phrase(Keys()));
    EXPECT_GT(PeakOf(first), 0.0f);
    plugins.pop_back();
    for (auto& plugin : plugins) EXPECT_EQ(plugin->Render(2000, Phrase(Keys())), first);
}

TEST_P(Instrument, MayBeEditedByAnotherThreadWhileItPlays) {
    CLoadedPlugin plugin(GetParam());
    std::atomic<bool> done = false;
    std::thread editor([&] {
        std::vector<char> bank = plugin.Chunk();
        for (int i = 0; !done.load(); ++i) {
            plugin.Set(i % plugin.Effect().numParams, static_cast<float>(i % 7) / 6.0f);
            plugin.Get(i % plugin.Effect().numParams);
            plugin.Text(vst2::effGetParamDisplay, i % plugin.Effect().numParams);
            if (i % 10 == 0) plugin.Call(vst2::effSetProgram, 0, i / 10 % plugin.Effect().numPrograms);
            if (i % 100 == 0) plugin.SetChunk(bank);
            if (i % 100 == 50) bank = plugin.Chunk();
        }
    });
    const Channels sound = plugin.Render(4 * kSecond, Phrase(Keys()));
    done.store(true);
    editor.join();
    EXPECT_TRUE(AllFinite(sound));
}

#if !defined(QUIB_SANITIZED)
TEST_P(Instrument, AllocatesNothingWhileItPlays) {
    CLoadedPlugin plugin(GetParam());
    long before = AllocationsOfThisThread();
    plugin.Chunk();
    ASSERT_GT(AllocationsOfThisThread(), before) << "allocations of the plug-in are not seen";
    vst2::VstMidiEvent event{};
    event.type = vst2::kVstMidiType;
    event.midiData[0] = 0x90;
    event.midiData[2] = 100;
    vst2::VstEvents events{1, 0, {reinterpret_cast<vst2::VstEvent*>(&event), nullptr}};
    std::vector<float> memory(512);
    std::vector<float*> outputs(10, memory.data());
    before = AllocationsOfThisThread();
    for (int i = 0; i < 2000; ++i) {
        event.midiData[1] = static_cast<std::uint8_t>(30 + i % 60);
        plugin.Call(vst2::effProcessEvents, 0, 0, &events);
        plugin.Set(i % plugin.Effect().numParams, static_cast<float>(i % 9) / 8.0f);
        plugin.Effect().processReplacing(&plugin.Effect(), nullptr, outputs.data(), 512);
    }
    EXPECT_EQ(AllocationsOfThisThread(), before);
}
#endif

INSTANTIATE_TEST_SUITE_P(BuiltIn, Instrument, testing::Values("QUIB synth", "QUIB drums", "QUIB Loops"),
                         [](const auto& tested) { return std::string(tested.param).substr(5); });

}  // namespace quibtest
