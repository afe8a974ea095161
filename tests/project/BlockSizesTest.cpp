// SPDX-License-Identifier: GPL-3.0-or-later
// Every example sounds the same for every block size. QUIB_COMPARE_SECONDS in the environment compares that much
// of each for all sizes: whole songs take minutes.

#include "Testing.h"
#include "model/plugin/CPluginFinder.h"
#include "project/ProjectEngine.h"
#include "project/ProjectFile.h"

namespace quib {
namespace {

constexpr float kInaudible = 1e-6F;  // -120 dBFS
constexpr double kRate = 44100.0;
#ifdef QUIB_SANITIZED
constexpr double kSeconds = 1;
#else
constexpr double kSeconds = 3;
#endif

class CBlockSizesTest : public testing::TestWithParam<const char*> {
protected:
    // The left and the right samples of the song's first frames, one after the other.
    static std::vector<float> Render(int blockSize, std::int64_t frames) {
        CAudio audio;
        audio.Prepare({kRate, blockSize, 2, false});
        CPluginFinder finder(QUIB_BIN_DIR, {}, {});
        const PluginLoader load = [&](const PluginReference& wanted, ESlotKind kind, std::string& error) {
            const auto library = finder.Find(wanted, kind);
            return library ? CPlugin::Load(*library, kind, audio.environment, error) : nullptr;
        };
        ProjectState state;
        std::string error;
        EXPECT_TRUE(
            ReadProjectFile(std::string(QUIB_SOURCE_DIR "/examples/") + GetParam() + ".prg", load, state, error))
            << error;
        state.master.loopOn = 0.0F;
        PublishProject(state, audio);
        audio.Post({EngineCommand::EKind::kPlay});
        std::vector<float> samples;
        while (static_cast<std::int64_t>(samples.size()) < 2 * frames) {
            EXPECT_TRUE(audio.RenderBlock());
            for (int frame = 0; frame < blockSize; ++frame) {
                for (const int channel : {0, 1}) samples.push_back(audio.Master(channel)[frame]);
            }
        }
        samples.resize(static_cast<std::size_t>(2 * frames));
        return samples;
    }
};

TEST_P(CBlockSizesTest, SoundTheSame) {
    const char* const whole = std::getenv("QUIB_COMPARE_SECONDS");
    const auto frames = static_cast<std::int64_t>((whole != nullptr ? std::atof(whole) : kSeconds) * kRate);
    const std::vector<int> sizes =
        whole != nullptr ? std::vector<int>{16, 37, 64, 1000, 4096, 16384} : std::vector<int>{37, 16384};
    const std::vector<float> expected = Render(256, frames);
    for (const int size : sizes) {
        const std::vector<float> samples = Render(size, frames);
        const auto apart = [](float a, float b) { return std::abs(a - b) > kInaudible; };
        const auto same = std::mismatch(samples.begin(), samples.end(), expected.begin(), std::not_fn(apart));
        EXPECT_EQ(same.first, samples.end())
            << "block size " << size << " from frame " << (same.first - samples.begin()) / 2;
    }
}

INSTANTIATE_TEST_SUITE_P(Examples, CBlockSizesTest,
                         testing::Values("HouseMusic", "HouseYa", "Siren", "Tempo100", "BassDrums"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace quib
