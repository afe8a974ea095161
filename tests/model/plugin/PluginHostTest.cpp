// SPDX-License-Identifier: GPL-3.0-or-later
// Loading and calling plug-ins, and what they are told when they ask.

#include "Testing.h"
#include "model/plugin/vst2/CVst2Plugin.h"
#include "platform/FloatingPointMode.h"

namespace quib {
namespace {

using namespace vst2;

class CPluginHostTest : public testing::Test {
protected:
    CPluginHostTest() {
        environment.showMessage = [this](const std::string& text, const std::string& caption) {
            messages.push_back(caption + ": " + text);
        };
        environment.idle = [this] { ++idleRuns; };
        environment.parameterChanged = [this](CPlugin&, int parameter, float value) {
            reports.emplace_back(parameter, value);
        };
        environment.parameterTouched = [this](CPlugin&, int, bool on) { touches += on ? 1 : 0; };
        environment.currentTime = [](PlayTime& time) { time.tempo = 133.0; };
    }

    std::shared_ptr<CPlugin> Load(const std::string& name, ESlotKind kind) {
        return CPlugin::Load(QUIB_BIN_DIR "/testplugins/" + name + ".so", kind, environment, error);
    }
    // Throws, as a test cannot go on without it.
    std::shared_ptr<CPlugin> Loaded(const std::string& name) {
        auto plugin = Load(name, ESlotKind::kInstrument);
        return plugin ? plugin : throw std::runtime_error(error);
    }
    static std::intptr_t Ask(CPlugin& asker, int hostOpcode, void* pointer = nullptr) {
        return dynamic_cast<CVst2Plugin&>(asker).Dispatch(effVendorSpecific, hostOpcode, 0, pointer);
    }

