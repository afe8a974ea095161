// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Sums of all strips: a few frames of every bus are held in registers while the strips go by in list
// order. Local to the source file of one instruction set.

#include "engine/strip/Lanes.h"
#include "engine/strip/StripJob.h"

namespace quib {
namespace {

struct ActiveSends {
    int count = 0;
    int index[kSendCount] = {};
};

inline ActiveSends FindActiveSends(const MixBuses& buses) noexcept {
    ActiveSends active;
    for (int k = 0; k < kSendCount; ++k)
        if (buses.sendLeft[k] && buses.sendRight[k]) active.index[active.count++] = k;
    return active;
}

template <typename Sample>
inline constexpr std::size_t kFramesOf = kLanes;
template <>
inline constexpr std::size_t kFramesOf<float> = 1;

// Registers of one stretch of frames: `width` times a sample type (a vector of frames, or one frame).
template <typename Sample, int sends, int width>
struct Sums {
    Sample left[sends + 1][width];
    Sample right[sends + 1][width];
};

inline void LoadSample(Lanes& to, const float* from) noexcept { to = Load(from); }
inline void LoadSample(float& to, const float* from) noexcept { to = *from; }
inline void StoreSample(float* to, Lanes from) noexcept { Store(to, from); }
inline void StoreSample(float* to, float from) noexcept { *to = from; }

template <typename Sample>
inline Sample LoadFrom(const float* from) noexcept {
    Sample sample;
    LoadSample(sample, from);
    return sample;
}

template <typename Sample, int sends, int width>
inline void AddExtra(Sums<Sample, sends, width>& sums, const StripJob& job, int bus, int k,
                     std::size_t frame) noexcept {
    for (int w = 0; w < width; ++w, frame += kFramesOf<Sample>) {
        const std::size_t gainFrame = frame & job.gainMask;
        sums.left[bus][w] +=
            LoadFrom<Sample>(job.extraLeft[k] + frame) * LoadFrom<Sample>(job.planes.gainLeft + gainFrame);
        sums.right[bus][w] +=
            LoadFrom<Sample>(job.extraRight[k] + frame) * LoadFrom<Sample>(job.planes.gainRight + gainFrame);
    }
}

template <typename Sample, int sends, int width>
inline void AddStrip(Sums<Sample, sends, width>& sums, const StripJob& job, const ActiveSends& active,
                     std::size_t frame) noexcept {
    for (int w = 0; w < width; ++w) {
        const std::size_t at = frame + static_cast<std::size_t>(w) * kFramesOf<Sample>;
        const Sample left = LoadFrom<Sample>(job.mixLeft + at) * job.mixGainLeft;
        const Sample right = LoadFrom<Sample>(job.mixRight + at) * job.mixGainRight;
        sums.left[0][w] += left;
        sums.right[0][w] += right;
        for (int i = 0; i < sends; ++i) {
            const int k = active.index[i];
            const Sample gain = LoadFrom<Sample>(job.sendCourse[k] + (at & job.sendMask[k]));
            sums.left[i + 1][w] += left * gain;
            sums.right[i + 1][w] += right * gain;
        }
    }
    if (sends > 0 && job.addsAnyExtra)
        for (int i = 0; i < sends; ++i)
            if (job.addsExtra[active.index[i]]) AddExtra(sums, job, i + 1, active.index[i], frame);
}

template <typename Sample, int sends, int width>
inline void MixStretch(const StripJob* jobs, int count, float* const (&left)[kSendCount + 1],
                       float* const (&right)[kSendCount + 1], const ActiveSends& active, std::size_t frame) noexcept {
    Sums<Sample, sends, width> sums;
    for (int bus = 0; bus <= sends; ++bus)
        for (std::size_t w = 0; w < width; ++w) {
            LoadSample(sums.left[bus][w], left[bus] + frame + w * kFramesOf<Sample>);
            LoadSample(sums.right[bus][w], right[bus] + frame + w * kFramesOf<Sample>);
        }
    for (int i = 0; i < count; ++i) AddStrip(sums, jobs[i], active, frame);
    for (int bus = 0; bus <= sends; ++bus)
        for (std::size_t w = 0; w < width; ++w) {
            StoreSample(left[bus] + frame + w * kFramesOf<Sample>, sums.left[bus][w]);
            StoreSample(right[bus] + frame + w * kFramesOf<Sample>, sums.right[bus][w]);
        }
}

template <int sends>
void MixRange(const StripJob* jobs, int count, const MixBuses& buses, const ActiveSends& active, int first,
              int frames) noexcept {
    constexpr int kWidth = sends == 0 ? 4 : sends <= 2 ? 2 : 1;
    constexpr int kStretch = kWidth * kLanes;
    float* left[kSendCount + 1] = {buses.masterLeft};
    float* right[kSendCount + 1] = {buses.masterRight};
    for (int i = 0; i < sends; ++i) {
        left[i + 1] = buses.sendLeft[active.index[i]];
        right[i + 1] = buses.sendRight[active.index[i]];
    }
    int frame = first;
    const int end = first + frames;
    for (; frame + kStretch <= end; frame += kStretch)
        MixStretch<Lanes, sends, kWidth>(jobs, count, left, right, active, static_cast<std::size_t>(frame));
    for (; frame < end; ++frame)
        MixStretch<float, sends, 1>(jobs, count, left, right, active, static_cast<std::size_t>(frame));
}

inline void MixStrips(const StripJob* jobs, int count, const MixBuses& buses, int first, int frames) noexcept {
    const ActiveSends active = FindActiveSends(buses);
    switch (active.count) {
        case 0:
            return MixRange<0>(jobs, count, buses, active, first, frames);
        case 1:
            return MixRange<1>(jobs, count, buses, active, first, frames);
        case 2:
            return MixRange<2>(jobs, count, buses, active, first, frames);
        case 3:
            return MixRange<3>(jobs, count, buses, active, first, frames);
        default:
            return MixRange<4>(jobs, count, buses, active, first, frames);
    }
}

}  // namespace
}  // namespace quib
