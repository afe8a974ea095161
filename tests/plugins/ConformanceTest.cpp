// SPDX-License-Identifier: GPL-3.0-or-later
// What hosts may rely on in every built-in plug-in: each is driven the way different hosts do it.

#include <optional>

#include "dsp/Chunk.h"
#include "dsp/PinProperties.h"
#include "plugins/CLoadedPlugin.h"
#include "plugins/CountedAllocations.h"

namespace quibtest {

namespace {

struct Subject {
    const char* name;
    const char* folder;
    std::vector<int> keys;  // of an instrument: what it answers
};

void PrintTo(const Subject& subject, std::ostream* stream) { *stream << subject.name; }

// A plug-in that is played: an instrument by a phrase, an effect by noise, silence and a tone. The host
// tells 120 beats per minute.
class CDriven : public CLoadedPlugin {
public:
    explicit CDriven(const Subject& subject, float rate = 44100.0f)
        : CLoadedPlugin(subject.name, rate, subject.folder), m_subject(subject) {
        m_time.tempo = 120.0;
        m_time.flags = vst2::kVstTempoValid;
        SetTime(&m_time);
    }

    Channels PlayFor(double seconds, double rate, const std::vector<int>& blocks = {512},
                     const std::function<void(long)>& between = {}) {
        const auto frames = static_cast<long>(seconds * rate);
        if (Effect().numInputs == 0) return Render(frames, Phrase(rate), blocks, between);
        Channels input(static_cast<std::size_t>(Effect().numInputs));
        std::minstd_rand random(7);
        std::uniform_real_distribution<float> noise(-0.5f, 0.5f);
        for (auto& channel : input) {
            for (long i = 0; i < frames; ++i) {
                const long part = 5 * i / frames;  // of five: noise, silence, a tone
                const auto tone = static_cast<float>(0.4 * std::sin(0.05 * static_cast<double>(i)));
                channel.push_back(part < 2 ? noise(random) : (part < 3 ? 0.0f : tone));
            }
        }
        return Process(std::move(input), {}, blocks, between);
    }

private:
    std::vector<Message> Phrase(double rate) const {
        std::vector<Message> messages;
        const auto at = [&](double seconds) { return static_cast<long>(seconds * rate); };
        for (int beat = 0; beat < 8; ++beat) {
            for (const int key : m_subject.keys) {
                messages.push_back({at(0.25 * beat) + key % 7, 0x90, key, 60 + 8 * beat});
                messages.push_back({at(0.25 * beat + 0.16), 0x80, key, 0});
            }
            messages.push_back({at(0.25 * beat + 0.05), 0xe0, 0, 64 + 5 * beat});
            messages.push_back({at(0.25 * beat + 0.07), 0xb0, 1, 15 * beat});
        }
        return messages;
    }