    PluginEnvironment environment;
    std::string error;
    std::vector<std::string> messages;
    std::vector<std::pair<int, float>> reports;
    int touches = 0;
    int idleRuns = 0;
};

TEST_F(CPluginHostTest, LibrariesThatAreNoPluginsFailWithoutBotheringTheUser) {
    EXPECT_TRUE(Load("Gain", ESlotKind::kEffect)) << "the old entry point alone: " << error;
    for (const char* const name : {"NoEntry", "Refuses", "NotThere"}) {
        error.clear();
        EXPECT_FALSE(Load(name, ESlotKind::kEffect)) << name;
        EXPECT_FALSE(error.empty()) << name;
    }
    EXPECT_TRUE(messages.empty()) << messages.front();
}

TEST_F(CPluginHostTest, APluginInTheWrongPlaceIsRefusedWithAMessage) {
    EXPECT_FALSE(Load("Gain", ESlotKind::kInstrument));
    EXPECT_FALSE(Load("NoteProbe", ESlotKind::kEffect));
    EXPECT_EQ(messages, (std::vector<std::string>{"QUIB: This plugin is not a synth category !",
                                                  "QUIB: This plugin is not a compatible category !"}));
    EXPECT_TRUE(CPlugin::LoadAny(QUIB_BIN_DIR "/testplugins/NoteProbe.so", environment, error)) << error;
    EXPECT_EQ(messages.size(), 2U);
}

TEST_F(CPluginHostTest, AMonoPluginHasTwoBuffersOnEachSideAndShowsTheNameOfItsUse) {
    const auto mono = Load("Mono", ESlotKind::kEffect);
    ASSERT_TRUE(mono) << error;
    EXPECT_EQ(mono->Identity().effectName, "QUIB compressor");
    EXPECT_EQ(mono->Identity().displayName, "Limiter");
    EXPECT_EQ(mono->OutputCount(), 1);
    const std::vector<float> left(CPlugin::kMaximumFrames, 0.5F);
    const std::vector<float> right(CPlugin::kMaximumFrames, 0.25F);
    mono->Process(left.data(), right.data(), CPlugin::kMaximumFrames);
    EXPECT_EQ(mono->Left()[CPlugin::kMaximumFrames - 1], 0.375F);
    EXPECT_EQ(mono->Right()[CPlugin::kMaximumFrames - 1], 0.375F);
    EXPECT_EQ(mono->Output(1)[CPlugin::kMaximumFrames - 1], 0.0F);
    EXPECT_EQ(mono->Latency(), 64);
}

TEST_F(CPluginHostTest, EveryQuestionOfAPluginHasItsFixedAnswer) {
    const auto asker = Loaded("Asker");
    for (int opcode = 0; opcode <= 60; ++opcode) {
        if (opcode == audioMasterGetTime) continue;
        std::intptr_t expected = 0;
        if (opcode == audioMasterVersion) expected = 2400;
        if (opcode == audioMasterCurrentId) expected = 0x71756962;  // "quib"
        for (const int yes : {audioMasterWantMidi, audioMasterGetProductString, audioMasterGetVendorVersion,
                              audioMasterUpdateDisplay}) {
            if (opcode == yes) expected = 1;
        }
        char text[256] = "untouched";
        EXPECT_EQ(Ask(*asker, opcode, text), expected) << "opcode " << opcode;
        EXPECT_STREQ(text, opcode == audioMasterGetProductString ? "QUIB Sequencer" : "untouched") << opcode;
    }
    EXPECT_EQ(Ask(*asker, audioMasterGetProductString, nullptr), 0);
    EXPECT_EQ(Ask(*asker, -2), 2400) << "asked without an effect";
    EXPECT_TRUE(reports.empty()) << "a question out of a call of ours is no move of the user's";
}

TEST_F(CPluginHostTest, IdleRequestsReachTheApplicationFromItsOwnThreadOnly) {
    const auto asker = Loaded("Asker");
    EXPECT_FALSE(asker->NeedsIdle());
    Ask(*asker, audioMasterNeedIdle);
    EXPECT_TRUE(asker->NeedsIdle());
    EXPECT_EQ(idleRuns, 0);
    Ask(*asker, audioMasterIdle);
    EXPECT_EQ(idleRuns, 1);
    std::thread([&] { Ask(*asker, audioMasterIdle); }).join();
    EXPECT_EQ(idleRuns, 1);
}

TEST_F(CPluginHostTest, TheTimeToldDependsOnTheThreadThatAsks) {
    const auto asker = Loaded("Asker");
    EXPECT_EQ(Ask(*asker, -1), 0) << "during the entry call nobody owns the effect yet";
    const auto* const editing = reinterpret_cast<const VstTimeInfo*>(Ask(*asker, audioMasterGetTime));
    ASSERT_NE(editing, nullptr);
    EXPECT_EQ(editing->tempo, 133.0);
    std::intptr_t own = 1;
    std::thread([&] { own = Ask(*asker, audioMasterGetTime); }).join();
    EXPECT_EQ(own, 0) << "a thread of the plug-in's own";
    std::thread([&] {
        const CRenderThreadScope renderThread;
        PlayTime block;
        block.tempo = 97.0;
        asker->SetBlockTime(block);
        asker->Process(64);
    }).join();
    const auto* const rendering = reinterpret_cast<const VstTimeInfo*>(Ask(*asker, -3));
    ASSERT_NE(rendering, nullptr);
    EXPECT_NE(rendering, editing);
    EXPECT_EQ(rendering->tempo, 97.0);
}

TEST_F(CPluginHostTest, OnlyWhatTheUserMovesInThePluginsWindowIsReported) {
    const auto trouble = Load("Trouble", ESlotKind::kInstrument);
    const auto asker = Load("Asker", ESlotKind::kInstrument);
    ASSERT_TRUE(trouble && asker) << error;
    dynamic_cast<CVst2Plugin&>(*trouble).Dispatch(effSetProgram, 0, 0);
    asker->SetParameter(0, 0.2F);
    asker->Process(64);
    std::thread([&] { asker->IdleEditor(); }).join();
    EXPECT_TRUE(reports.empty());
    EXPECT_EQ(touches, 0);
    asker->IdleEditor();
    EXPECT_EQ(reports, (std::vector<std::pair<int, float>>{{0, 0.75F}}));
    EXPECT_EQ(touches, 1);
    trouble->IdleEditor();
    EXPECT_EQ(reports.size(), 9U);
}

TEST_F(CPluginHostTest, ForeignCodeLeavesTheFloatingPointModeAsItWas) {
    const CFloatingPointScope keepMode;
    const unsigned before = ReadFloatingPointMode();
    const auto trouble = Loaded("Trouble");
    EXPECT_EQ(ReadFloatingPointMode(), before) << "after loading";
    trouble->SetParameter(0, 0.3F);
    trouble->Process(64);
    EXPECT_EQ(ReadFloatingPointMode(), before) << "after processing";
}

TEST_F(CPluginHostTest, ABlockHandsOverNoMoreEventsThanItHasRoomFor) {
    const auto asker = Loaded("Asker");
    const std::vector<BlockEvent> events(kMaximumBlockEvents + 100, BlockEvent{0x90, 60, 100, 0});
    asker->SendEvents(events);
    asker->Process(64);
    EXPECT_EQ(Ask(*asker, -4), static_cast<std::intptr_t>(kMaximumBlockEvents));
}

TEST_F(CPluginHostTest, AnExclusiveChangeKeepsTheRenderThreadOut) {
    const auto asker = Loaded("Asker");
    const std::vector<BlockEvent> events(3, BlockEvent{0x90, 60, 100, 0});
    {
        const CPlugin::CExclusive exclusive(*asker);
        EXPECT_FALSE(asker->SendEvents(events));
        EXPECT_FALSE(asker->PlayParameter(0, 0.5F));
        asker->AutomateParameter(1, 0.5F);
        asker->Process(64);
        EXPECT_EQ(Ask(*asker, -3), 0) << "it was not called";
    }
    EXPECT_EQ(asker->Parameter(1), 0.0F);
    asker->AutomateParameter(1, 0.5F);
    EXPECT_EQ(asker->Parameter(1), 0.5F) << "automation comes when it can";
    EXPECT_TRUE(asker->SendEvents(events));
    asker->Process(64);
    EXPECT_EQ(Ask(*asker, -4), 3);
}

using CPluginHostDeathTest = CPluginHostTest;

TEST_F(CPluginHostDeathTest, WritingPastTheLastOutputBufferEndsAtTheGuardPage) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto probe = Loaded("NoteProbe");
    auto* const last = const_cast<float*>(probe->Output(1));
    last[CPlugin::kMaximumFrames - 1] = 1.0F;
    EXPECT_DEATH(*static_cast<volatile float*>(last + CPlugin::kMaximumFrames) = 1.0F, "");
}

}  // namespace
}  // namespace quib
