// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/rhythm/RhythmHits.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {

constexpr double kSilence = -120;   // dB
constexpr float kRise = 6;          // dB above what lay before, for another hit
constexpr double kPlain = 0.35;     // of the sound itself, where highs count more
constexpr double kRising = 2;       // of its rise from frame to frame
constexpr double kShortest = 0.04;  // seconds between hits
constexpr double kLoudest = 40;     // dB above the threshold, of velocity 127

double Decibels(double value) { return value > 1e-6 ? 20.0 * std::log10(value) : kSilence; }
double Or(float stored, double otherwise, double scaled) { return stored > 0 ? scaled : otherwise; }

}  // namespace

RhythmSettings RhythmSettingsOf(const DetectorSettings& stored) {
    const RhythmSettings usual;
    const auto clamped = [](float value) { return std::clamp(static_cast<double>(value), 0.0, 1.0); };
    return {Or(stored.eqFrequency, usual.hertz, EqFrequencyHertz(static_cast<float>(clamped(stored.eqFrequency)))),
            Or(stored.eqResonance, usual.quality, EqQuality(1, static_cast<float>(clamped(stored.eqResonance)))),
            Or(stored.attack, usual.attack, 0.0005 * std::pow(200.0, clamped(stored.attack))),
            Or(stored.release, usual.release, 0.01 * std::pow(100.0, clamped(stored.release))),
            Or(stored.threshold, usual.threshold, -60.0 + 60.0 * clamped(stored.threshold)),
            Or(stored.level, usual.level, -24.0 + 48.0 * clamped(stored.level)),
            24.0 * clamped(stored.gain),
            stored.eqFrequency <= 0};
}

CRhythmEnvelope::CRhythmEnvelope(const RhythmSettings& wanted, int sampleRate)
    : settings(wanted),
      rate(sampleRate),
      hasFilter(wanted.hertz > 0),
      filter(DesignEqFilter(EqFilter::bandPass, hasFilter ? wanted.hertz : 1000.0, wanted.quality, 0, sampleRate)),
      inputGain(std::pow(10.0, wanted.level / 20.0)),
      attackStep(1.0 - std::exp(-1.0 / (std::max(wanted.attack, 1e-5) * sampleRate))),
      releaseStep(std::exp(-1.0 / (std::max(wanted.release, 1e-4) * sampleRate))),
      hopEnd(std::llround(kHop * sampleRate)) {}

void CRhythmEnvelope::Add(std::span<const float> mono) {
    double in = 0;
    double out = 0;
    for (const float sample : mono) {
        in = std::max(in, std::abs(static_cast<double>(sample)));
        double x = sample * inputGain;
        if (settings.bright) {
            const double rise = x - x1;
            x1 = x;
            x = kPlain * x + kRising * rise;
        }
        if (hasFilter) {
            const double y = static_cast<double>(filter.b0) * x + static_cast<double>(filter.b1) * x1 +
                             static_cast<double>(filter.b2) * x2 - static_cast<double>(filter.a1) * y1 -
                             static_cast<double>(filter.a2) * y2;
            x2 = x1;
            x1 = x;
            y2 = y1;
            y1 = y;
            x = y;
        }
        const double height = std::abs(x);
        envelope =
            height > envelope ? envelope + (height - envelope) * attackStep : std::max(height, envelope * releaseStep);
        highest = std::max(highest, envelope);
        out = std::max(out, envelope);
        if (++frames >= hopEnd) EndHop();
    }
    levelIn = static_cast<float>(Decibels(in));
    levelOut = static_cast<float>(Decibels(out));
}

// A hit begins where the envelope has risen above the threshold and by kRise above what lay before, and is as
// strong as the top that follows.
void CRhythmEnvelope::EndHop() {
    const auto level = static_cast<float>(Decibels(highest));
    const double time = static_cast<double>(levels.size()) * kHop;
    highest = 0;
    levels.push_back(level);
    hopEnd = std::llround(static_cast<double>(levels.size() + 1) * kHop * rate);
    const bool isApart = hits.empty() || time - hits.back().time >= kShortest;
    if (!rising && isApart && level >= settings.threshold && level >= floorLevel + kRise) {
        hits.push_back({time, 0, 1});
        rising = true;
    }
    if (rising && !hits.empty()) {
        RhythmHit& hit = hits.back();
        hit.strength = std::max(hit.strength, level - static_cast<float>(settings.threshold));
        const double share = (static_cast<double>(hit.strength) + settings.gain) / kLoudest;
        hit.velocity = std::clamp(static_cast<int>(std::lround(127.0 * share)), 1, 127);
        // Over when it falls, or has had its time.
        if (level < levels[levels.size() > 1 ? levels.size() - 2 : 0] || time - hit.time > kShortest / 2) {
            rising = false;
            floorLevel = level;
        }
    }
    floorLevel = std::min(floorLevel, level);
}

}  // namespace quib
