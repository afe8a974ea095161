// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/strip/StripKernels.h"

#include "MixerRig.h"
#include "Testing.h"

namespace quib {
namespace {

constexpr int kBlockSizes[] = {1, 2, 3, 7, 8, 9, 31, 33, 64, 100, 256, 511, 1024, 4096, kRigFrames};
constexpr int kMinute = 60 * 44100;
const float* const kNoExtra[kSendCount] = {};

class CStripKernels : public testing::TestWithParam<EStripInstructions> {
protected:
    void SetUp() override {
        kernels = FindStripKernels(GetParam());
        if (!kernels) GTEST_SKIP() << "not on this processor";
    }
    const StripKernels* kernels = nullptr;
    CLevelTables tables;
};

// The plain reference for every strip of a rig, on copies of the rig's inputs.
struct CReference {
    explicit CReference(int strips)
        : work(2, kRigFrames), bus(kBusPlanes, kRigFrames), all(static_cast<std::size_t>(strips)) {}

    void Render(const CMixerRig& rig, int frames) {
        bus.Clear();
        MixBuses buses = BusesOf(bus);
        for (int k = 0; k < kSendCount; ++k)
            if (!rig.buses.sendLeft[k]) buses.sendLeft[k] = buses.sendRight[k] = nullptr;
        for (std::size_t i = 0; i < all.size(); ++i) {
            const StripJob& job = rig.jobs[i];
            std::copy_n(job.inLeft, frames, work.Plane(0));
            std::copy_n(job.inRight, frames, work.Plane(1));
            all[i].Run(job.targets, work.Plane(0), work.Plane(1), job.extraLeft, job.extraRight, buses, frames);
        }
    }

