// SPDX-License-Identifier: GPL-3.0-or-later
#include <dlfcn.h>
#include <sndfile.h>
#include <unistd.h>

#include "CTemporaryFolder.h"
#include "loops/LoopExports.h"
#include "plugins/CLoadedPlugin.h"

namespace quibtest {

namespace {

namespace fs = std::filesystem;

void WriteWave(const fs::path& file, const std::vector<float>& samples, int rate, int channels = 1,
               int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = format;
    SNDFILE* output = sf_open(file.c_str(), SFM_WRITE, &info);
    ASSERT_NE(output, nullptr);
    sf_write_float(output, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(output);
}

std::vector<float> Sine(double hertz, double seconds, double rate) {
    std::vector<float> samples(static_cast<std::size_t>(std::lround(seconds * rate)));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double turns = hertz * static_cast<double>(i) / rate;
        samples[i] = 0.5f * static_cast<float>(std::sin(2.0 * std::numbers::pi * turns));
    }
    return samples;
}

// Four beats at 120, each a burst of 1 kHz that rings for 0.2 s, the first one louder.
std::vector<float> Clicks() {
    std::vector<float> samples(2 * kSecond);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double place = static_cast<double>(i % (kSecond / 2)) / kRate;
        const double level = (i < kSecond / 2 ? 0.8 : 0.5) * std::exp(-place * 30.0);
        samples[i] = static_cast<float>(level * std::sin(2.0 * std::numbers::pi * 1000.0 * place));
    }
    return samples;
}

// The plug-in with a Loops folder of the test's own beside it.
class Loops : public testing::Test {
protected:
    Loops() {
        fs::create_directories(root / "PluginInstruments");
        fs::create_directories(root / "Loops");
        fs::create_directories(root / "Mine");
        setenv("QUIB_LOOPS", (root / "Mine").c_str(), 1);
        fs::copy_file(fs::path(QUIB_BIN_DIR) / "PluginInstruments/QUIB Loops.so", Library());
        WriteWave(root / "Loops/50 clicks 120bpm.wav", Clicks(), 44100);
        WriteWave(root / "Loops/tone 120bpm.WAV", Sine(441.0, 2.0, 44100.0), 44100);
        WriteWave(root / "Loops/52 fast 120bpm.wav", Sine(441.0, 2.0, 48000.0), 48000);
        WriteWave(root / "Loops/50 clicks again.wav", Clicks(), 44100);
        std::ofstream(root / "Loops/60 damaged.wav") << "RIFF and nothing else";
        std::ofstream(root / "Loops/empty.wav").flush();
    }

    fs::path Library() const { return root / "PluginInstruments/QUIB Loops.so"; }
    CLoadedPlugin Open(float rate = 44100.0f) const {
        return CLoadedPlugin("QUIB Loops", rate, fs::relative(root / "PluginInstruments", QUIB_BIN_DIR).string());
    }
    void SetTempo(CLoadedPlugin& plugin, double tempo) {
        time.tempo = tempo;
        time.flags = vst2::kVstTempoValid;
        plugin.SetTime(&time);
    }
    template <typename Function>
    Function Export(const char* name) const {
        void* library = dlopen(Library().c_str(), RTLD_NOW | RTLD_LOCAL);
        return reinterpret_cast<Function>(dlsym(library, name));
    }

