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
constexpr int kTile = kMeterFrames;    // frames worked on at a time
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

// A stretch of time of a group, and what the smoothed values are at each of its frames.
struct Tile {
    Lanes signal[kTile], amount[kTile], dry[kTile], send[2][kTile];
};

inline Lanes Filter(BandLanes& b, Lanes sample, Lanes amount, Lanes dry, Lanes insteadOfZero) noexcept {
    const Lanes x = sample == 0 ? insteadOfZero : sample;
    const Lanes y = b.b0 * x + b.b1 * b.x1 + b.b2 * b.x2 - b.a1 * b.y1 - b.a2 * b.y2;
    b.x2 = b.x1;
    b.x1 = x;
    b.y2 = b.y1;
    b.y1 = y;
    return x * dry + y * amount;
}

// The amount and bands 0 and 1, band 1 a frame behind band 0. Each turn of this loop and of the next has
// several recursions that do not wait for each other, and about as many values as there are registers.
inline void RunLowerBands(EqualizerLanes& lanes, Tile& tile, int frames) noexcept {
    BandLanes low = lanes.bands[0];
    BandLanes middle = lanes.bands[1];
    const Lanes insteadOfZero = lanes.insteadOfZero;
    Lanes amount = lanes.amount;
    const auto runLow = [&](int f) {
        amount += kAmountRate * (lanes.amountTarget - amount);
        tile.amount[f] = amount;
        tile.dry[f] = 1 - amount;
        return Filter(low, tile.signal[f], amount, tile.dry[f], insteadOfZero);
    };
    Lanes between = runLow(0);
    for (int f = 1; f < frames; ++f) {
        tile.signal[f - 1] = Filter(middle, between, tile.amount[f - 1], tile.dry[f - 1], insteadOfZero);
        between = runLow(f);
    }
    tile.signal[frames - 1] = Filter(middle, between, tile.amount[frames - 1], tile.dry[frames - 1], insteadOfZero);
    lanes.bands[0] = low;
    lanes.bands[1] = middle;
    lanes.amount = amount;
}

// Band 2, gains, meter, and the course of the sends.
template <bool filters, bool sends>
inline void RunRestOfStrip(GroupLanes& group, Tile& tile, int frames) noexcept {
    BandLanes high = group.equalizer.bands[2];
    Lanes gain = group.gain;
    const float* weight = kMeterWeights.power + (kMeterFrames - frames);
    Lanes peak = group.peak * weight[0];
    Lanes send[2] = {group.send[0], group.send[1]};
    for (int f = 0; f < frames; ++f) {
        Lanes x = tile.signal[f];
        if constexpr (filters) x = Filter(high, x, tile.amount[f], tile.dry[f], group.equalizer.insteadOfZero);
        gain += kGainRate * (group.gainTarget - gain);
        x *= gain;
        peak = Larger(Absolute(x) * weight[f], peak);
        tile.signal[f] = x;
        for (int i = 0; sends && i < 2; ++i) {
            send[i] += kSendRate * (group.sendTarget[i] - send[i]);
            tile.send[i][f] = send[i] = Larger(send[i], group.sendFloor[i]);
        }
    }
    group.equalizer.bands[2] = high;
    group.gain = gain;
    group.peak = peak;
    group.send[0] = send[0];
    group.send[1] = send[1];
}

// The buffers of a group, one per lane (and per send). The mask is 0 for an input that holds one tile only.
struct GroupBuffers {
    const float* in[kLanes];
    std::size_t inMask[kLanes];
    float* out[kLanes];
    float* send[kSendRows];
    int lanes = 0;
};

// The outputs of one square of frames and lanes.
inline void StoreSquare(float* const* planes, int count, std::size_t at, const Lanes* square) noexcept {
    Lanes rows[kLanes];
    for (int i = 0; i < kLanes; ++i) rows[i] = square[i];
    Transpose(rows);
    for (int i = 0; i < count; ++i)
        if (planes[i]) Store(planes[i] + at, rows[i]);
}

inline void LoadTile(Tile& tile, const GroupBuffers& buffers, std::size_t at, int frames) noexcept {
    for (int f = 0; f < frames; f += kLanes, at += kLanes) {
        Lanes rows[kLanes];
        for (int i = 0; i < kLanes; ++i) rows[i] = Load(buffers.in[i] + (at & buffers.inMask[i]));
        Transpose(rows);
        for (int i = 0; i < kLanes; ++i) tile.signal[f + i] = rows[i];
    }
}

// Works on `frames` (at most kTile) frames at `at`.
template <bool filters, bool sends>
inline void RunTile(GroupLanes& group, const GroupBuffers& buffers, std::size_t at, int frames) noexcept {
    Tile tile;
    LoadTile(tile, buffers, at, frames);
    if constexpr (filters) RunLowerBands(group.equalizer, tile, frames);
    RunRestOfStrip<filters, sends>(group, tile, frames);
    for (int f = 0; f < frames; f += kLanes, at += kLanes) {
        StoreSquare(buffers.out, buffers.lanes, at, tile.signal + f);
        for (int i = 0; sends && i < 2; ++i) StoreSquare(buffers.send + i * kLanes, kLanes, at, tile.send[i] + f);
    }
}

inline GroupBuffers FindBuffers(const StripJob* jobs, int count) noexcept {
    static constexpr float kSilence[kTile] = {};
    GroupBuffers buffers;
    buffers.lanes = 2 * count;
    for (int strip = 0; strip < kGroup; ++strip) {
        const bool used = strip < count;
        const StripJob* job = used ? jobs + strip : nullptr;
        const int left = 2 * strip;
        buffers.in[left] = used ? job->inLeft : kSilence;
        buffers.in[left + 1] = used ? job->inRight : kSilence;
        buffers.inMask[left] = buffers.inMask[left + 1] = used ? ~std::size_t{0} : kTile - 1;
        buffers.out[left] = used ? job->planes.left : nullptr;
        buffers.out[left + 1] = used ? job->planes.right : nullptr;
        for (int k = 0; k < kSendCount; ++k)
            buffers.send[strip * kSendCount + k] = used && job->sendMask[k] ? job->planes.sendGain[k] : nullptr;
    }
    return buffers;
}

// The last frames of a block, too few for a tile: through copies, since nothing may be read past a
// plug-in's buffers. Planes are padded to whole cache lines.
template <bool filters, bool sends>
inline void RunRest(GroupLanes& group, GroupBuffers buffers, std::size_t at, int frames) noexcept {
    float rest[kLanes][kTile];
    for (int i = 0; i < buffers.lanes; ++i) {
        for (int f = 0; f < frames; ++f) rest[i][f] = buffers.in[i][at + static_cast<std::size_t>(f)];
        for (int f = frames; f < kTile; ++f) rest[i][f] = 0;
        buffers.in[i] = rest[i];
        buffers.inMask[i] = kTile - 1;
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
    for (; at + kTile <= frames; at += kTile)
        RunTile<filters, sends>(group, buffers, static_cast<std::size_t>(at), kTile);
    if (at < frames) RunRest<filters, sends>(group, buffers, static_cast<std::size_t>(at), frames - at);
    if (filters) DropRunawayMemories(group.equalizer);
    for (int i = 0; i < count; ++i) {
        if (filters && EqualizerRuns(jobs[i])) SaveEqualizer(group.equalizer, jobs[i], i);
        SaveGains(group, jobs[i], i, sends);
    }
}

}  // namespace
}  // namespace quib
