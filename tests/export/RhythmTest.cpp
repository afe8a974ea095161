// SPDX-License-Identifier: GPL-3.0-or-later
#include <sndfile.h>

#include "CTemporaryFolder.h"
#include "Testing.h"
#include "bench/RhythmMaterial.h"
#include "export/loops/LoopCut.h"
#include "export/rhythm/RhythmHits.h"
#include "export/rhythm/RhythmTempo.h"

namespace quib {
namespace {

namespace fs = std::filesystem;
constexpr int kRate = 44100;

class LoopFiles : public testing::Test {
protected:
    const CTemporaryFolder temporary;
    const fs::path& folder = temporary.Path();
};

TEST(Rhythm, FindsTempoAndDownbeatOfGeneratedPieces) {
    for (const material::Piece& piece :
         {material::Piece{124, 0}, {90, 1, 0.25, 0.001, 7}, {172, 3, 0, 0.02, 3}, {104, 2, 0, 0.001, 4, 0.02}}) {
        const material::Rendered made = material::Render(piece, 20);
        const RhythmTempo found = FindTempo(made.mono, kRate);
        EXPECT_NEAR(found.tempo, made.tempo, 0.02);
        const double bar = 240 / made.tempo;
        const double off = found.downbeat - made.downbeat;
        EXPECT_NEAR(off - std::round(off / bar) * bar, 0, 0.01) << piece.tempo;
        EXPECT_GT(found.sureness, 0.3);
    }
    EXPECT_EQ(FindTempo(std::vector<float>(kRate * 10), kRate).tempo, 0) << "silence has none";
    EXPECT_EQ(FindTempo(std::vector<float>(kRate), kRate).tempo, 0) << "too short";
    int asked = 0;
    const material::Rendered made = material::Render({120, 0}, 30);
    EXPECT_EQ(FindTempo(made.mono, kRate, [&asked] { return ++asked < 2; }).tempo, 0) << "stopped";
}

TEST(Rhythm, HitsAreWhereDrumsStrikeAndSettingsOfZeroAreSensible) {
    const material::Rendered made = material::Render({120, 1}, 16);
    CRhythmEnvelope envelope(RhythmSettingsOf({}), kRate);
    for (std::size_t at = 0; at < made.mono.size(); at += 441) {
        envelope.Add(std::span(made.mono).subspan(at, std::min<std::size_t>(441, made.mono.size() - at)));
    }
    EXPECT_GE(material::HitScore(envelope.Hits(), made.strokes), 0.95);
    const material::Rendered noisy = material::Render({120, 0, 0, 0.02}, 16);
    CRhythmEnvelope heard(RhythmSettingsOf({}), kRate);
    heard.Add(noisy.mono);
    EXPECT_GE(material::HitScore(heard.Hits(), noisy.strokes), 0.95) << "weak cymbals in noise";
    CRhythmEnvelope whole(RhythmSettingsOf({}), kRate);
    whole.Add(made.mono);
    EXPECT_EQ(whole.Hits().size(), envelope.Hits().size()) << "block by block as in one";

    DetectorSettings low;
    low.eqFrequency = 0.2F;
    low.threshold = 0.7F;
    EXPECT_NEAR(RhythmSettingsOf(low).threshold, -18, 1e-4);
    CRhythmEnvelope kicks(RhythmSettingsOf(low), kRate);
    kicks.Add(made.mono);
    EXPECT_LT(kicks.Hits().size(), envelope.Hits().size());
}

TEST_F(LoopFiles, ALoopHasItsExactLengthASmoothSeamAndIsReadBackWithItsMarks) {
    SoundClip clip{kRate, 2, {}, {}};
    for (int i = 0; i < 20 * kRate; ++i) {
        clip.left.push_back(0.5F * static_cast<float>(std::sin(0.0301 * i)));
        clip.right.push_back(0.4F * static_cast<float>(std::sin(0.0417 * i + 1)));
    }
    for (const double tempo : {99.37, 124.02, 171.5}) {
        LoopCut cut{kRate + 17, 8, tempo, 0.012};
        const SoundClip loop = CutLoop(clip, cut);
        EXPECT_EQ(loop.Frames(), std::llround(8 * 60.0 * kRate / tempo));
        const SeamSteps steps = StepsAtSeam(loop);
        EXPECT_TRUE(steps.IsSmooth()) << steps.seam << " above " << steps.usual;
        cut.fade = 0;
        EXPECT_EQ(CutLoop(clip, cut).left[5], clip.left[static_cast<std::size_t>(cut.start + 5)]);
    }
    EXPECT_EQ(CutLoop(clip, {0, 1, 120, 0.01}).left[0], clip.left[0]) << "nothing before it to fade into";
    EXPECT_EQ(NearestZero(clip, 1000, 0), 1000);

    const material::Rendered drums = material::Render({120, 0}, 6);
    const SoundClip sound{kRate, 1, drums.mono, drums.mono};
    const LoopCut bar{kRate / 2, 4, 120, 0.01};
    const SoundClip loop = CutLoop(sound, bar);
    std::string error;
    for (const char* const name : {"beat 120bpm.wav", "beat 120bpm.mp3"}) {
        const fs::path path = folder / name;
        ASSERT_TRUE(WriteLoopFile(path, loop, bar, true, error)) << error;
        SoundClip again;
        ASSERT_TRUE(ReadClip(path, again, error)) << error;
        EXPECT_EQ(again.Frames(), loop.Frames()) << name;
    }
    SF_INFO info{};
    SNDFILE* const file = sf_open((folder / "beat 120bpm.wav").c_str(), SFM_READ, &info);
    SF_LOOP_INFO told{};
    EXPECT_EQ(sf_command(file, SFC_GET_LOOP_INFO, &told, sizeof told), SF_TRUE);
    EXPECT_EQ(told.num_beats, 4);
    EXPECT_FLOAT_EQ(told.bpm, 120);
    SF_CUES cues{};
    EXPECT_EQ(sf_command(file, SFC_GET_CUE, &cues, sizeof cues), SF_TRUE);
    EXPECT_GE(cues.cue_count, 4U);
    sf_close(file);

    EXPECT_EQ(LoopName("{name} {bpm}bpm", "Ki/ln", 124.02), "Ki_ln 124.02bpm");
    EXPECT_FALSE(WriteLoopFile("/proc/none/x.wav", loop, bar, true, error));
    SoundClip none;
    std::ofstream(folder / "bad.wav") << "RIFF";
    EXPECT_FALSE(ReadClip(folder / "bad.wav", none, error));
    EXPECT_NE(error.find("bad.wav"), std::string::npos);
    EXPECT_FALSE(ReadClip(folder / "beat 120bpm.wav", none, error, [](double) { return false; }));
    EXPECT_TRUE(error.empty()) << "stopped by the user";
}

}  // namespace
}  // namespace quib
