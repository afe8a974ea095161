// SPDX-License-Identifier: GPL-3.0-or-later
// Cost of a channel strip with its share of the mix: plain scalar loop beside the kernels, 32
// instruments, blocks of 256. "ratio" compares with a scalar run of the same settings just before.
#include <benchmark/benchmark.h>

#include <cstring>

#include "../tests/engine/strip/MixerRig.h"
#include "platform/Clock.h"
#include "platform/FloatingPointMode.h"

namespace {

using namespace quib;

constexpr int kStrips = 32;
constexpr int kFrames = 256;
constexpr int kSettleBlocks = 400;

enum Scene { moving, settled, off };

struct CMixerBench {
    explicit CMixerBench(Scene chosen) : scene(chosen), rig(kStrips, kFrames), work(2, kFrames), scalar(kStrips) {
        SetFlushToZero();
        std::minstd_rand random(1);
        for (int i = 0; i < rig.inputs.Planes(); ++i) FillNoise(rig.inputs.Plane(i), kFrames, random);
        for (std::size_t i = 0; i < kStrips; ++i)
            for (int band = 0; band < kEqBandCount; ++band) {
                scalar[i].bands[band].filter = DesignEqBand(band, 0.5f, 0.5f, 0.2f, 44100);
                ApplyEqUpdate(rig.states[i], scalar[i].bands[band].filter);
            }
        if (scene != off) return;
        for (int k = 0; k < kSendCount; ++k) rig.buses.sendLeft[k] = rig.buses.sendRight[k] = nullptr;
    }

    StripTargets MakeTargets(float turn) const {
        StripInput settings;
        settings.level = 80 + turn;
        settings.pan = turn / 40;
        settings.eqOn = scene == off ? 0 : 1;
        for (int k = 0; k < kSendCount; ++k) {
            settings.sendOn[k] = scene == off ? 0 : 1;
            settings.sendLevel[k] = 70 + turn;
        }
        return MakeStripTargets(settings, tables, 1, 1);
    }

    // Every other block has other targets, where the scene is one that moves.
    void SetTargets(int block) {
        for (StripJob& job : rig.jobs) job.targets = scene == moving ? targets[block % 2] : targets[0];
    }

    void RunScalar() {
        static const float* const kNoExtra[kSendCount] = {};
        rig.ClearBuses(kFrames);
        for (std::size_t i = 0; i < kStrips; ++i) {
            std::memcpy(work.Plane(0), rig.jobs[i].inLeft, kFrames * sizeof(float));
            std::memcpy(work.Plane(1), rig.jobs[i].inRight, kFrames * sizeof(float));
            scalar[i].Run(rig.jobs[i].targets, work.Plane(0), work.Plane(1), kNoExtra, kNoExtra, rig.buses, kFrames);
        }
    }

    // Processor nanoseconds a frame and instrument.
    template <typename Block>
    double Measure(int blocks, Block&& run) {
        const std::uint64_t start = ThreadCpuNanoseconds();
        for (int block = 0; block < blocks; ++block) {
            SetTargets(block);
            run();
        }
        return static_cast<double>(ThreadCpuNanoseconds() - start) / blocks / kFrames / kStrips;
    }

    Scene scene;
    CLevelTables tables;
    StripTargets targets[2] = {MakeTargets(0), MakeTargets(20)};
    CMixerRig rig;
    CAudioPlanes work;
    std::vector<ScalarStrip> scalar;
};

void Scalar(benchmark::State& state) {
    CMixerBench bench(static_cast<Scene>(state.range(0)));
    bench.Measure(kSettleBlocks, [&] { bench.RunScalar(); });
    double sum = 0;
    while (state.KeepRunning()) sum += bench.Measure(1000, [&] { bench.RunScalar(); });
    state.counters["ns_per_frame_per_instrument"] = sum / static_cast<double>(state.iterations());
}

void Kernels(benchmark::State& state, EStripInstructions instructions) {
    const StripKernels* kernels = FindStripKernels(instructions);
    if (!kernels) return state.SkipWithError("not on this processor");
    CMixerBench bench(static_cast<Scene>(state.range(0)));
    bench.Measure(kSettleBlocks, [&] { bench.RunScalar(); });
    const double scalar = bench.Measure(1000, [&] { bench.RunScalar(); });
    bench.Measure(kSettleBlocks, [&] { bench.rig.Render(*kernels, kFrames); });
    double sum = 0;
    while (state.KeepRunning()) sum += bench.Measure(1000, [&] { bench.rig.Render(*kernels, kFrames); });
    const double ours = sum / static_cast<double>(state.iterations());
    state.counters["ns_per_frame_per_instrument"] = ours;
    state.counters["ratio"] = scalar / ours;
}

}  // namespace

#define QUIB_SCENES ArgName("moving0_settled1_off2")->Arg(moving)->Arg(settled)->Arg(off)->Unit(benchmark::kMillisecond)
BENCHMARK(Scalar)->QUIB_SCENES;
BENCHMARK_CAPTURE(Kernels, SSE2, EStripInstructions::kSse2)->QUIB_SCENES;
BENCHMARK_CAPTURE(Kernels, AVX2, EStripInstructions::kAvx2)->QUIB_SCENES;
BENCHMARK_MAIN();
