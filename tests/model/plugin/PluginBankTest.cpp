// SPDX-License-Identifier: GPL-3.0-or-later

#include "CTemporaryFolder.h"
#include "Testing.h"
#include "model/plugin/BankUnheard.h"
#include "model/plugin/CPlugin.h"
#include "model/plugin/CPluginFinder.h"
#include "model/plugin/vst2/CVst2Plugin.h"

namespace quib {
namespace {

using namespace vst2;

class CPluginBankTest : public testing::Test {
protected:
    std::shared_ptr<CPlugin> Load(const std::string& name, ESlotKind kind) {
        std::string error;
        auto plugin = CPlugin::Load(QUIB_BIN_DIR "/testplugins/" + name + ".so", kind, environment, error);
        EXPECT_TRUE(plugin) << error;
        return plugin;
    }
    std::shared_ptr<CPlugin> Synth() { return Load("ChunkSynth", ESlotKind::kInstrument); }
    std::shared_ptr<CPlugin> Effect() { return Load("ParameterBank", ESlotKind::kEffect); }

    PluginEnvironment environment;
};

CVst2Plugin& Vst2(CPlugin& plugin) { return dynamic_cast<CVst2Plugin&>(plugin); }

// First sample of a block with a note held (the synth) or an input of 1 (the effect).
float Sound(CPlugin& plugin) {
    const std::array<BlockEvent, 1> noteOn = {{{0x90, 60, 100, 0}}};
    plugin.SendEvents(noteOn);
    plugin.Input(0)[0] = plugin.Input(1)[0] = 1.0F;
    plugin.Process(16);
    return plugin.Output(0)[0];
}

// An image put together by hand after the published layout.
class CHandMadeImage {
public:
    CHandMadeImage& Number(std::uint32_t value) {
        for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<std::byte>(value >> shift));
        return *this;
    }
    CHandMadeImage& Code(const char* code) {
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<std::byte>(code[i]));
        return *this;
    }
    CHandMadeImage& Real(float value) { return Number(std::bit_cast<std::uint32_t>(value)); }
    CHandMadeImage& Name(std::string text) {
        text.resize(28);
        for (const char character : text) bytes.push_back(static_cast<std::byte>(character));
        return *this;
    }
    CHandMadeImage& Zeros(std::size_t count) {
        bytes.resize(bytes.size() + count);
        return *this;
    }
    StateImage bytes;
};

StateImage HandMadeParameterBank() {
    CHandMadeImage image;
    image.Code("CcnK").Number(0).Code("FxBk").Number(1).Code("tsPB").Number(7).Number(4).Zeros(128);
    for (int program = 0; program < 4; ++program) {
        image.Code("CcnK").Number(0).Code("FxCk").Number(1).Code("tsPB").Number(7).Number(6);
        image.Name("Made " + std::to_string(program));
        for (int i = 0; i < 6; ++i) image.Real(static_cast<float>(program) * 0.1F + static_cast<float>(i) * 0.01F);
    }
    return image.bytes;
}

TEST_F(CPluginBankTest, ABankOfEitherKindSoundsTheSameInAnotherInstance) {
    for (const bool chunks : {true, false}) {
        auto source = chunks ? Synth() : Effect();
        for (int program = 0; program < 3; ++program) {
            EXPECT_TRUE(source->SelectProgram(program));
            source->SetParameter(1, 0.25F * static_cast<float>(program + 1));
        }
        const StateImage bank = source->SaveBank();
        EXPECT_EQ(bank, source->SaveBank());
        auto target = chunks ? Synth() : Effect();
        ASSERT_EQ(target->LoadBank(bank), EBankResult::kDone);
        EXPECT_EQ(target->SaveBank(), bank);
        EXPECT_TRUE(target->SelectProgram(2));
        EXPECT_EQ(Sound(*target), Sound(*source));
        EXPECT_GT(Sound(*target), 0.7F);
        const StateImage program = source->SaveProgram();
        auto third = chunks ? Synth() : Effect();
        ASSERT_EQ(third->LoadProgram(program), EBankResult::kDone);
        EXPECT_EQ(Sound(*third), Sound(*source));
    }
}

