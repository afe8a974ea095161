// SPDX-License-Identifier: GPL-3.0-or-later
// Plug-ins of the system's packages, which know nothing of this host: found, loaded, played, their state
// taken and given back, closed and loaded again. They are part of the test set-up, so a missing one is a
// failure. Not with sanitizers: several of them leak and race.
#if !defined(QUIB_SANITIZED)

#include "Testing.h"
#include "model/plugin/CPlugin.h"
#include "platform/FloatingPointMode.h"
#include "platform/Paths.h"

namespace quib {
namespace {

constexpr int kBlock = 512;
constexpr int kSecond = 44100 / kBlock;

constexpr const char* kSynthesisers[] = {"amsynth_vst.so", "Kars-vst.so", "Nekobi-vst.so"};

std::filesystem::path Find(const std::string& file) {
    for (const auto& folder : SystemPluginFolders()) {
        if (std::filesystem::exists(folder / file)) return folder / file;
    }
    return {};
}

struct Heard {
    double sum = 0;  // of squares
    bool finite = true;

    void Add(const float* samples) {
        for (int i = 0; i < kBlock; ++i) {
            sum += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
            finite = finite && std::isfinite(samples[i]);
        }
    }
    double Rms() const { return std::sqrt(sum / (2.0 * kSecond * kBlock)); }
};

// One second: three notes held for most of it, noise on every input.
Heard Play(CPlugin& plugin) {
    const CRenderThreadScope renderThread;
    const CFloatingPointScope keepMode;
    SetFlushToZero();
    std::minstd_rand random(1);
    std::uniform_real_distribution<float> noise(-0.25F, 0.25F);
    Heard heard;
    for (int block = 0; block < kSecond; ++block) {
        if (block == 0 || block == kSecond * 3 / 4) {
            const std::uint8_t status = block == 0 ? kNoteOn : kNoteOff;
            const BlockEvent chord[] = {{status, 60, 100, 0}, {status, 64, 100, 0}, {status, 67, 100, 0}};
            plugin.SendEvents(chord);
        }
        for (int channel = 0; channel < plugin.InputCount(); ++channel)
            std::generate_n(plugin.Input(channel), kBlock, [&] { return noise(random); });
        plugin.Process(kBlock);
        heard.Add(plugin.Left());
        heard.Add(plugin.Right());
    }
    return heard;
}

class CRealPluginsTest : public testing::TestWithParam<const char*> {
protected:
    CRealPluginsTest() { environment.blockSize = kBlock; }

    std::shared_ptr<CPlugin> Load() {
        const auto file = Find(GetParam());
        if (file.empty()) return nullptr;
        const bool isSynthesiser = std::ranges::count(kSynthesisers, GetParam()) > 0;
        return CPlugin::Load(file, isSynthesiser ? ESlotKind::kInstrument : ESlotKind::kEffect, environment, error);
    }
    void ExpectSound(CPlugin& plugin, const std::string& when) {
        const Heard heard = Play(plugin);
        EXPECT_TRUE(heard.finite) << when;
        EXPECT_FALSE(plugin.TakeFaultReport()) << when;
        EXPECT_GT(heard.Rms(), 0.001) << when;
    }
    static std::vector<float> Parameters(CPlugin& plugin) {
        std::vector<float> values;
        for (std::size_t i = 0; i < plugin.Parameters().size(); ++i)
            values.push_back(plugin.Parameter(static_cast<int>(i)));
        return values;
    }

    PluginEnvironment environment;
    std::string error;
};

TEST_P(CRealPluginsTest, IsFoundPlaysAloneAndBesideItselfAndComesBackAfterItWasClosed) {
    auto first = Load();
    ASSERT_TRUE(first) << "install it with scripts/setup --tests; " << error;
    ExpectSound(*first, "alone");
    auto second = Load();
    ASSERT_TRUE(second) << error;
    ExpectSound(*second, "the second of two");
    ExpectSound(*first, "the first of two");
    first.reset();
    ExpectSound(*second, "after the other was closed");
    second.reset();
    const auto again = Load();
    ASSERT_TRUE(again) << error;
    ExpectSound(*again, "loaded again");
}

TEST_P(CRealPluginsTest, ItsStateGoesToAnImageAndBack) {
    const auto source = Load();
    const auto target = Load();
    ASSERT_TRUE(source && target) << error;
    // Not the first: amsynth does not read that one back for a program without a name.
    for (int index = 1; index < std::min(5, static_cast<int>(source->Parameters().size())); ++index)
        source->SetParameter(index, index % 2 == 0 ? 0.25F : 0.75F);
    const auto wanted = Parameters(*source);
    const StateImage image = source->SaveBank();
    ASSERT_EQ(target->LoadBank(image), EBankResult::kDone);
    const auto found = Parameters(*target);
    ASSERT_EQ(found.size(), wanted.size());
    for (std::size_t index = 0; index < wanted.size(); ++index)
        EXPECT_NEAR(found[index], wanted[index], 1e-3F) << target->Parameters()[index].name;
    ExpectSound(*target, "with the other's state");
}

std::string NameOf(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
    return name;
}

INSTANTIATE_TEST_SUITE_P(DebianSynthesisers, CRealPluginsTest, testing::ValuesIn(kSynthesisers), NameOf);
INSTANTIATE_TEST_SUITE_P(DebianEffects, CRealPluginsTest,
                         testing::Values("DragonflyEarlyReflections-vst.so", "DragonflyHallReverb-vst.so",
                                         "DragonflyPlateReverb-vst.so", "DragonflyRoomReverb-vst.so", "3BandEQ-vst.so",
                                         "3BandSplitter-vst.so", "AmplitudeImposer-vst.so", "CycleShifter-vst.so",
                                         "MVerb-vst.so", "MaBitcrush-vst.so", "MaFreeverb-vst.so", "MaGigaverb-vst.so",
                                         "MaPitchshift-vst.so", "PingPongPan-vst.so", "SoulForce-vst.so",
                                         "glBars-vst.so"),
                         NameOf);

}  // namespace
}  // namespace quib

#endif