    const quib::CTemporaryFolder temporary;
    const fs::path& root = temporary.Path();
    vst2::VstTimeInfo time{};
};

// The frames at which the sound sets in anew.
std::vector<long> Onsets(const std::vector<float>& samples) {
    std::vector<long> onsets;
    constexpr long kWindow = 44;
    float before = 0.0f;
    for (long at = 0; at + kWindow < static_cast<long>(samples.size()); at += kWindow) {
        const float peak = PeakOf(samples, at, at + kWindow);
        if (peak > 0.1f && peak > 3.0f * before && (onsets.empty() || at - onsets.back() > 2000)) onsets.push_back(at);
        before = std::max(peak, 0.9f * before);
    }
    return onsets;
}

TEST_F(Loops, TellsItsLoopsByItsExports) {
    const auto number = Export<std::intptr_t (*)()>("GetWaveNumber");
    const auto infos = Export<std::intptr_t (*)(std::intptr_t, quibplug::LoopInfo*)>("GetWaveInfos");
    const auto begin = Export<std::intptr_t (*)(std::intptr_t, std::intptr_t)>("GetWaveBegin");
    const auto counter = Export<std::intptr_t (*)(std::intptr_t)>("GetWaveCompter");
    ASSERT_TRUE(number != nullptr && infos != nullptr && begin != nullptr && counter != nullptr);
    // A taken key and no key: the free ones from 36 on, by name. What cannot be read is left out.
    ASSERT_EQ(number(), 4);
    const std::vector<std::pair<int, std::string>> expected = {
        {36, "50 clicks again"}, {37, "tone 120bpm"}, {50, "50 clicks 120bpm"}, {52, "52 fast 120bpm"}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        quibplug::LoopInfo info{};
        ASSERT_EQ(infos(static_cast<std::intptr_t>(i), &info), 1);
        EXPECT_EQ(info.key, expected[i].first);
        EXPECT_EQ(info.name, expected[i].second);
        EXPECT_NEAR(info.tempo, 120.0, 0.01);
        EXPECT_EQ(info.frames, 2 * kSecond);
    }
    for (std::intptr_t slice = 1; slice < 4; ++slice) {
        EXPECT_NEAR(static_cast<double>(begin(2, slice)), 22050.0 * static_cast<double>(slice), 0.01 * kRate);
    }
    EXPECT_EQ(begin(2, 4), -1);
    EXPECT_EQ(begin(4, 0), -1);
    EXPECT_EQ(infos(-1, nullptr), 0);

    CLoadedPlugin plugin = Open();
    EXPECT_EQ(counter(2), -1);
    plugin.Render(kSecond, {{0, 0x90, 50, 100}});
    EXPECT_NEAR(static_cast<double>(counter(2)), static_cast<double>(kSecond), 100.0);
    plugin.Render(kSecond, {{0, 0x80, 50, 0}});
    EXPECT_EQ(counter(2), -1);
}

// What sounds goes on while the folders change.
TEST_F(Loops, FollowsItsFoldersAndThoseOfTheUserWhileItPlays) {
    const auto number = Export<std::intptr_t (*)()>("GetWaveNumber");
    CLoadedPlugin plugin = Open();
    SetTempo(plugin, 120.0);
    plugin.Resume(44100.0f);
    plugin.Render(kSecond / 10, {{0, 0x90, 50, 127}});
    EXPECT_EQ(number(), 4);
    constexpr int kMp3 = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
    WriteWave(root / "Mine/99 mine 120bpm.mp3", Sine(441.0, 2.0, 44100.0), 44100, 1, kMp3);
    EXPECT_EQ(number(), 5);
    const Channels both = plugin.Render(kSecond, {{0, 0x90, 99, 127}});
    EXPECT_GT(PeakOf(both[0], kSecond / 5, kSecond / 3), 0.3f) << "the new one";
    fs::remove(root / "Mine/99 mine 120bpm.mp3");
    fs::remove(root / "Loops/50 clicks 120bpm.wav");
    EXPECT_EQ(number(), 3);
    const Channels on = plugin.Render(kSecond, {{0, 0x80, 50, 0}});
    EXPECT_GT(PeakOf(on[0], kSecond / 2, kSecond), 0.3f) << "what is gone sounds until it ends";
    plugin.Render(kSecond, {{0, 0x80, 99, 0}});
    const Channels silent = plugin.Render(kSecond, {{0, 0x90, 99, 127}});
    EXPECT_EQ(PeakOf(silent[0], 0, kSecond), 0.0f);
}

TEST_F(Loops, PlaysALoopAsItIsAtItsOwnTempo) {
    const std::vector<float> clicks = Clicks();
    for (const char* stretch : {"Slices", "Smooth"}) {
        CLoadedPlugin plugin = Open();
        plugin.Set("Stretch", stretch);
        SetTempo(plugin, 120.0);
        plugin.Resume(44100.0f);
        const Channels sound = plugin.Render(5 * kSecond, {{0, 0x90, 50, 127}}, {300});
        for (std::size_t i = 0; i < sound[0].size(); ++i) {
            ASSERT_NEAR(sound[0][i], clicks[i % clicks.size()], 1e-4f) << stretch << " at " << i;
        }
    }
}

TEST_F(Loops, StrikesOnTheBeatOfTheHost) {
    for (const char* stretch : {"Slices", "Smooth"}) {
        for (const double tempo : {80.0, 107.3, 150.0, 180.0}) {
            CLoadedPlugin plugin = Open();
            plugin.Set("Stretch", stretch);
            SetTempo(plugin, tempo);
            plugin.Resume(44100.0f);
            const Channels sound = plugin.Render(5 * kSecond, {{0, 0x90, 50, 127}});
            const double beat = 60.0 / tempo * kRate;
            const auto beats = static_cast<std::size_t>(5.0 * kRate / beat);
            const std::vector<long> onsets = Onsets(sound[0]);
            ASSERT_GE(onsets.size(), beats) << stretch << " at " << tempo;
            for (std::size_t i = 0; i < beats; ++i) {
                EXPECT_NEAR(static_cast<double>(onsets[i]), beat * static_cast<double>(i), 0.012 * kRate)
                    << stretch << " at " << tempo;
            }
        }
    }
}

TEST_F(Loops, StretchesAToneWithoutBendingOrBreakingIt) {
    for (const double tempo : {71.0, 110.0, 163.0}) {
        for (const auto& [tune, hertz] :
             {std::pair{"0", 441.0}, {"12", 882.0}, {"-5", 441.0 * std::exp2(-5.0 / 12.0)}}) {
            for (const int key : {37, 52}) {
                CLoadedPlugin plugin = Open();
                plugin.Set("Stretch", "Smooth");
                plugin.Set("Tune", tune);
                SetTempo(plugin, tempo);
                plugin.Resume(44100.0f);
                const Channels sound = plugin.Render(4 * kSecond, {{0, 0x90, key, 127}});
                EXPECT_LT(LargestStep(sound[0], 0, 4 * kSecond), 0.5 * 2.0 * std::numbers::pi * hertz / kRate * 1.2)
                    << tune << " at " << tempo;
                for (long at = kSecond; at + 8820 < 4 * kSecond; at += 2205) {
                    ASSERT_GT(AmplitudeAt(sound[0], hertz, kRate, at, at + 8820), 0.42) << tune << " at " << tempo;
                    EXPECT_NEAR(PeakOf(sound[0], at, at + 1000), 0.5f, 0.12f) << tune << " at " << tempo;
                }
            }
        }
    }
}

TEST_F(Loops, PlaysAsLongAsItsModeSays) {
    const auto peakAt = [&](const char* play, const std::vector<Message>& messages, double second) {
        CLoadedPlugin plugin = Open();
        plugin.Set("Play", play);
        SetTempo(plugin, 120.0);
        plugin.Resume(44100.0f);
        const auto at = static_cast<long>(second * kRate);
        return PeakOf(plugin.Render(at + 2000, messages)[0], at);
    };
    const std::vector<Message> touched = {{0, 0x90, 37, 127}, {1000, 0x80, 37, 0}};
    std::vector<Message> twice = touched;
    twice.push_back({kSecond, 0x90, 37, 127});
    EXPECT_EQ(peakAt("Gate", touched, 0.5), 0.0f);
    EXPECT_GT(peakAt("Gate", {{0, 0x90, 37, 127}}, 2.5), 0.4f);
    EXPECT_GT(peakAt("One Shot", touched, 1.9), 0.4f);
    EXPECT_EQ(peakAt("One Shot", touched, 2.3), 0.0f);
    EXPECT_GT(peakAt("Toggle", touched, 2.5), 0.4f);
    EXPECT_EQ(peakAt("Toggle", twice, 2.5), 0.0f);
}

TEST_F(Loops, CutsStrokesShortAndChangesAnythingWithoutAJump) {
    CLoadedPlugin plugin = Open();
    SetTempo(plugin, 120.0);
    plugin.Set("Slice Decay", "60");
    plugin.Resume(44100.0f);
    const Channels brief = plugin.Render(2 * kSecond, {{0, 0x90, 50, 127}});
    EXPECT_LT(PeakOf(brief[0], 3000, 20000), 0.02f);
    EXPECT_GT(PeakOf(brief[0], 22050, 23000), 0.3f);
    plugin.Set("Slice Decay", "10000");
    const float natural = 0.5f * 2.0f * std::numbers::pi_v<float> * 441.0f / 44100.0f;
    for (int index = 0; index < plugin.Effect().numParams; ++index) {
        const std::string name = plugin.Text(vst2::effGetParamName, index);
        if (name == "Volume" || name == "Tune" || name == "Speed") continue;  // louder or higher: steeper by nature
        const float kept = plugin.Get(index);
        plugin.Resume(44100.0f);
        const Channels moved = plugin.Render(2 * kSecond, {{0, 0x90, 37, 127}}, {441}, [&](long frame) {
            if (frame >= kSecond / 2 && frame % 8820 == 0) plugin.Set(index, frame % 17640 == 0 ? 0.0f : 1.0f);
        });
        EXPECT_LT(LargestStep(moved[0], 0, 2 * kSecond), 1.5f * natural + 0.01f) << name;
        plugin.Set(index, kept);
    }
}

}  // namespace

}  // namespace quibtest