TEST_F(CPluginBankTest, SavingABankKeepsTheEditsOfTheCurrentProgram) {
    auto effect = Effect();  // forgets them when another program is selected
    ASSERT_TRUE(effect->SelectProgram(1));
    effect->SetParameter(4, 0.875F);
    const StateImage bank = effect->SaveBank();
    EXPECT_EQ(effect->Parameter(4), 0.875F);
    EXPECT_EQ(effect->CurrentProgram(), 1);
    auto other = Effect();
    ASSERT_EQ(other->LoadBank(bank), EBankResult::kDone);
    ASSERT_TRUE(other->SelectProgram(1));
    EXPECT_EQ(other->Parameter(4), 0.875F);
}

TEST_F(CPluginBankTest, HandMadeImagesLoadInEitherByteOrder) {
    auto effect = Effect();
    ASSERT_EQ(effect->LoadBank(HandMadeParameterBank()), EBankResult::kDone);
    EXPECT_EQ(effect->CurrentProgram(), 0);
    ASSERT_TRUE(effect->SelectProgram(3));
    EXPECT_FLOAT_EQ(effect->Parameter(5), 0.35F);
    EXPECT_EQ(Vst2(*effect).Text(effGetProgramName), "Made 3");

    StateImage turned = HandMadeParameterBank();
    std::swap(turned[0], turned[3]);  // the magic alone, as some programs write it
    std::swap(turned[1], turned[2]);
    EXPECT_EQ(effect->LoadBank(turned), EBankResult::kDone);

    auto synth = Synth();
    const StateImage own = synth->SaveBank();
    CHandMadeImage chunk;
    chunk.Code("CcnK").Number(0).Code("FBCh").Number(1).Code("tsCh").Number(1).Number(16).Zeros(128);
    chunk.Number(static_cast<std::uint32_t>(own.size() - 160));
    chunk.bytes.insert(chunk.bytes.end(), own.begin() + 160, own.end());
    EXPECT_EQ(synth->LoadBank(chunk.bytes), EBankResult::kDone);
    EXPECT_EQ(synth->SaveBank(), own);
}

TEST_F(CPluginBankTest, WhatDoesNotFitNeverReachesThePlugin) {
    auto synth = Synth();
    auto effect = Effect();
    const StateImage bank = synth->SaveBank();
    for (std::size_t length = 0; length < bank.size(); ++length) {
        EXPECT_NE(synth->LoadBank(std::span(bank).first(length)), EBankResult::kDone) << length;
    }
    StateImage changed = bank;
    changed[156] = std::byte{0x7f};  // the chunk's size
    EXPECT_EQ(synth->LoadBank(changed), EBankResult::kDamaged);
    changed[156] = std::byte{0xff};
    EXPECT_EQ(synth->LoadBank(changed), EBankResult::kDamaged);
    EXPECT_EQ(synth->LoadBank(synth->SaveProgram()), EBankResult::kUnsuited);
    EXPECT_EQ(synth->LoadProgram(bank), EBankResult::kUnsuited);
    for (const std::size_t place : {0U, 15U, 19U}) {  // magic, version, identifier
        changed = bank;
        changed[place] ^= std::byte{1};
        const EBankResult result = synth->LoadBank(changed);
        EXPECT_STREQ(Describe(result), "No Compatible File !");
    }
    EXPECT_EQ(effect->LoadBank(bank), EBankResult::kIncompatible);
    EXPECT_EQ(Vst2(*synth).Dispatch(effVendorSpecific), 0);  // chunks that it was given
}

TEST_F(CPluginBankTest, ABankSelectsNoProgramThatThePluginDoesNotHave) {
    StateImage bank = HandMadeParameterBank();
    bank[26] = std::byte{0x10};  // 4100 programs
    auto effect = Effect();
    ASSERT_EQ(effect->LoadBank(bank), EBankResult::kDone);
    EXPECT_EQ(effect->ProgramCount(), 4);
    EXPECT_FALSE(effect->SelectProgram(4));
    bank[26] = std::byte{0};
    bank[27] = std::byte{2};
    ASSERT_EQ(effect->LoadBank(bank), EBankResult::kDone);
    EXPECT_EQ(effect->ProgramCount(), 2);
}

class CPluginFinderTest : public testing::Test {
protected:
    void Touch(const std::string& name) {
        std::filesystem::create_directories((folder / name).parent_path());
        std::fclose(std::fopen((folder / name).c_str(), "w"));
    }
    std::string Find(CPluginFinder& finder, const std::string& name, ESlotKind kind) {
        const auto found = finder.Find(name, kind);
        return found ? found->lexically_relative(folder).string() : "none";
    }
    const CTemporaryFolder temporary;
    const std::filesystem::path& folder = temporary.Path();
};

