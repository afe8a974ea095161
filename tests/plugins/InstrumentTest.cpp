// SPDX-License-Identifier: GPL-3.0-or-later
// What holds for every built-in instrument.

#include "plugins/CLoadedPlugin.h"

namespace quibtest {

namespace {

// Notes that every instrument answers: a chord for the synthesiser, a kit's strokes for the drums, a
// beat and a bass for the loops.
const std::vector<int> kSynthKeys = {48, 52, 55, 60};
const std::vector<int> kDrumKeys = {36, 38, 42, 49};
const std::vector<int> kLoopKeys = {36, 60};

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

INSTANTIATE_TEST_SUITE_P(BuiltIn, Instrument, testing::Values("QUIB synth", "QUIB drums", "QUIB Loops"),
                         [](const auto& tested) { return std::string(tested.param).substr(5); });

}  // namespace

}  // namespace quibtest
