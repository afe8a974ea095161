// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A group of strips with their channels side by side in the lanes of one vector (strip 0 left, strip 0
// right, strip 1 left ..), so that the recursions of all of them run together. Every lane does the
// operations of a single channel in their order. Local to the source file of one instruction set.

#include "engine/strip/MeterLanes.h"
#include "engine/strip/StripJob.h"

namespace quib {
namespace {

constexpr int kGroup = kLanes / 2;
constexpr int kSendRows = 2 * kLanes;  // four sends of each strip of a group: two vectors

constexpr float kGainRate = 0.005f;
constexpr float kSendRate = 0.001f;
constexpr float kAmountRate = 0.01f;
constexpr float kAmountGone = 0.0001f;
constexpr float kInsteadOfZero = 0.00001f;  // keeps the filters out of denormal numbers

inline bool EqualizerRuns(const StripJob& job) noexcept {
    return job.targets.eqAmount != 0 || job.state->eqAmount > kAmountGone;
}

struct BandLanes {
    Lanes a1 = {}, a2 = {}, b0 = {}, b1 = {}, b2 = {};
    Lanes x1 = {}, x2 = {}, y1 = {}, y2 = {};
};

// A lane without a filter has coefficients and amount 0 and nothing instead of zero: its signal passes
// bit for bit.
struct EqualizerLanes {
    BandLanes bands[kEqBandCount];
    Lanes amount = {}, amountTarget = {}, insteadOfZero = {};
};

struct GroupLanes {
    EqualizerLanes equalizer;
    Lanes gain = {}, gainTarget = {}, peak = {};
    Lanes send[2] = {}, sendTarget[2] = {}, sendFloor[2] = {};
};

inline void LoadMemory(BandLanes& lanes, const EqMemory& memory, int lane) noexcept {
    lanes.x1[lane] = memory.x1;
    lanes.x2[lane] = memory.x2;
    lanes.y1[lane] = memory.y1;
    lanes.y2[lane] = memory.y2;
}

inline void SaveMemory(const BandLanes& lanes, EqMemory& memory, int lane) noexcept {
    memory.x1 = lanes.x1[lane];
    memory.x2 = lanes.x2[lane];
    memory.y1 = lanes.y1[lane];
    memory.y2 = lanes.y2[lane];
}

inline void LoadEqualizer(EqualizerLanes& lanes, const StripJob& job, int strip) noexcept {
    for (int lane = 2 * strip; lane < 2 * strip + 2; ++lane) {
        lanes.amount[lane] = job.state->eqAmount;
        lanes.amountTarget[lane] = job.targets.eqAmount;
        lanes.insteadOfZero[lane] = kInsteadOfZero;
        for (int b = 0; b < kEqBandCount; ++b) {
            const EqBandState& band = job.state->eqBands[b];
            lanes.bands[b].a1[lane] = band.a1;
            lanes.bands[b].a2[lane] = band.a2;
            lanes.bands[b].b0[lane] = band.b0;
            lanes.bands[b].b1[lane] = band.b1;
            lanes.bands[b].b2[lane] = band.b2;
            LoadMemory(lanes.bands[b], lane % 2 == 0 ? band.left : band.right, lane);
        }
    }
}

inline void SaveEqualizer(EqualizerLanes& lanes, StripJob& job, int strip) noexcept {
    job.state->eqAmount = lanes.amount[2 * strip];
    for (int b = 0; b < kEqBandCount; ++b) {
        SaveMemory(lanes.bands[b], job.state->eqBands[b].left, 2 * strip);
        SaveMemory(lanes.bands[b], job.state->eqBands[b].right, 2 * strip + 1);
    }
}

inline void LoadGains(GroupLanes& lanes, const StripJob& job, int strip) noexcept {
    const int left = 2 * strip;
    lanes.gain[left] = job.state->gainLeft;
    lanes.gain[left + 1] = job.state->gainRight;
    lanes.gainTarget[left] = job.targets.gainLeft;
    lanes.gainTarget[left + 1] = job.targets.gainRight;
    lanes.peak[left] = lanes.peak[left + 1] = job.state->peak;
    for (int k = 0; k < kSendCount; ++k) {
        const int row = strip * kSendCount + k;
        lanes.send[row / kLanes][row % kLanes] = job.state->sendGain[k];
        lanes.sendTarget[row / kLanes][row % kLanes] = job.targets.send[k];
        lanes.sendFloor[row / kLanes][row % kLanes] = job.targets.holdSend[k] ? kHeldSendGain : 0;
    }
}

inline void SaveGains(const GroupLanes& lanes, StripJob& job, int strip, bool sends) noexcept {
    const int left = 2 * strip;
    job.state->gainLeft = lanes.gain[left];
    job.state->gainRight = lanes.gain[left + 1];
    const float peak = lanes.peak[left] > lanes.peak[left + 1] ? lanes.peak[left] : lanes.peak[left + 1];
    job.state->peak = PeakOrZero(peak);
    for (int k = 0; sends && k < kSendCount; ++k) {
        const int row = strip * kSendCount + k;
        job.state->sendGain[k] = lanes.send[row / kLanes][row % kLanes];
    }
}

// A plug-in that once returned a number beyond all bounds must not silence its strip for good.
inline void DropRunawayMemories(EqualizerLanes& lanes) noexcept {
    for (BandLanes& band : lanes.bands) {
        band.x1 = FiniteOrZero(band.x1);
        band.x2 = FiniteOrZero(band.x2);
        band.y1 = FiniteOrZero(band.y1);
        band.y2 = FiniteOrZero(band.y2);
    }
}

inline Lanes Filter(BandLanes& band, Lanes x, Lanes amount, Lanes insteadOfZero) noexcept {
    x = x == 0 ? insteadOfZero : x;
    const Lanes y = band.b0 * x + band.b1 * band.x1 + band.b2 * band.x2 - band.a1 * band.y1 - band.a2 * band.y2;
    band.x2 = band.x1;
    band.x1 = x;
    band.y2 = band.y1;
    band.y1 = y;
    return x * (1 - amount) + y * amount;
}

inline Lanes Equalize(EqualizerLanes& lanes, Lanes x) noexcept {
    lanes.amount += kAmountRate * (lanes.amountTarget - lanes.amount);
    x = Filter(lanes.bands[0], x, lanes.amount, lanes.insteadOfZero);
    x = Filter(lanes.bands[1], x, lanes.amount, lanes.insteadOfZero);
    return Filter(lanes.bands[2], x, lanes.amount, lanes.insteadOfZero);
}

// The buffers of a group for some frames, one per lane (and per send). The mask is 0 for a buffer that
// holds one vector only.
struct GroupBuffers {
    const float* in[kLanes];
    std::size_t inMask[kLanes];
    float* out[kLanes];
    float* send[kSendRows];
    int lanes = 0;
};

// Works on `frames` (at most kLanes) frames at `at`.
template <bool filters, bool sends>
inline void RunTile(GroupLanes& group, const GroupBuffers& buffers, std::size_t at, int frames) noexcept {
    Lanes signal[kLanes];
    Lanes course[2][kLanes] = {};
    for (int i = 0; i < kLanes; ++i) signal[i] = Load(buffers.in[i] + (at & buffers.inMask[i]));
    Transpose(signal);
    for (int f = 0; f < frames; ++f) {
        if constexpr (filters) signal[f] = Equalize(group.equalizer, signal[f]);
        group.gain += kGainRate * (group.gainTarget - group.gain);
        signal[f] *= group.gain;
        group.peak = Larger(Absolute(signal[f]), group.peak) * kPeakDecay;
        for (int i = 0; sends && i < 2; ++i) {
            group.send[i] += kSendRate * (group.sendTarget[i] - group.send[i]);
            course[i][f] = group.send[i] = Larger(group.send[i], group.sendFloor[i]);
        }
    }
    Transpose(signal);
    for (int i = 0; i < kLanes; ++i)
        if (i < buffers.lanes) Store(buffers.out[i] + at, signal[i]);
    if constexpr (!sends) return;
    for (int i = 0; i < 2; ++i) {
        Transpose(course[i]);
        for (int row = 0; row < kLanes; ++row)
            if (buffers.send[i * kLanes + row]) Store(buffers.send[i * kLanes + row] + at, course[i][row]);
    }
}

inline GroupBuffers FindBuffers(const StripJob* jobs, int count) noexcept {
    static constexpr float kSilence[kLanes] = {};
    GroupBuffers buffers;
    buffers.lanes = 2 * count;
    for (int strip = 0; strip < kGroup; ++strip) {
        const bool used = strip < count;
        const StripJob* job = used ? jobs + strip : nullptr;
        const int left = 2 * strip;
        buffers.in[left] = used ? job->inLeft : kSilence;
        buffers.in[left + 1] = used ? job->inRight : kSilence;
        buffers.inMask[left] = buffers.inMask[left + 1] = used ? ~std::size_t{0} : 0;
        buffers.out[left] = used ? job->planes.left : nullptr;
        buffers.out[left + 1] = used ? job->planes.right : nullptr;
        for (int k = 0; k < kSendCount; ++k)
            buffers.send[strip * kSendCount + k] = used && job->sendMask[k] ? job->planes.sendGain[k] : nullptr;
    }
    return buffers;
}

// The last frames of a block, too few for a vector: through copies, since nothing may be read past a
// plug-in's buffers. Planes are padded to whole cache lines.
template <bool filters, bool sends>
inline void RunRest(GroupLanes& group, GroupBuffers buffers, std::size_t at, int frames) noexcept {
    float rest[kLanes][kLanes] = {};
    for (int i = 0; i < buffers.lanes; ++i) {
        for (int f = 0; f < frames; ++f) rest[i][f] = buffers.in[i][at + static_cast<std::size_t>(f)];
        buffers.in[i] = rest[i];
        buffers.inMask[i] = 0;
    }
    RunTile<filters, sends>(group, buffers, at, frames);
}

template <bool filters, bool sends>
void RunGroup(StripJob* jobs, int count, int frames) noexcept {
    GroupLanes group;
    for (int i = 0; i < count; ++i) {
        LoadGains(group, jobs[i], i);
        if (filters && EqualizerRuns(jobs[i])) LoadEqualizer(group.equalizer, jobs[i], i);
    }
    const GroupBuffers buffers = FindBuffers(jobs, count);
    int at = 0;
    for (; at + kLanes <= frames; at += kLanes)
        RunTile<filters, sends>(group, buffers, static_cast<std::size_t>(at), kLanes);
    if (at < frames) RunRest<filters, sends>(group, buffers, static_cast<std::size_t>(at), frames - at);
    if (filters) DropRunawayMemories(group.equalizer);
    for (int i = 0; i < count; ++i) {
        if (filters && EqualizerRuns(jobs[i])) SaveEqualizer(group.equalizer, jobs[i], i);
        SaveGains(group, jobs[i], i, sends);
    }
}

}  // namespace
}  // namespace quib
