// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The sample loops of a group of strips: the recursions of all its channels run together, frame by frame,
// and every lane does the operations of a single channel in their order. Buffers are turned from rows of
// time into rows of lanes and back. Local to the source file of one instruction set.

#include "engine/strip/GroupLanes.h"

namespace quib {
namespace {

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

// In a loop, keeps the compiler from giving each recursion a loop of its own, where it waits for itself.
inline void KeepLoopWhole() noexcept { __asm__ volatile(""); }

// A lane whose filter has gone passes its zeros as well.
template <EFilters filters>
inline Lanes Instead(Lanes insteadOfZero, Lanes amount) noexcept {
    if constexpr (filters == EFilters::kFading) return amount == 0 ? Lanes{} : insteadOfZero;
    return insteadOfZero;
}

// The amount and bands 0 and 1, band 1 a frame behind band 0. Each turn of this loop and of the next has
// several recursions that do not wait for each other, and about as many values as there are registers.
template <EFilters filters>
inline void RunLowerBands(EqualizerLanes& lanes, Tile& tile, int frames) noexcept {
    BandLanes low = lanes.bands[0];
    BandLanes middle = lanes.bands[1];
    const Lanes insteadOfZero = lanes.insteadOfZero;
    Lanes amount = lanes.amount;
    const auto runLow = [&](int f) {
        amount += kAmountRate * (lanes.amountTarget - amount);
        if constexpr (filters == EFilters::kFading)
            amount = ((lanes.amountTarget == 0) & (amount <= kAmountGone)) ? Lanes{} : amount;
        tile.amount[f] = amount;
        tile.dry[f] = 1 - amount;
        return Filter(low, tile.signal[f], amount, tile.dry[f], Instead<filters>(insteadOfZero, amount));
    };
    const auto runMiddle = [&](Lanes sample, int f) {
        const Lanes zero = Instead<filters>(insteadOfZero, tile.amount[f]);
        tile.signal[f] = Filter(middle, sample, tile.amount[f], tile.dry[f], zero);
    };
    Lanes between = runLow(0);
    for (int f = 1; f < frames; ++f) {
        KeepLoopWhole();
        runMiddle(between, f - 1);
        between = runLow(f);
    }
    runMiddle(between, frames - 1);
    lanes.bands[0] = low;
    lanes.bands[1] = middle;
    lanes.amount = amount;
}

// Band 2, gains, meter, and the course of the sends.
template <EFilters filters, bool sends>
inline void RunRestOfStrip(GroupLanes& group, Tile& tile, int frames) noexcept {
    BandLanes high = group.equalizer.bands[2];
    Lanes gain = group.gain;
    const float* weight = kMeterWeights.power + (kMeterFrames - frames);
    Lanes peak = group.peak * weight[0];
    Lanes send[2] = {group.send[0], group.send[1]};
    for (int f = 0; f < frames; ++f) {
        KeepLoopWhole();
        Lanes x = tile.signal[f];
        if constexpr (filters != EFilters::kNone)
            x = Filter(high, x, tile.amount[f], tile.dry[f],
                       Instead<filters>(group.equalizer.insteadOfZero, tile.amount[f]));
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
    float* send[2][kLanes];
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
template <EFilters filters, bool sends>
inline void RunTile(GroupLanes& group, const GroupBuffers& buffers, std::size_t at, int frames) noexcept {
    Tile tile;
    LoadTile(tile, buffers, at, frames);
    if constexpr (filters != EFilters::kNone) RunLowerBands<filters>(group.equalizer, tile, frames);
    RunRestOfStrip<filters, sends>(group, tile, frames);
    for (int f = 0; f < frames; f += kLanes, at += kLanes) {
        StoreSquare(buffers.out, buffers.lanes, at, tile.signal + f);
        for (int i = 0; sends && i < 2; ++i) StoreSquare(buffers.send[i], kLanes, at, tile.send[i] + f);
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
        for (int k = 0; k < kSendCount; ++k) {
            const int row = strip * kSendCount + k;
            buffers.send[row / kLanes][row % kLanes] = used && job->sendMask[k] ? job->planes.sendGain[k] : nullptr;
        }
    }
    return buffers;
}

// The last frames of a block, too few for a tile: through copies, since nothing may be read past a
// plug-in's buffers. Planes are padded to whole cache lines.
template <EFilters filters, bool sends>
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

template <EFilters filters, bool sends>
void RunGroup(StripJob* jobs, int count, int frames) noexcept {
    GroupLanes group;
    for (int i = 0; i < count; ++i) {
        LoadGains(group, jobs[i], i);
        if (filters != EFilters::kNone && EqualizerRuns(jobs[i])) LoadEqualizer(group.equalizer, jobs[i], i);
    }
    const GroupBuffers buffers = FindBuffers(jobs, count);
    int at = 0;
    for (; at + kTile <= frames; at += kTile)
        RunTile<filters, sends>(group, buffers, static_cast<std::size_t>(at), kTile);
    if (at < frames) RunRest<filters, sends>(group, buffers, static_cast<std::size_t>(at), frames - at);
    if (filters != EFilters::kNone) DropRunawayMemories(group.equalizer);
    for (int i = 0; i < count; ++i) {
        if (filters != EFilters::kNone && EqualizerRuns(jobs[i])) SaveEqualizer(group.equalizer, jobs[i], i);
        SaveGains(group, jobs[i], i, sends);
    }
}

}  // namespace
}  // namespace quib
