// SPDX-License-Identifier: GPL-3.0-or-later

#include "plugins/CLoadedEffect.h"

namespace quibtest {

namespace {

// The delay with its feedback off and its filters out of the way.
struct CPlainDelay : CLoadedEffect {
    explicit CPlainDelay(float rate = 48000.0f) : CLoadedEffect("QUIB delay", rate) {
        Set({{"Feedback", "0"}, {"Low Cut", "10"}, {"High Cut", "20000"}, {"Drive", "0"}, {"Sync", "Note"}});
        Set({{"Link", "On"}, {"Ping Pong", "0"}});
        SetTempo(120.0);
    }
    void SetMilliseconds(const char* left, const char* right) {
        Set({{"Sync", "ms"}, {"Link", "Off"}});
        Set("Left Time", left);
        Set("Right Time", right);
    }
};

// Frames of the samples that are not silent.
std::vector<long> Echoes(const std::vector<float>& samples, float floor = 1e-4f) {
    std::vector<long> frames;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (std::fabs(samples[i]) > floor) frames.push_back(static_cast<long>(i));
    }
    return frames;
}

// Gain in decibels of a tone's second repeat over its first one.
double RepeatGain(CLoadedEffect& delay, double hertz, float amplitude = 0.1f) {
    StereoSignal burst = SineTone(kEffectSecond / 4, hertz, kEffectRate, amplitude);
    burst.left.resize(2 * kEffectSecond);
    burst.right.resize(2 * kEffectSecond);
    const StereoSignal out = delay.Run(burst);
    const auto gain = [&](long begin) {
        return AmplitudeAt(out.left, hertz, kEffectRate, begin + 1000, begin + 11000);
    };
    return 20.0 * std::log10(gain(kEffectSecond) / gain(kEffectSecond / 2));
}

TEST(Delay, ShowsForALinkedSideWhatIsHeard) {
    CPlainDelay delay;
    delay.Set({{"Link", "Off"}, {"Left Note", "1/8 D"}, {"Right Note", "1/2"}, {"Left Time", "92.0"}});
    const auto shown = [&](const char* name) { return delay.Text(vst2::effGetParamDisplay, delay.Find(name)); };
    EXPECT_EQ(shown("Right Note"), "1/2");
    delay.Set("Link", "On");
    EXPECT_EQ(shown("Right Note"), "1/8 D");
    EXPECT_EQ(shown("Right Time"), "92.0");
    delay.Set("Link", "Off");
    EXPECT_EQ(shown("Right Note"), "1/2") << "the side's own value was lost";
}

TEST(Delay, RepeatsOnTheBeatExactToTheSample) {
    const std::vector<std::pair<const char*, double>> notes = {
        {"1/32 T", 1.0 / 12}, {"1/16", 0.25}, {"1/8 D", 0.75}, {"1/4", 1.0}, {"1/2 T", 4.0 / 3}, {"1/1", 4.0}};
    for (const double tempo : {61.0, 97.3, 120.0, 174.0}) {
        for (const auto& [note, quarters] : notes) {
            CPlainDelay delay;
            delay.SetTempo(tempo);
            delay.Set("Left Note", note);
            delay.Resume(48000.0f);
            const StereoSignal out = delay.Run(Impulse(5 * kEffectSecond, 0.5f, -0.25f));
            const std::vector<long> expected = {std::lround(quarters * 60.0 / tempo * kEffectRate)};
            ASSERT_EQ(Echoes(out.left), expected) << note << " at " << tempo;
            ASSERT_EQ(Echoes(out.right), expected) << note << " at " << tempo;
            EXPECT_FLOAT_EQ(out.left[static_cast<std::size_t>(expected[0])], 0.5f);
            EXPECT_FLOAT_EQ(out.right[static_cast<std::size_t>(expected[0])], -0.25f);
        }
    }
}

TEST(Delay, TakesMillisecondsOfEachSideAtAnyRate) {
    for (const float rate : {22050.0f, 44100.0f, 96000.0f, 192000.0f}) {
        CPlainDelay delay(rate);
        delay.SetMilliseconds("1", "2000");
        const auto right = static_cast<long>(2.0f * rate);
        EXPECT_EQ(Echoes(delay.Run(Impulse(right + 100)).left), std::vector<long>{std::lround(0.001f * rate)}) << rate;
        delay.Resume(rate);
        EXPECT_EQ(Echoes(delay.Run(Impulse(right + 100)).right), std::vector<long>{right}) << rate;
    }
}

TEST(Delay, FallsBackTo120BeatsAndHalvesNotesThatAreTooLong) {
    CPlainDelay delay;
    delay.Set("Left Note", "1/4");
    delay.SetTempo(0.0);
    EXPECT_EQ(Echoes(delay.Run(Impulse(kEffectSecond)).left), std::vector<long>{kEffectSecond / 2});
    delay.Set("Left Note", "1/1 D");
    for (const auto& [tempo, seconds] : {std::pair{40.0, 9L}, {30.0, 6L}}) {
        delay.SetTempo(tempo);
        delay.Resume(48000.0f);
        EXPECT_EQ(Echoes(delay.Run(Impulse(10 * kEffectSecond)).left), std::vector<long>{seconds * kEffectSecond})
            << tempo;
    }
}

TEST(Delay, PingPongGoesFromSideToSide) {
    CPlainDelay delay;
    delay.SetMilliseconds("100", "150");
    delay.Set({{"Ping Pong", "100"}, {"Feedback", "50"}});
    const StereoSignal out = delay.Run(Impulse(kEffectSecond, 0.0f, 1.0f));
    const auto near = [&](const std::vector<float>& side, long frame) { return PeakOf(side, frame - 50, frame + 200); };
    EXPECT_FLOAT_EQ(out.left[4800], 0.5f);
    EXPECT_GT(near(out.right, 12000), 0.15f);
    EXPECT_GT(near(out.left, 16800), 0.08f);
    EXPECT_GT(near(out.right, 24000), 0.03f);
    for (const long frame : {12000L, 24000L}) EXPECT_LT(near(out.left, frame), 1e-3f) << frame;
    for (const long frame : {4800L, 16800L}) EXPECT_LT(near(out.right, frame), 1e-3f) << frame;
}

TEST(Delay, WeakensEveryRepeatByTheFeedback) {
    for (const char* feedback : {"20", "50", "90"}) {
        CPlainDelay delay;
        delay.Set("Left Note", "1/4");
        delay.Set("Feedback", feedback);
        EXPECT_NEAR(RepeatGain(delay, 1000.0), 20.0 * std::log10(std::stod(feedback) / 100.0), 0.1) << feedback;
    }
}

TEST(Delay, CutsTheRepeatsBelowAndAboveByTwoPoles) {
    CPlainDelay delay;
    delay.Set({{"Left Note", "1/4"}, {"Feedback", "50"}, {"Low Cut", "200"}, {"High Cut", "4000"}});
    delay.Resume(48000.0f);
    const double middle = 20.0 * std::log10(0.5);
    EXPECT_NEAR(RepeatGain(delay, 900.0), middle, 0.3);
    EXPECT_NEAR(RepeatGain(delay, 200.0), middle - 3.0, 0.3);
    EXPECT_NEAR(RepeatGain(delay, 50.0), middle - 24.1, 0.7);
    EXPECT_NEAR(RepeatGain(delay, 4000.0), middle - 3.0, 0.3);
    EXPECT_LT(RepeatGain(delay, 12000.0), middle - 19.0);
}

TEST(Delay, DriveBendsLoudRepeatsAndLeavesSoftOnes) {
    CPlainDelay delay;
    delay.Set({{"Left Note", "1/4"}, {"Feedback", "90"}, {"Drive", "100"}});
    delay.Resume(48000.0f);
    const double straight = 20.0 * std::log10(0.9);
    EXPECT_NEAR(RepeatGain(delay, 500.0, 0.003f), straight, 0.1);
    delay.Resume(48000.0f);
    EXPECT_LT(RepeatGain(delay, 500.0, 0.7f), straight - 6.0);
}

// A tone sounds while the time moves; after that, an impulse tells where it has settled.
TEST(Delay, SettlesExactlyAfterTheTimeHasMoved) {
    for (const char* way : {"Fade", "Glide"}) {
        CPlainDelay delay;
        delay.Set("Time Change", way);
        delay.SetMilliseconds("400", "250");
        delay.Resume(48000.0f);
        const StereoSignal tone = SineTone(3 * kEffectSecond, 60.0, kEffectRate, 0.25f);
        const StereoSignal moved = delay.Run(tone, {480}, [&](long frame) {
            if (frame == kEffectSecond) delay.SetMilliseconds("123", "377");
        });
        EXPECT_LT(LargestStep(moved.left, kEffectSecond - 10, 2 * kEffectSecond), 0.01f) << way;
        EXPECT_LT(LargestStep(moved.right, kEffectSecond - 10, 2 * kEffectSecond), 0.01f) << way;
        delay.Run(StereoSignal(kEffectSecond / 2));
        const StereoSignal settled = delay.Run(Impulse(kEffectSecond));
        EXPECT_EQ(Echoes(settled.left), std::vector<long>{5904}) << way;
        EXPECT_EQ(Echoes(settled.right), std::vector<long>{18096}) << way;
    }
}

TEST(Delay, FollowsTheTempoWithoutAClick) {
    CPlainDelay delay;
    delay.Set("Left Note", "1/8");
    const StereoSignal moved = delay.Run(SineTone(2 * kEffectSecond, 67.0, kEffectRate, 0.25f), {480}, [&](long frame) {
        if (frame == kEffectSecond) delay.SetTempo(150.0);
    });
    EXPECT_LT(LargestStep(moved.left, kEffectSecond - 10, 2 * kEffectSecond), 0.01f);
    delay.Run(StereoSignal(kEffectSecond / 2));
    EXPECT_EQ(Echoes(delay.Run(Impulse(kEffectSecond)).left), std::vector<long>{9600});
}

TEST(Delay, WidthGoesFromMonoToTwiceTheSide) {
    CPlainDelay delay;
    delay.Set("Left Note", "1/8");
    for (const auto& [width, right] : {std::pair{"0", 0.5f}, std::pair{"100", 0.0f}, std::pair{"200", -0.5f}}) {
        delay.Set("Width", width);
        delay.Resume(48000.0f);
        EXPECT_NEAR(delay.Run(Impulse(kEffectSecond / 2, 1.0f, 0.0f)).right[12000], right, 1e-6f) << width;
    }
}

}  // namespace

}  // namespace quibtest