TEST_F(CPluginFinderTest, NamesOfAnySystemFindTheLibraryThatComesFirst) {
    for (const char* name : {"PluginInstruments/Synth.so", "PluginEffects/Synth.so", "user/Synth.so", "user/Only.so",
                             "system/deep/er/Far-vst.so", "system/sYnTh.so", "system/Readme.txt"}) {
        Touch(name);
    }
    std::filesystem::create_symlink(folder / "user" / "Only.so", folder / "system" / "Linked.so");
    std::filesystem::create_directory_symlink(folder / "system", folder / "system" / "deep" / "loop");
    CPluginFinder finder(folder, {folder / "user"}, {folder / "system"});
    struct Case {
        const char* name;
        ESlotKind kind;
        const char* found;
    };
    for (const Case& example :
         {Case{"Synth.dll", ESlotKind::kInstrument, "PluginInstruments/Synth.so"},
          Case{"Synth", ESlotKind::kEffect, "PluginEffects/Synth.so"},
          Case{"C:\\Vst\\only.DLL", ESlotKind::kEffect, "user/Only.so"},
          Case{"sYnTh.so", ESlotKind::kInstrument, "system/sYnTh.so"},
          Case{"SYNTH.so", ESlotKind::kInstrument, "PluginInstruments/Synth.so"},
          Case{"Far-vst.so", ESlotKind::kEffect, "system/deep/er/Far-vst.so"},
          Case{"Linked.dll", ESlotKind::kEffect, "user/Only.so"}, Case{"Readme", ESlotKind::kEffect, "none"},
          Case{"", ESlotKind::kEffect, "none"}, Case{"../user/", ESlotKind::kEffect, "none"}}) {
        EXPECT_EQ(Find(finder, example.name, example.kind), example.found) << example.name;
    }
    // A library that is known to hold the wanted plug-in goes before one of the same name that does not.
    const std::string other = (folder / "user" / "Only.so").string();
    const auto identified = [&](const char* name, const char* identity) {
        const auto found = finder.Find(PluginReference{name, identity}, ESlotKind::kEffect);
        return found ? found->lexically_relative(folder).string() : "none";
    };
    EXPECT_EQ(identified("Renamed.dll", "vst2:1"), "none");
    finder.SetIdentities(
        {{folder / "PluginEffects" / "Synth.so", "vst2:2"}, {other, "vst2:1"}, {folder / "gone.so", "vst2:3"}});
    for (const auto& [name, identity, found] :
         {std::tuple("Renamed.dll", "vst2:1", "user/Only.so"), std::tuple("Synth.so", "vst2:1", "user/Only.so"),
          std::tuple("Synth.so", "vst2:2", "PluginEffects/Synth.so"),
          std::tuple("Synth.so", "vst2:9", "PluginEffects/Synth.so"), std::tuple("Renamed", "vst2:3", "none"),
          std::tuple("Far-vst.so", "vst2:1", "system/deep/er/Far-vst.so"), std::tuple("Renamed", "", "none")}) {
        EXPECT_EQ(identified(name, identity), found) << name << ' ' << identity;
    }
    Touch("user/Later.so");
    EXPECT_EQ(Find(finder, "Later.dll", ESlotKind::kEffect), "none");
    finder.Refresh();
    EXPECT_EQ(Find(finder, "Later.dll", ESlotKind::kEffect), "user/Later.so");
}

TEST_F(CPluginBankTest, ABankIsSavedUnheardWithTheEditsOfTheProgramThatPlays) {
    for (const auto& plugin : {Effect(), Synth()}) {
        ASSERT_TRUE(plugin);
        StateImage last = SaveBankUnheard(*plugin, {});
        EXPECT_EQ(last, plugin->SaveBank());
        if (plugin->ProgramCount() > 1) plugin->SelectProgram(1);
        plugin->SetParameter(0, 0.375F);
        EXPECT_NE(last, plugin->SaveBank());
        EXPECT_EQ(SaveBankUnheard(*plugin, last), plugin->SaveBank());
    }
}

}  // namespace
}  // namespace quib
