// SPDX-License-Identifier: GPL-3.0-or-later
// What hands on MIDI controllers mean: soft take-over, what is learned from messages, whose binding wins, its records.
#include <cmath>
#include <random>

#include "Testing.h"
#include "model/control/CControlLearner.h"
#include "model/control/CControlMap.h"
#include "model/files/ControlRecords.h"

namespace quib {
namespace {

constexpr float kStep = 1.0F / 127;

TEST(CTakeOver, NeverMovesAValueFartherThanTheHandHasMoved) {
    std::mt19937 dice(1);
    std::uniform_real_distribution<float> any(0, 1);
    int taken = 0;
    for (int session = 0; session < 2'000; ++session) {
        CTakeOver takeOver;
        float hand = any(dice);
        float value = any(dice);
        const bool whole = session % 2 == 0;
        const float low = whole ? 0 : any(dice) / 2;
        const float high = whole ? 1 : low + 0.3F;
        bool known = false;
        for (int move = 0; move < 60; ++move) {
            if (dice() % 12 == 0) value = any(dice);  // automation, a mouse
            const float before = hand;
            hand = std::clamp(hand + (any(dice) - 0.5F) * 0.3F, low, high);
            const auto next = takeOver.Take(hand, value, kStep, low, high);
            const float way = known ? std::abs(hand - before) : 0;
            known = true;
            if (!next) continue;
            ++taken;
            const float entry = std::abs(std::clamp(value, low, high) - value);  // into the range
            EXPECT_LE(std::abs(*next - value), std::max(way, kStep) + entry + 1e-5F);
            value = *next;
            takeOver.Written(value);
        }
    }
    EXPECT_GT(taken, 20'000) << "it does follow";
}

TEST(CTakeOver, GoesOnAfterAParameterHasRoundedTheValueAndEndsWhenSomethingElseMovesIt) {
    CTakeOver takeOver;
    EXPECT_FALSE(takeOver.Take(0.9F, 0.5F, kStep, 0, 1));
    ASSERT_TRUE(takeOver.Take(0.4F, 0.5F, kStep, 0, 1)) << "passed";
    takeOver.Written(0.5F);  // it has three places only
    EXPECT_TRUE(takeOver.Take(0.3F, 0.5F, kStep, 0, 1));
    takeOver.Written(0.5F);
    EXPECT_FALSE(takeOver.Take(0.25F, 0.9F, kStep, 0, 1)) << "moved by somebody else";
}

using Messages = std::vector<std::array<int, 3>>;

std::optional<CControlLearner::Learned> Learn(const Messages& messages) {
    CControlLearner learner;
    std::uint64_t now = 1;
    for (const auto& [status, data1, data2] : messages) {
        if (auto found = learner.Hear(status, data1, data2, now += 1'000'000)) return found;
    }
    return learner.Settle(now + CControlLearner::kPatience);
}

TEST(CControlLearner, TellsKnobsButtonsKeysEncodersAndPairsApart) {
    const struct {
        const char* what;
        Messages messages;
        ControlSource source;
        EControlMode mode;
    } cases[] = {
        {"a knob",
         {{0xb2, 21, 64}, {0xb2, 21, 65}, {0xb2, 21, 67}},
         {EControlSource::kController, 4, 21},
         EControlMode::kPickUp},
        {"one message", {{0xb0, 7, 100}}, {EControlSource::kController, 2, 7}, EControlMode::kPickUp},
        {"another knob is touched",
         {{0xb0, 7, 1}, {0xb0, 9, 1}, {0xb0, 7, 2}},
         {EControlSource::kController, 2, 7},
         EControlMode::kPickUp},
        {"a pad", {{0xb0, 40, 127}, {0xb0, 40, 0}}, {EControlSource::kController, 2, 40}, EControlMode::kToggle},
        {"a key", {{0x91, 60, 100}}, {EControlSource::kKey, 3, 60}, EControlMode::kToggle},
        {"a pair", {{0xb0, 1, 10}, {0xb0, 33, 99}}, {EControlSource::kFineController, 2, 1}, EControlMode::kPickUp},
        {"a pair, fine part first",
         {{0xb0, 33, 9}, {0xb0, 1, 10}},
         {EControlSource::kFineController, 2, 1},
         EControlMode::kPickUp},
        {"a wheel", {{0xe0, 0, 70}}, {EControlSource::kBend, 2, 0}, EControlMode::kPickUp},
        {"an encoder",
         {{0xb0, 5, 1}, {0xb0, 5, 1}, {0xb0, 5, 127}},
         {EControlSource::kController, 2, 5},
         EControlMode::kTwos},
        {"about 64",
         {{0xb0, 5, 65}, {0xb0, 5, 65}, {0xb0, 5, 63}},
         {EControlSource::kController, 2, 5},
         EControlMode::kOffset},
        {"with a sign",
         {{0xb0, 5, 1}, {0xb0, 5, 1}, {0xb0, 5, 66}},
         {EControlSource::kController, 2, 5},
         EControlMode::kSign},
        {"a program", {{0xc0, 9, 0}}, {EControlSource::kProgram, 2, 9}, EControlMode::kToggle},
    };
    for (const auto& one : cases) {
        const auto learned = Learn(one.messages);
        ASSERT_TRUE(learned) << one.what;
        EXPECT_EQ(learned->source, one.source) << one.what;
        EXPECT_EQ(learned->mode, one.mode) << one.what;
    }
    EXPECT_EQ(ShareOf(64, 127), 0.5F) << "the notch of a knob is the middle";
    EXPECT_EQ(ShareOf(127, 127), 1);
    EXPECT_EQ(ShareOf(16383, 16383), 1);
}

TEST(CControlMap, WhatTheProjectBindsWinsAndEditsKeepWhatPlaysOfTheOthers) {
    const ControlSource knob{EControlSource::kController, 3, 21};
    CControlMap map;
    map = map.With({knob, {EControlTarget::kMaster, 0, 0}});
    map = map.With({{EControlSource::kController, 1, 22}, {EControlTarget::kMaster, 0, 1}});
    const auto told = [&map](int status, int data1) {
        std::vector<EControlTarget> targets;
        map.ForEach(status, data1,
                    [&](const CControlMap::Entry& entry) { targets.push_back(entry.binding.target.kind); });
        return targets;
    };
    EXPECT_EQ(told(0xb1, 21).size(), 1U);
    EXPECT_EQ(told(0xb2, 21).size(), 0U) << "another channel";
    EXPECT_EQ(told(0xbf, 22).size(), 1U);
    const auto play = map.Entries()[0].play;
    map = map.With({{EControlSource::kController, 1, 21}, {EControlTarget::kStrip, 5, 0}});
    EXPECT_EQ(told(0xb1, 21), std::vector{EControlTarget::kStrip});
    map = map.Without([](const ControlBinding& binding) { return IsOfProject(binding.target.kind); });
    EXPECT_EQ(told(0xb1, 21), std::vector{EControlTarget::kMaster});
    EXPECT_EQ(map.Entries()[0].play, play);
    map = map.Retargeted([](ControlTarget& target) { return target.index-- != 0; });
    ASSERT_EQ(map.Entries().size(), 1U);
    EXPECT_EQ(map.Entries()[0].binding.target.index, 0);
}

TEST(ControlRecords, ComeBackAsTheyWereAndWhatIsOutOfRangeIsLeftOut) {
    const ControlBinding binding{{EControlSource::kFineController, 17, 31},
                                 {EControlTarget::kEffect4, 0, 300},
                                 EControlMode::kSign,
                                 0.75F,
                                 0.125F};
    CRecordWriter writer;
    WriteBinding(writer, binding);
    const std::string bytes(writer.Bytes().data(), writer.Bytes().size());
    const auto read = [](const std::string& text) {
        CRecordReader reader(text);
        return reader.NextLine() ? ReadBinding(reader) : std::nullopt;
    };
    EXPECT_EQ(read(bytes), binding);
    for (const char* const bad : {"MIDI_BINDING;6;1;0;0;1;0;0;0;1;\n", "MIDI_BINDING;0;0;0;0;1;0;0;0;1;\n",
                                  "MIDI_BINDING;0;1;128;0;1;0;0;0;1;\n", "MIDI_BINDING;0;1;0;19;1;0;0;0;1;\n",
                                  "MIDI_BINDING;0;1;0;0;1;0;7;0;1;\n", "MIDI_BINDING;0;1;0;0;1;0;0;0;\n"}) {
        EXPECT_FALSE(read(bad)) << bad;
    }
}

}  // namespace
}  // namespace quib
