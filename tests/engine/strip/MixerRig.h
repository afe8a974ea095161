// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A mixer of some strips on one set of kernels, with the plain reference beside it on request: feeds
// random audio, keeps the jobs, planes and buses.

#include <algorithm>
#include <random>
#include <vector>

#include "ScalarStrip.h"
#include "engine/strip/StripKernels.h"
#include "platform/CAudioPlanes.h"

namespace quib {

constexpr int kRigFrames = 16384;
constexpr int kBusPlanes = 2 + 2 * kSendCount;

inline MixBuses BusesOf(const CAudioPlanes& planes) {
    MixBuses buses{planes.Plane(0), planes.Plane(1), {}, {}};
    for (int k = 0; k < kSendCount; ++k) {
        buses.sendLeft[k] = planes.Plane(2 + 2 * k);
        buses.sendRight[k] = planes.Plane(3 + 2 * k);
    }
    return buses;
}

inline void FillNoise(float* samples, int frames, std::minstd_rand& random) {
    std::uniform_real_distribution<float> noise(-1, 1);
    for (int i = 0; i < frames; ++i) samples[i] = noise(random);
}

class CMixerRig {
public:
    explicit CMixerRig(int strips, int frames = kRigFrames)
        : inputs(2 * strips, frames, 3),
          planes(StripPlanes::kCount * strips, frames),
          busPlanes(kBusPlanes, frames, 7),
          states(static_cast<std::size_t>(strips)),
          jobs(static_cast<std::size_t>(strips)),
          buses(BusesOf(busPlanes)) {
        for (int i = 0; i < strips; ++i) {
            StripJob& job = jobs[static_cast<std::size_t>(i)];
            job.inLeft = inputs.Plane(2 * i);
            job.inRight = inputs.Plane(2 * i + 1);
            job.inputsStay = true;
            job.state = &states[static_cast<std::size_t>(i)];
            job.planes = MakeStripPlanes(planes, StripPlanes::kCount * i);
        }
    }

    int Count() const { return static_cast<int>(jobs.size()); }

    // Silences the buses that take part.
    void ClearBuses(int frames) {
        std::fill_n(buses.masterLeft, frames, 0.0f);
        std::fill_n(buses.masterRight, frames, 0.0f);
        for (int k = 0; k < kSendCount; ++k) {
            if (!buses.sendLeft[k]) continue;
            std::fill_n(buses.sendLeft[k], frames, 0.0f);
            std::fill_n(buses.sendRight[k], frames, 0.0f);
        }
    }

    void Render(const StripKernels& kernels, int frames) {
        ClearBuses(frames);
        kernels.processStrips(jobs.data(), Count(), frames);
        kernels.mixStrips(jobs.data(), Count(), buses, 0, frames);
    }

    CAudioPlanes inputs, planes, busPlanes;
    std::vector<StripState> states;
    std::vector<StripJob> jobs;
    MixBuses buses;
};

inline StripInput RandomSettings(std::minstd_rand& random) {
    std::uniform_real_distribution<float> unit(0, 1);
    const auto maybe = [&](float part) { return unit(random) < part ? 1.0f : 0.0f; };
    StripInput settings;
    settings.level = 127 * unit(random);
    settings.pan = unit(random) < 0.3f ? 0 : 2 * unit(random) - 1;
    settings.mute = maybe(0.1f);
    settings.crossfadeA = maybe(0.2f);
    settings.crossfadeB = maybe(0.2f);
    settings.eqOn = maybe(0.5f);
    for (int k = 0; k < kSendCount; ++k) {
        settings.sendOn[k] = maybe(0.5f);
        settings.sendLevel[k] = 127 * unit(random);
    }
    return settings;
}

inline EqBandUpdate RandomBand(std::minstd_rand& random) {
    std::uniform_real_distribution<float> unit(0, 1);
    const int band = static_cast<int>(random() % kEqBandCount);
    return DesignEqBand(band, unit(random), unit(random), 1.2f * unit(random) - 0.6f, 44100);
}

}  // namespace quib
