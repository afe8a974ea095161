// SPDX-License-Identifier: GPL-3.0-or-later
#include "ToolFixture.h"

namespace quib {
namespace {

#ifdef QUIB_SANITIZED
constexpr const char* kLength = " --seconds 4 --json";
#else
constexpr const char* kLength = " --seconds 24 --json";
#endif

class CExamplesRenderTest : public CToolTest, public testing::WithParamInterface<const char*> {
protected:
    static double NumberOf(const std::string& json, const std::string& key) {
        const std::size_t place = json.find("\"" + key + "\": ");
        return place == std::string::npos ? -1.0 : std::stod(json.substr(place + key.size() + 4));
    }
};

TEST_P(CExamplesRenderTest, SoundsAndDoesNotClip) {
    const std::string project = std::string(QUIB_SOURCE_DIR "/examples/") + GetParam() + ".prg";
    const Outcome outcome = Run("quib-render", project + " " + Path("out.wav") + kLength);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    EXPECT_GT(NumberOf(outcome.output, "rms"), 0.02);
    EXPECT_GT(NumberOf(outcome.output, "peak"), 0.2);
    EXPECT_LT(NumberOf(outcome.output, "peak"), 0.891) << "above -1 dBFS";
}

INSTANTIATE_TEST_SUITE_P(All, CExamplesRenderTest,
                         testing::Values("HouseMusic", "HouseYa", "Siren", "Tempo100", "BassDrums"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace quib