    CAudioPlanes work, bus;
    std::vector<ScalarStrip> all;
};

float LargestDifference(const CAudioPlanes& a, const CAudioPlanes& b, int frames) {
    float largest = 0;
    for (int plane = 0; plane < a.Planes(); ++plane)
        for (int i = 0; i < frames; ++i) largest = std::max(largest, std::abs(a.Plane(plane)[i] - b.Plane(plane)[i]));
    return largest;
}

auto NumbersOf(const StripState& state) {
    return std::bit_cast<std::array<float, sizeof(StripState) / sizeof(float)>>(state);
}

// Now and then new settings, an equaliser change, a mono strip, an effect that comes or goes.
void Edit(CMixerRig& rig, CReference& reference, const CLevelTables& tables, std::minstd_rand& random) {
    const std::size_t i = random() % rig.jobs.size();
    StripJob& job = rig.jobs[i];
    StripInput settings = RandomSettings(random);
    settings.hasSendOutputs = i == 1;
    job.targets = MakeStripTargets(settings, tables, 0.7f, 0.5f);
    const EqBandUpdate update = RandomBand(random);
    ApplyEqUpdate(rig.states[i], update);
    reference.all[i].bands[update.band].filter = update;
    job.inputsStay = random() % 2 == 0;
    job.inRight = random() % 5 == 0 ? job.inLeft : rig.inputs.Plane(2 * static_cast<int>(i) + 1);
    for (int k = 0; k < kSendCount; ++k) {
        job.extraLeft[k] = i == 1 && k % 2 == 0 ? rig.inputs.Plane(0) : nullptr;
        job.extraRight[k] = i == 1 && k % 2 == 0 ? rig.inputs.Plane(1) : nullptr;
    }
    const std::size_t k = random() % kSendCount;
    const bool runs = random() % 3 != 0;
    rig.buses.sendLeft[k] = runs ? BusesOf(rig.busPlanes).sendLeft[k] : nullptr;
    rig.buses.sendRight[k] = runs ? BusesOf(rig.busPlanes).sendRight[k] : nullptr;
}

TEST_P(CStripKernels, equalThePlainDescriptionOverAMinuteOfChangingSettings) {
    for (const int strips : {1, 2, 3, 4, 7}) {
        CMixerRig rig(strips);
        CReference reference(strips);
        std::minstd_rand random(static_cast<unsigned>(strips));
        float worst = 0, worstMeter = 0;
        for (int done = 0, block = 0; done < kMinute / 5; ++block) {
            if (block % 3 == 0) Edit(rig, reference, tables, random);
            const int frames = kBlockSizes[random() % std::size(kBlockSizes)];
            for (int i = 0; i < rig.inputs.Planes(); ++i) FillNoise(rig.inputs.Plane(i), frames, random);
            if (block % 7 == 0) std::fill_n(rig.inputs.Plane(0), frames, 0.0f);
            rig.busPlanes.Clear();
            rig.Render(*kernels, frames);
            reference.Render(rig, frames);
            worst = std::max(worst, LargestDifference(rig.busPlanes, reference.bus, frames));
            for (std::size_t i = 0; i < rig.states.size(); ++i) {
                const float expected = reference.all[i].peak;
                worstMeter = std::max(worstMeter, std::abs(rig.states[i].peak - expected) / std::max(expected, 1.0f));
                for (int k = 0; k < kSendCount; ++k) ASSERT_EQ(rig.states[i].sendGain[k], reference.all[i].sendGain[k]);
            }
            done += frames;
        }
        EXPECT_LE(worst, 1e-6f) << strips;
        // The plain loop's meter rounds at every sample and drifts by about this much while it falls.
        EXPECT_LE(worstMeter, 3e-5f) << strips;
    }
}

TEST_P(CStripKernels, giveTheSameSamplesForEverySplitOfTheSameInput) {
    constexpr int kFrames = 4096;
    CMixerRig whole(3), split(3);
    std::minstd_rand random(5);
    for (int i = 0; i < 6; ++i) {
        FillNoise(whole.inputs.Plane(i), kFrames, random);
        std::copy_n(whole.inputs.Plane(i), kFrames, split.inputs.Plane(i));
    }
    for (std::size_t i = 0; i < 3; ++i) {
        StripInput settings = RandomSettings(random);
        settings.eqOn = i == 1 ? 0 : 1;
        whole.jobs[i].targets = split.jobs[i].targets = MakeStripTargets(settings, tables, 1, 1);
        for (const EqBandUpdate update : {RandomBand(random), RandomBand(random)}) {
            ApplyEqUpdate(whole.states[i], update);
            ApplyEqUpdate(split.states[i], update);
        }
    }
    whole.Render(*kernels, kFrames);
    for (int at = 0, frames = 0; at < kFrames; at += frames) {
        frames = std::min(kBlockSizes[random() % 12], kFrames - at);
        kernels->processStrips(split.jobs.data(), 3, frames);
        MixBuses buses = BusesOf(split.busPlanes);
        for (float** bus = &buses.masterLeft; bus != &buses.sendRight[kSendCount - 1] + 1; ++bus) *bus += at;
        const int half = frames / 2;
        kernels->mixStrips(split.jobs.data(), 3, buses, half, frames - half);
        kernels->mixStrips(split.jobs.data(), 3, buses, 0, half);
        for (StripJob& job : split.jobs) job.inLeft += frames, job.inRight += frames;
    }
    EXPECT_EQ(LargestDifference(whole.busPlanes, split.busPlanes, kFrames), 0);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(whole.states[i].peak, split.states[i].peak, 1e-6f);
}

TEST_P(CStripKernels, moveInSmallStepsAndWithoutAClickWhenEverythingIsSwitched) {
    constexpr int kFrames = 64;
    CMixerRig rig(1, kFrames);
    for (int band = 0; band < kEqBandCount; ++band)
        ApplyEqUpdate(rig.states[0], DesignEqBand(band, 0.4f, 0.3f, 0.5f, 44100));
    StripInput settings;
    settings.level = 64;
    float last = 0, largestStep = 0, steadyStep = 0;
    for (int block = 0; block < 400; ++block) {
        for (int i = 0; i < kFrames; ++i) {
            const double angle = 0.02 * (block * kFrames + i);
            rig.inputs.Plane(0)[i] = rig.inputs.Plane(1)[i] = static_cast<float>(std::sin(angle));
        }
        if (block % 50 == 25) settings.eqOn = 1 - settings.eqOn;
        if (block == 200) settings.mute = 1;
        if (block == 300) settings.mute = 0, settings.pan = 1, settings.level = 60;
        rig.jobs[0].targets = MakeStripTargets(settings, tables, 1, 1);
        rig.Render(*kernels, kFrames);
        for (int i = 0; i < kFrames; ++i) {
            largestStep = std::max(largestStep, std::abs(rig.buses.masterLeft[i] - last));
            if (block >= 60 && block < 75) steadyStep = std::max(steadyStep, std::abs(rig.buses.masterLeft[i] - last));
            last = rig.buses.masterLeft[i];
        }
    }
    // The filtered tone itself takes steps of a fiftieth of its amplitude; a click would be ten times as large.
    EXPECT_LT(largestStep, 2 * steadyStep);
    EXPECT_LT(std::abs(last), 0.001f) << "panned to the other side";
}

TEST_P(CStripKernels, recoverFromAPlugInThatReturnsNoNumbers) {
    CMixerRig rig(2, 256);
    for (StripJob& job : rig.jobs) job.targets.gainLeft = job.targets.gainRight = 1;
    rig.jobs[0].targets.eqAmount = 1;
    ApplyEqUpdate(rig.states[0], DesignEqBand(0, 0.5f, 0.5f, 0.5f, 44100));
    std::minstd_rand random(1);
    for (int i = 0; i < 4; ++i) FillNoise(rig.inputs.Plane(i), 256, random);
    rig.inputs.Plane(0)[17] = std::numeric_limits<float>::quiet_NaN();
    rig.inputs.Plane(3)[200] = std::numeric_limits<float>::infinity();
    for (int block = 0; block < 2000; ++block) rig.Render(*kernels, 256);
    rig.inputs.Clear();
    rig.Render(*kernels, 256);
    for (int i = 0; i < 256; ++i) ASSERT_TRUE(std::isfinite(rig.buses.masterLeft[i] + rig.buses.masterRight[i]));
    EXPECT_TRUE(std::isfinite(rig.states[0].peak + rig.states[1].peak));
}

TEST_P(CStripKernels, keepASendThatIsOffAtAMillionthAndAHeldOneAudible) {
    CMixerRig rig(1, 16384);
    StripInput settings;
    settings.level = 127;
    settings.sendOn[1] = settings.sendOn[2] = 1;
    settings.sendLevel[2] = 64;
    settings.hasSendOutputs = true;
    StripJob& job = rig.jobs[0];
    job.targets = MakeStripTargets(settings, tables, 1, 1);
    rig.Render(*kernels, 1);
    EXPECT_EQ(rig.states[0].sendGain[1], kHeldSendGain);
    for (int block = 0; block < 4; ++block) rig.Render(*kernels, 16384);
    EXPECT_NEAR(rig.states[0].sendGain[0], 1e-6f, 1e-9f);
    EXPECT_NEAR(rig.states[0].sendGain[2], 0.25f, 1e-4f);
    EXPECT_EQ(job.sendMask[0], 0u) << "a settled gain has no course";

    std::fill_n(rig.inputs.Plane(0), 16, 0.5f);
    CAudioPlanes extra(2, 16);
    std::fill_n(extra.Plane(0), 16, 0.25f);
    job.extraLeft[2] = extra.Plane(0);
    job.extraRight[2] = extra.Plane(1);
    rig.Render(*kernels, 16);
    EXPECT_NEAR(rig.buses.sendLeft[0][15], 0.5f * 2 * 1e-6f, 1e-9f);
    EXPECT_NEAR(rig.buses.sendLeft[2][15], 0.5f * 2 * 0.25f + 0.25f * 2, 1e-3f);
    EXPECT_EQ(rig.buses.sendRight[2][15], 0);
}

TEST_P(CStripKernels, filterByTheEqualisersCurve) {
    constexpr int kFrames = 16384;
    CMixerRig rig(1);
    rig.jobs[0].targets.gainLeft = rig.jobs[0].targets.gainRight = 1;
    rig.jobs[0].targets.eqAmount = 1;
    for (const double hertz : {50.0, 400.0, 1000.0, 12000.0}) {
        rig.states[0] = StripState{};
        double expected = 0;
        for (int band = 0; band < kEqBandCount; ++band) {
            const EqBandUpdate update = DesignEqBand(band, 0.3f + 0.3f * static_cast<float>(band), 0.4f, 0.6f, 44100);
            ApplyEqUpdate(rig.states[0], update);
            expected += EqResponseDecibels(update, hertz, 44100);
        }
        double in = 0, out = 0;
        for (int block = 0; block < 3; ++block) {
            for (int i = 0; i < kFrames; ++i)
                rig.inputs.Plane(0)[i] =
                    static_cast<float>(0.1 * std::sin(2 * M_PI * hertz / 44100 * (block * kFrames + i)));
            rig.Render(*kernels, kFrames);
        }
        for (int i = 0; i < kFrames; ++i) {
            in += std::pow(static_cast<double>(rig.inputs.Plane(0)[i]), 2);
            out += std::pow(static_cast<double>(rig.buses.masterLeft[i]), 2);
        }
        EXPECT_NEAR(10 * std::log10(out / in), expected, 0.05) << hertz;
    }
}

INSTANTIATE_TEST_SUITE_P(all, CStripKernels, testing::Values(EStripInstructions::kSse2, EStripInstructions::kAvx2),
                         [](const auto& test) { return test.param == EStripInstructions::kSse2 ? "sse2" : "avx2"; });

TEST(StripKernels, giveIdenticalBitsForEveryInstructionSet) {
    const StripKernels* narrow = FindStripKernels(EStripInstructions::kSse2);
    const StripKernels* wide = FindStripKernels(EStripInstructions::kAvx2);
    if (!wide) GTEST_SKIP() << "not on this processor";
    const CLevelTables tables;
    CMixerRig first(7), second(7);
    CReference unused(7);
    for (int block = 0; block < 600; ++block) {
        std::minstd_rand random(static_cast<unsigned>(block + 1));
        const int frames = kBlockSizes[random() % std::size(kBlockSizes)];
        for (CMixerRig* rig : {&first, &second}) {
            random.seed(static_cast<unsigned>(block + 1));
            if (block % 2 == 0) Edit(*rig, unused, tables, random);
            for (int i = 0; i < rig->inputs.Planes(); ++i) FillNoise(rig->inputs.Plane(i), frames, random);
            rig->busPlanes.Clear();
            rig->Render(rig == &first ? *narrow : *wide, frames);
        }
        for (int plane = 0; plane < kBusPlanes; ++plane)
            ASSERT_EQ(std::memcmp(first.busPlanes.Plane(plane), second.busPlanes.Plane(plane),
                                  sizeof(float) * static_cast<std::size_t>(frames)),
                      0);
        for (std::size_t i = 0; i < 7; ++i) ASSERT_EQ(NumbersOf(first.states[i]), NumbersOf(second.states[i])) << block;
    }
}

}  // namespace
}  // namespace quib
