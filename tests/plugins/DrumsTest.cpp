// SPDX-License-Identifier: GPL-3.0-or-later

#include "plugins/CLoadedPlugin.h"

namespace quibtest {

namespace {

Channels Strokes(CLoadedPlugin& plugin, const std::vector<Message>& messages, long frames = kSecond) {
    plugin.Resume(44100.0f);
    return plugin.Render(frames, messages);
}

// The mean frequency of the energy, in hertz, from the energy of the slope.
double Centroid(const std::vector<float>& samples, long begin, long end) {
    double energy = 0.0;
    double slope = 0.0;
    for (auto i = static_cast<std::size_t>(begin) + 1; i < static_cast<std::size_t>(end); ++i) {
        const auto step = static_cast<double>(samples[i] - samples[i - 1]);
        slope += step * step;
        energy += static_cast<double>(samples[i] * samples[i]);
    }
    return 44100.0 / std::numbers::pi * std::asin(0.5 * std::sqrt(slope / energy));
}

TEST(Drums, AnswersItsKeysAndNoOthers) {
    CLoadedPlugin plugin("QUIB drums");
    EXPECT_EQ(plugin.Effect().uniqueId, 0x31366378);
    std::map<std::string, int> names;
    for (int key = 0; key < 128; ++key) {
        const bool standard = (key >= 35 && key <= 57) || (key >= 59 && key <= 64) || key == 70 || key == 75;
        const float peak = PeakOf(Strokes(plugin, {{100, 0x90, key, 100}}, 4000));
        vst2::MidiKeyName name{};
        name.key = key;
        EXPECT_EQ(plugin.Call(vst2::effGetMidiKeyName, 0, 0, &name), standard ? 1 : 0) << key;
        if (standard) {
            EXPECT_GT(peak, 0.01f) << key;
            ++names[name.name];
        } else {
            EXPECT_EQ(peak, 0.0f) << key;
        }
    }
    // Two keys each for kick and snare; every other name stands once.
    EXPECT_EQ(names.size(), 29u);
    EXPECT_EQ(names["Kick"] + names["Snare"], 4);
    EXPECT_EQ(Strokes(plugin, {{0, 0x90, 35, 90}}), Strokes(plugin, {{0, 0x90, 36, 90}}));
    EXPECT_EQ(Strokes(plugin, {{0, 0x90, 40, 90}}), Strokes(plugin, {{0, 0x90, 38, 90}}));
    // The toms climb with their keys, and none cuts another off.
    double before = 0.0;
    for (const int key : {41, 43, 45, 47, 48, 50}) {
        const double pitch = Centroid(Strokes(plugin, {{0, 0x90, key, 100}})[0], 4000, 12000);
        EXPECT_GT(pitch, 1.05 * before) << key;
        before = pitch;
    }
    const float alone = PeakOf(Strokes(plugin, {{0, 0x90, 41, 100}})[0], 9000, 12000);
    EXPECT_GT(PeakOf(Strokes(plugin, {{0, 0x90, 41, 100}, {6000, 0x90, 43, 1}})[0], 9000, 12000), 0.8f * alone);
}

TEST(Drums, PlaysTheKitsWithoutARoomAsBeforeThereWasOne) {
    CLoadedPlugin plugin("QUIB drums");
    for (int kit = 0; kit < 16; ++kit) {
        plugin.Call(vst2::effSetProgram, 0, kit);
        EXPECT_EQ(plugin.Get(plugin.Find("Room Level")), 0.0f);
        EXPECT_EQ(plugin.Get(plugin.Find("Kit Touch")), 0.0f);
        // Without a room nothing of a stroke in the middle differs between the sides.
        plugin.Set("Snare Pan", "0");
        const Channels dry = Strokes(plugin, {{0, 0x90, 38, 100}});
        EXPECT_EQ(dry[0], dry[1]) << kit;
    }
}

TEST(Drums, StandsInARoomAndAnswersToTheTouchInTheKitsMadeForIt) {
    CLoadedPlugin plugin("QUIB drums");
    ASSERT_GE(plugin.Effect().numPrograms, 24);
    for (int kit = 16; kit < plugin.Effect().numPrograms; ++kit) {
        SCOPED_TRACE(plugin.Text(vst2::effGetProgramNameIndexed, kit));
        plugin.Call(vst2::effSetProgram, 0, kit);
        const auto snare = [&](int velocity) {
            return Centroid(Strokes(plugin, {{0, 0x90, 38, velocity}})[0], 0, kSecond);
        };
        EXPECT_GT(snare(127), 2.0 * snare(1));
        EXPECT_GT(snare(127), 1.15 * snare(64));
        // Panned from side to side, and the room goes on when the dry rim shot has ended.
        const Channels left = Strokes(plugin, {{0, 0x90, 50, 100}});
        const Channels right = Strokes(plugin, {{0, 0x90, 41, 100}});
        EXPECT_NE(PeakOf(left[0]) > PeakOf(left[1]), PeakOf(right[0]) > PeakOf(right[1]));
        const Channels wet = Strokes(plugin, {{0, 0x90, 37, 127}});
        plugin.Set("Room Level", "-oo");
        EXPECT_GT(PeakOf(wet[0], 4000, 8000), 4.0f * PeakOf(Strokes(plugin, {{0, 0x90, 37, 127}})[0], 4000, 8000));
    }
}

TEST(Drums, WalksFromRoomToRoomWithoutAJump) {
    CLoadedPlugin plugin("QUIB drums");
    plugin.Set({{"Kick Decay", "500"}, {"Kick Snap", "0"}, {"Room Level", "0"}});
    for (const char* name : {"Room Level", "Room Size", "Kit Touch"}) {
        const int index = plugin.Find(name);
        plugin.Set(index, 1.0f);
        plugin.Resume(44100.0f);
        const Channels sound = plugin.Render(kSecond, {{0, 0x90, 36, 100}}, {441}, [&](long frame) {
            if (frame == 4410) plugin.Set(index, 0.0f);
            if (frame == 13230) plugin.Set(index, 1.0f);
        });
        EXPECT_LT(LargestStep(sound[0], 3000, kSecond), 0.02f) << name;
    }
}

TEST(Drums, ChokesTheOpenHatByTheOthers) {
    CLoadedPlugin plugin("QUIB drums");
    const float open = PeakOf(Strokes(plugin, {{0, 0x90, 46, 110}})[0], 12000, 13000);
    ASSERT_GT(open, 0.002f);
    for (const int key : {42, 44}) {
        // The choking drum itself is turned down.
        plugin.Set(key == 42 ? "Closed Hat Level" : "Pedal Hat Level", "-oo");
        const Channels choked = Strokes(plugin, {{0, 0x90, 46, 110}, {10000, 0x90, key, 100}});
        EXPECT_GT(PeakOf(choked[0], 9000, 10000), open);
        EXPECT_EQ(PeakOf(choked[0], 10600), 0.0f) << key;
    }
}

TEST(Drums, SendsADrumToItsPairBesidesTheMainOne) {
    CLoadedPlugin plugin("QUIB drums");
    const int routing = plugin.Find("Snare Send");
    plugin.Set("Snare Pan", "40");
    const Channels plain = Strokes(plugin, {{0, 0x90, 36, 100}, {500, 0x90, 38, 100}});
    const Channels snare = Strokes(plugin, {{500, 0x90, 38, 100}});
    for (std::size_t output = 2; output < 10; ++output) EXPECT_EQ(PeakOf(plain[output]), 0.0f);
    for (std::size_t send = 0; send < 4; ++send) {
        plugin.Set(routing, static_cast<float>(send + 1) / 4.0f);
        const Channels routed = Strokes(plugin, {{500, 0x90, 38, 100}});
        const Channels both = Strokes(plugin, {{0, 0x90, 36, 100}, {500, 0x90, 38, 100}});
        for (std::size_t pair = 0; pair < 4; ++pair) {
            for (std::size_t side = 0; side < 2; ++side) {
                const auto& output = routed[2 * pair + 2 + side];
                if (pair == send) {
                    EXPECT_EQ(output, snare[side]) << "send " << send;
                    EXPECT_GT(PeakOf(output), 0.01f);
                } else {
                    EXPECT_EQ(PeakOf(output), 0.0f) << "send " << send << " pair " << pair;
                }
            }
        }
        EXPECT_EQ(both[0], plain[0]);
        EXPECT_EQ(both[1], plain[1]);
    }
}

TEST(Drums, ChangesItsMixWithoutAJump) {
    CLoadedPlugin plugin("QUIB drums");
    // A long pure kick shows every jump.
    plugin.Set({{"Kick Decay", "500"}, {"Kick Snap", "0"}});
    for (const char* name : {"Kick Level", "Kick Pan", "Kick Tune", "Kick Decay", "Kick Tone", "Kick Colour",
                             "Kick Send", "Kit Drive", "Kit Crush", "Kit Velocity", "Kit Volume"}) {
        const int index = plugin.Find(name);
        const float kept = plugin.Get(index);
        plugin.Set(index, 1.0f);
        plugin.Set("Kit Crush", "0");
        plugin.Resume(44100.0f);
        const Channels sound = plugin.Render(kSecond, {{0, 0x90, 36, 100}}, {441}, [&](long frame) {
            if (frame == 4410) plugin.Set(index, 0.0f);
            if (frame == 8820) plugin.Set(index, 1.0f);
        });
        for (const std::size_t output : {0u, 1u, 8u}) {
            EXPECT_LT(LargestStep(sound[output], 3000, kSecond), 0.02f) << name << " output " << output;
        }
        plugin.Set(index, kept);
    }
}

TEST(Drums, HatsWhistleAtNoFrequencyAboveTheirBand) {
    for (const float rate : {44100.0f, 96000.0f}) {
        CLoadedPlugin plugin("QUIB drums", rate);
        for (const int kit : {0, 3, 8}) {
            plugin.Call(vst2::effSetProgram, 0, kit);
            plugin.Set({{"Kit Crush", "0"}, {"Kit Drive", "0"}, {"Open Hat Colour", "100"}});
            plugin.Resume(rate);
            const Channels sound = plugin.Render(static_cast<long>(0.2f * rate), {{0, 0x90, 46, 100}});
            const auto level = [&](double hertz) {
                return AmplitudeAt(sound[0], hertz, static_cast<double>(rate), 0, static_cast<long>(0.2f * rate));
            };
            for (int centre = 17700; centre < 21000; centre += 200) {
                double sum = 0.0;
                double highest = 0.0;
                for (int hertz = centre - 200; hertz < centre + 200; hertz += 5) {
                    sum += level(hertz) / 80.0;
                    highest = std::max(highest, level(hertz));
                }
                EXPECT_LT(highest, 4.0 * sum) << plugin.Text(vst2::effGetProgramName) << " at " << centre;
            }
        }
    }
}

TEST(Drums, RepeatsAStrokeWithoutAClick) {
    CLoadedPlugin plugin("QUIB drums");
    plugin.Set({{"Kick Snap", "0"}, {"Kick Decay", "300"}});
    const float once = LargestStep(Strokes(plugin, {{0, 0x90, 36, 100}})[0], 0, kSecond);
    std::vector<Message> roll;
    for (long i = 0; i < 40; ++i) roll.push_back({i * 1003, 0x90, 36, 100});
    EXPECT_LT(LargestStep(Strokes(plugin, roll)[0], 0, kSecond), 2.0f * once);
}

TEST(Drums, TunesDecaysAndPansEachDrum) {
    CLoadedPlugin plugin("QUIB drums");
    plugin.Set("Claves Tune", "12");
    const Channels high = Strokes(plugin, {{0, 0x90, 75, 100}});
    EXPECT_GT(AmplitudeAt(high[0], 4960.0, 44100.0, 0, 4000), 5.0 * AmplitudeAt(high[0], 2480.0, 44100.0, 0, 4000));
    plugin.Set("Low Tom Decay", "30");
    const float brief = PeakOf(Strokes(plugin, {{0, 0x90, 41, 100}})[0], 15000, 20000);
    plugin.Set("Low Tom Decay", "300");
    EXPECT_GT(PeakOf(Strokes(plugin, {{0, 0x90, 41, 100}})[0], 15000, 20000), 100.0f * brief);
    plugin.Set("Crash Pan", "-100");
    EXPECT_EQ(PeakOf(Strokes(plugin, {{0, 0x90, 49, 100}})[1]), 0.0f);
}

}  // namespace

}  // namespace quibtest