    const Subject m_subject;
    vst2::VstTimeInfo m_time{};
};

class Conformance : public testing::TestWithParam<Subject> {};

// Both within 1e-5 of each other: the frame at which they are not, or -1.
long FirstDifference(const Channels& a, const Channels& b) {
    for (std::size_t channel = 0; channel < a.size(); ++channel) {
        for (std::size_t i = 0; i < a[channel].size(); ++i) {
            if (!(std::fabs(a[channel][i] - b[channel][i]) <= 1e-5f)) return static_cast<long>(i);
        }
    }
    return -1;
}

TEST_P(Conformance, PlaysTheSameWhateverTheOrderOfItsPreparation) {
    CDriven reference(GetParam(), 48000.0f);
    const Channels expected = reference.PlayFor(0.5, 48000.0);
    EXPECT_GT(PeakOf(expected), 0.01f);
    // Each step in each place, and of every two either one before the other.
    for (const auto& order : {std::array{0, 1, 2, 3}, {1, 3, 0, 2}, {2, 0, 3, 1}, {3, 2, 1, 0}}) {
        CDriven plugin(GetParam(), 96000.0f);
        for (const int step : order) {
            if (step == 0) plugin.Call(vst2::effSetSampleRate, 0, 0, nullptr, 48000.0f);
            if (step == 1) plugin.Call(vst2::effSetBlockSize, 0, 64);
            if (step == 2) plugin.Call(vst2::effMainsChanged, 0, 1);
            if (step == 3) plugin.Call(vst2::effStartProcess);
        }
        EXPECT_EQ(FirstDifference(plugin.PlayFor(0.5, 48000.0), expected), -1);
    }
}

TEST_P(Conformance, SoundsTheSameInAnyBlocksAtAnyRate) {
    const std::vector<std::vector<int>> splits = {{1}, {16384}, {64}, {1, 7, 16, 333, 15, 4096, 2, 100}};
    for (const float rate : {22050.0f, 44100.0f, 96000.0f, 192000.0f}) {
        CDriven plugin(GetParam(), rate);
        const Channels expected = plugin.PlayFor(0.4, static_cast<double>(rate));
        EXPECT_TRUE(AllFinite(expected));
        EXPECT_GT(PeakOf(expected), 0.01f);
        for (const auto& split : splits) {
            plugin.Resume(rate);
            EXPECT_EQ(FirstDifference(plugin.PlayFor(0.4, static_cast<double>(rate), split), expected), -1)
                << rate << ", first block " << split[0];
        }
    }
    CDriven plugin(GetParam());
    for (int program = 0; program < plugin.Effect().numPrograms; ++program) {
        plugin.Call(vst2::effSetProgram, 0, program);
        plugin.Resume(44100.0f);
        const Channels expected = plugin.PlayFor(0.4, 44100.0);
        plugin.Resume(44100.0f);
        EXPECT_EQ(FirstDifference(plugin.PlayFor(0.4, 44100.0, {3, 700, 31}), expected), -1) << program;
    }
}

TEST_P(Conformance, StaysWithinBoundsWhileEveryParameterIsSwept) {
    CDriven plugin(GetParam());
    for (int index = 0; index < plugin.Effect().numParams; ++index) {
        const float kept = plugin.Get(index);
        const Channels sound = plugin.PlayFor(0.3, 44100.0, {64}, [&](long frame) {
            plugin.Set(index, static_cast<float>(std::abs(frame % 8192 - 4096)) / 4096.0f);
        });
        EXPECT_TRUE(AllFinite(sound)) << plugin.Text(vst2::effGetParamName, index);
        EXPECT_LT(PeakOf(sound), 8.0f) << plugin.Text(vst2::effGetParamName, index);
        plugin.Set(index, kept);
    }
}

TEST_P(Conformance, StaysFiniteWithRandomProgramsParametersRatesAndBlocks) {
    CDriven plugin(GetParam());
    std::mt19937 random(11);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (int round = 0; round < 12; ++round) {
        const float rate = std::vector{22050.0f, 44100.0f, 48000.0f, 88200.0f, 192000.0f}[random() % 5];
        plugin.Resume(rate);
        const Channels sound =
            plugin.PlayFor(0.4, static_cast<double>(rate), {1 + below(64), 1 + below(2000)}, [&](long) {
                plugin.Set(below(plugin.Effect().numParams), static_cast<float>(below(1001)) / 1000.0f);
                if (below(20) == 0) plugin.Call(vst2::effSetProgram, 0, below(plugin.Effect().numPrograms));
            });
        ASSERT_TRUE(AllFinite(sound)) << round;
        ASSERT_LT(PeakOf(sound), 64.0f) << round;
    }
}

TEST_P(Conformance, SoundsTheSameFromItsChunkAndRefusesADamagedOne) {
    CDriven source(GetParam());
    const int chosen = source.Effect().numPrograms - 2;
    source.Call(vst2::effSetProgram, 0, chosen);
    char name[] = "My own sound";
    source.Call(vst2::effSetProgramName, 0, 0, name);
    for (int i = 0; i < source.Effect().numParams; ++i) {
        source.Set(i, 0.9f * source.Get(i) + 0.01f * static_cast<float>(i % 9));
    }
    const std::vector<char> saved = source.Chunk();
    source.Resume(44100.0f);
    const Channels expected = source.PlayFor(0.5, 44100.0);

    CDriven target(GetParam());
    std::mt19937 random(5);
    for (int i = 0; i < 200; ++i) {
        std::vector<char> damaged = saved;
        damaged[random() % damaged.size()] ^= static_cast<char>(1u << (random() % 8));
        EXPECT_EQ(target.SetChunk(damaged), 0);
        damaged = saved;
        damaged.resize(random() % saved.size());
        EXPECT_EQ(target.SetChunk(damaged), 0);
    }
    EXPECT_EQ(target.SetChunk(source.Chunk(false)), 0) << "a program for a bank";
    const bool drums = std::string(GetParam().name) == "QUIB drums";
    CLoadedPlugin stranger(drums ? "QUIB synth" : "QUIB drums");
    EXPECT_EQ(target.SetChunk(stranger.Chunk()), 0);
    EXPECT_EQ(target.Chunk(), CDriven(GetParam()).Chunk()) << "refused, and yet something changed";

    ASSERT_EQ(target.SetChunk(saved), 1);
    EXPECT_EQ(target.Chunk(), saved);
    EXPECT_EQ(target.Call(vst2::effGetProgram), chosen);
    EXPECT_EQ(target.Text(vst2::effGetProgramName), name);
    target.Resume(44100.0f);
    EXPECT_EQ(FirstDifference(target.PlayFor(0.5, 44100.0), expected), -1);

    CDriven single(GetParam());
    single.Call(vst2::effSetProgram, 0, 1);
    ASSERT_EQ(single.SetChunk(source.Chunk(false), false), 1);
    EXPECT_EQ(single.Text(vst2::effGetProgramNameIndexed, 1), name);
    EXPECT_NE(single.Text(vst2::effGetProgramNameIndexed, chosen), name);
}

// A state of before the last parameters: its checksum, the number of parameters and a value fewer in each program.
TEST_P(Conformance, TakesAStateWithFewerParametersAndLeavesTheNewOnesNeutral) {
    CDriven plugin(GetParam());
    plugin.Call(vst2::effSetProgram, 0, plugin.Effect().numPrograms - 1);
    const std::vector<char> chunk = plugin.Chunk(false);
    const std::vector<std::uint8_t> bytes(chunk.begin(), chunk.end());
    std::optional<quibplug::ChunkContent> content = quibplug::ReadChunk(bytes);
    ASSERT_TRUE(content);
    content->programs[0].values.pop_back();
    content->programs[0].values[0] = 0.25f;
    const std::vector<std::uint8_t> older = quibplug::WriteChunk(*content);
    ASSERT_EQ(plugin.SetChunk({older.begin(), older.end()}, false), 1);
    EXPECT_EQ(plugin.Get(0), 0.25f);
    const int last = plugin.Effect().numParams - 1;
    const float neutral = plugin.Get(last);
    plugin.Set(last, neutral < 0.5f ? 1.0f : 0.0f);
    ASSERT_EQ(plugin.SetChunk({older.begin(), older.end()}, false), 1);
    EXPECT_EQ(plugin.Get(last), neutral) << "left from what was set before";
}

TEST_P(Conformance, ShowsItsParametersInUnitsAndTakesThemBack) {
    CDriven plugin(GetParam());
    for (int i = 0; i < plugin.Effect().numParams; ++i) {
        EXPECT_FALSE(plugin.Text(vst2::effGetParamName, i).empty());
        EXPECT_LT(plugin.Text(vst2::effGetParamLabel, i).size(), 8u);
        for (const float value : {0.0f, 0.3f, 0.77f, 1.0f}) {
            plugin.Set(i, value);
            std::string shown = plugin.Text(vst2::effGetParamDisplay, i);
            plugin.Set(i, 0.5f);
            ASSERT_EQ(plugin.Call(vst2::effString2Parameter, i, 0, shown.data()), 1) << shown;
            EXPECT_EQ(plugin.Text(vst2::effGetParamDisplay, i), shown);
        }
    }
}

TEST_P(Conformance, IgnoresWhatIsOutOfRange) {
    CDriven plugin(GetParam());
    const std::vector<char> before = plugin.Chunk();
    for (const int index : {-1, plugin.Effect().numParams, 0x500008, 0x7fffffff}) {
        plugin.Set(index, 4660.0f);
        EXPECT_EQ(plugin.Get(index), 0.0f);
        EXPECT_EQ(plugin.Text(vst2::effGetParamName, index), "");
    }
    plugin.Set(0, std::nanf(""));
    for (const int program : {-1, plugin.Effect().numPrograms, 0x7fffffff}) {
        plugin.Call(vst2::effSetProgram, 0, program);
    }
    EXPECT_EQ(plugin.Call(vst2::effSetChunk, 0, 100, nullptr), 0);
    EXPECT_EQ(plugin.Chunk(), before);
}

TEST_P(Conformance, DescribesItsInputsAndOutputsAsStereoPairs) {
    CDriven plugin(GetParam());
    for (const auto& [opcode, count] : {std::pair{vst2::effGetInputProperties, plugin.Effect().numInputs},
                                        std::pair{vst2::effGetOutputProperties, plugin.Effect().numOutputs}}) {
        for (int i = 0; i < count; ++i) {
            quibplug::PinProperties pin{};
            ASSERT_EQ(plugin.Call(opcode, i, 0, &pin), 1);
            EXPECT_NE(pin.label[0], '\0');
            EXPECT_EQ((pin.flags & quibplug::kPinFirstOfStereoPair) != 0, i % 2 == 0);
        }
        quibplug::PinProperties pin{};
        EXPECT_EQ(plugin.Call(opcode, count, 0, &pin), 0);
        EXPECT_EQ(pin.label[0], '\0');
    }
}

TEST_P(Conformance, RunsAHundredTimesAtOnceAndAlwaysTheSame) {
    std::vector<std::unique_ptr<CDriven>> plugins;
    plugins.reserve(100);
    for (int i = 0; i < 100; ++i) plugins.push_back(std::make_unique<CDriven>(GetParam()));
    const Channels first = plugins.back()->PlayFor(0.4, 44100.0);
    EXPECT_GT(PeakOf(first), 0.0f);
    plugins.back()->Resume(44100.0f);
    for (auto& plugin : plugins) EXPECT_EQ(plugin->PlayFor(0.4, 44100.0), first);
}

TEST_P(Conformance, MayBeEditedByAnotherThreadWhileItPlays) {
    CDriven plugin(GetParam());
    std::atomic<bool> done = false;
    std::thread editor([&] {
        std::vector<char> bank = plugin.Chunk();
        for (int i = 0; !done.load(); ++i) {
            plugin.Set(i % plugin.Effect().numParams, static_cast<float>(i % 7) / 6.0f);
            plugin.Get(i % plugin.Effect().numParams);
            plugin.Text(vst2::effGetParamDisplay, i % plugin.Effect().numParams);
            plugin.Call(vst2::effGetTailSize);
            if (i % 10 == 0) plugin.Call(vst2::effSetProgram, 0, i / 10 % plugin.Effect().numPrograms);
            if (i % 100 == 0) plugin.SetChunk(bank);
            if (i % 100 == 50) bank = plugin.Chunk();
        }
    });
    const Channels sound = plugin.PlayFor(3.0, 44100.0, {64});
    done.store(true);
    editor.join();
    EXPECT_TRUE(AllFinite(sound));
    EXPECT_LT(PeakOf(sound), 64.0f);
}

#if !defined(QUIB_SANITIZED)
TEST_P(Conformance, AllocatesNothingWhileItPlays) {
    for (const float rate : {44100.0f, 192000.0f}) {
        CDriven plugin(GetParam(), rate);
        long before = AllocationsOfThisThread();
        plugin.Chunk();
        ASSERT_GT(AllocationsOfThisThread(), before) << "allocations of the plug-in are not seen";
        vst2::VstMidiEvent event{};
        event.type = vst2::kVstMidiType;
        event.midiData[0] = 0x90;
        event.midiData[2] = 100;
        vst2::VstEvents events{1, 0, {reinterpret_cast<vst2::VstEvent*>(&event), nullptr}};
        std::vector<float> input(512, 0.1f);
        std::vector<float> output(512);
        std::vector<float*> inputs(2, input.data());
        std::vector<float*> outputs(10, output.data());
        before = AllocationsOfThisThread();
        for (int i = 0; i < 1000; ++i) {
            event.midiData[1] = static_cast<std::uint8_t>(30 + i % 60);
            plugin.Call(vst2::effProcessEvents, 0, 0, &events);
            plugin.Set(i % plugin.Effect().numParams, static_cast<float>(i % 9) / 8.0f);
            plugin.Effect().processReplacing(&plugin.Effect(), inputs.data(), outputs.data(), 512);
        }
        EXPECT_EQ(AllocationsOfThisThread(), before) << rate;
    }
}
#endif

INSTANTIATE_TEST_SUITE_P(
    BuiltIn, Conformance,
    testing::Values(Subject{"QUIB synth", "PluginInstruments", {48, 52, 55, 60}},
                    Subject{"QUIB drums", "PluginInstruments", {36, 38, 42, 46, 49}},
                    Subject{"QUIB Loops", "PluginInstruments", {36, 60}}, Subject{"QUIB chorus", "PluginEffects", {}},
                    Subject{"QUIB reverb", "PluginEffects", {}}, Subject{"QUIB delay", "PluginEffects", {}},
                    Subject{"QUIB compressor", "PluginEffects", {}}, Subject{"QUIB flanger", "PluginEffects", {}}),
    [](const auto& test) { return std::string(test.param.name).substr(5); });

}  // namespace

}  // namespace quibtest
