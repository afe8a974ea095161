// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/rhythm/HitGrid.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "export/BeatsOfBar.h"

namespace quib {

namespace {

constexpr double kGridReach = 0.015;  // seconds
constexpr double kBeginning = 0.1;    // what the first sound of all counts

// How far a time is from the nearest place of a grid, seconds; below 0 for one before it.
double OffGrid(double time, double first, double period) {
    const double turns = (time - first) / period;
    return (turns - std::round(turns)) * period;
}

// Those that are as strong as the strong ones, nearly: by so many dB.
std::vector<RhythmHit> Strong(std::vector<RhythmHit> hits, float near) {
    if (hits.empty()) return hits;
    std::vector<float> strengths;
    for (const RhythmHit& hit : hits) strengths.push_back(hit.strength);
    const auto high = strengths.begin() + static_cast<std::ptrdiff_t>(strengths.size() * 9 / 10);
    std::nth_element(strengths.begin(), high, strengths.end());
    std::erase_if(hits, [&](const RhythmHit& hit) { return hit.strength < *high - near; });
    return hits;
}

// The share of the hits, by their strength, that lie on a grid; 0..1.
double OnGrid(const std::vector<RhythmHit>& hits, double first, double period) {
    double sum = 0;
    double whole = 0;
    for (const RhythmHit& hit : hits) {
        const double off = std::abs(OffGrid(hit.time, first, period));
        if (off < kGridReach) sum += static_cast<double>(hit.strength) * (1 - off / kGridReach);
        whole += static_cast<double>(hit.strength);
    }
    return whole > 0 ? sum / whole : 0.0;
}

// Of hits that lie on the beat the mean distance from it; they say where it is more exactly than the search.
double Centred(const std::vector<RhythmHit>& hits, double phase, double period) {
    double sum = 0;
    double weights = 0;
    for (const RhythmHit& hit : hits) {
        const double off = OffGrid(hit.time, phase, period);
        if (std::abs(off) > kGridReach) continue;
        sum += static_cast<double>(hit.strength) * off;
        weights += static_cast<double>(hit.strength);
    }
    return weights > 0 ? phase + sum / weights : phase;
}

}  // namespace

double Concentration(const std::vector<RhythmHit>& hits, double period) {
    double sum = 0;
    for (const int part : {1, 2, 4}) {
        std::complex<double> pointer;
        for (const RhythmHit& hit : hits) {
            pointer += std::polar(static_cast<double>(hit.strength), 2.0 * std::numbers::pi * part * hit.time / period);
        }
        sum += std::abs(pointer) / part;
    }
    return sum;
}

double BestNear(const std::vector<RhythmHit>& hits, double period, double reach, double step) {
    double best = period;
    double most = Concentration(hits, period);
    for (double change = -reach; change <= reach; change += step) {
        const double score = Concentration(hits, period * (1 + change));
        if (score <= most) continue;
        most = score;
        best = period * (1 + change);
    }
    return best;
}

RhythmHits FindHits(std::span<const float> mono, int sampleRate) {
    float peak = 0;
    for (const float sample : mono) peak = std::max(peak, std::abs(sample));
    RhythmSettings settings;
    settings.attack = 0.0005;
    settings.release = 0.04;
    settings.threshold = 20.0 * std::log10(std::max(static_cast<double>(peak), 1e-4)) - 30.0;
    CRhythmEnvelope all(settings, sampleRate);
    all.Add(mono);
    settings.hertz = 70;
    settings.quality = 0.5;
    settings.threshold += 8;
    CRhythmEnvelope low(settings, sampleRate);
    low.Add(mono);
    settings.hertz = 2500;
    settings.quality = 0.7;
    settings.threshold -= 8;
    CRhythmEnvelope snare(settings, sampleRate);
    snare.Add(mono);
    return {all.Hits(), Strong(low.Hits(), 8), Strong(snare.Hits(), 3)};
}

double Sharpened(const std::vector<RhythmHit>& hits, double period, double seconds) {
    constexpr double kReach = 3e-4;
    const double step = std::min(kReach, 0.0004 / std::max(seconds, 1.0));
    const double best = BestNear(hits, period, kReach, step);
    const double most = Concentration(hits, best);
    const double fine = best * step;
    const double before = Concentration(hits, best - fine);
    const double after = Concentration(hits, best + fine);
    const double bend = before - 2 * most + after;
    return bend < 0 ? best + 0.5 * fine * (before - after) / bend : best;
}

double PhaseOf(const RhythmHits& hits, double period) {
    double best = 0;
    double most = -1;
    for (double phase = 0; phase < period; phase += 0.001) {
        const double score =
            OnGrid(hits.all, phase, period) + OnGrid(hits.low, phase, period) + 2 * OnGrid(hits.snare, phase, period);
        if (score <= most) continue;
        most = score;
        best = phase;
    }
    return best;
}

double DownbeatOf(const RhythmHits& hits, double period) {
    const double phase = Centred(hits.all, PhaseOf(hits, period), period);
    const double bar = kBeatsOfBar * period;
    const std::vector<RhythmHit> loud = Strong(hits.all, 12);
    double best = 0;
    double most = -1e9;
    for (int beat = 0; beat < kBeatsOfBar; ++beat) {
        const double first = phase + beat * period;
        double score =
            2 * OnGrid(hits.low, first, bar) + 0.5 * OnGrid(hits.all, first, bar) - 2 * OnGrid(hits.snare, first, bar);
        // Sounds begin with a bar more often than not.
        if (!loud.empty()) {
            if (std::abs(OffGrid(loud.front().time, first, bar)) < 2 * kGridReach) score += kBeginning;
        }
        if (score <= most) continue;
        most = score;
        best = first;
    }
    best -= std::floor(best / bar) * bar;
    return best > bar - kGridReach ? best - bar : best;
}

double SteadinessOf(const std::vector<RhythmHit>& hits, double phase, double period) {
    double sum = 0;
    int count = 0;
    for (const RhythmHit& hit : hits) {
        const double off = OffGrid(hit.time, phase, period);
        if (std::abs(off) > kGridReach) continue;
        sum += off * off;
        ++count;
    }
    return count > 0 ? std::sqrt(sum / count) : 0.0;
}

}  // namespace quib
