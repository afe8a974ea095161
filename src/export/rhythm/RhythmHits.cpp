// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/rhythm/RhythmHits.h"

#include <algorithm>
#include <cmath>

namespace quib {

namespace {

constexpr double kLeastDecibels = -120;
// A hit is a rise of energy, dB, above what lay before: of the sound, or of the band of cymbals. The sound is looked
// back at for longer than a bass and a bass drum take to beat together.
constexpr float kRise = 5;
constexpr float kHighRise = 2.5F;
constexpr std::size_t kReach = 24;  // hops
constexpr std::size_t kHighReach = 6;
constexpr double kBelow = 20;    // dB below the threshold: a mean square that counts as silence
constexpr std::size_t kTop = 4;  // hops from where a rise is noticed to where it is steepest, at most
constexpr double kHighs = 7000;  // Hz: centre of the band of cymbals
constexpr double kHighQuality = 0.6;
constexpr double kPlain = 0.35;     // of the sound itself, where highs count more
constexpr double kRising = 2;       // of its rise from frame to frame
constexpr double kShortest = 0.04;  // seconds between hits
constexpr double kLoudest = 40;     // dB above the threshold, of velocity 127

double Decibels(double value) { return value > 1e-6 ? 20.0 * std::log10(value) : kLeastDecibels; }
double SilenceOf(const RhythmSettings& settings) { return std::pow(10.0, (settings.threshold - kBelow) / 10.0); }
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

double CRhythmEnvelope::Filtered::Step(double x) noexcept {
    const double y = static_cast<double>(filter.b0) * x + static_cast<double>(filter.b1) * x1 +
                     static_cast<double>(filter.b2) * x2 - static_cast<double>(filter.a1) * y1 -
                     static_cast<double>(filter.a2) * y2;
    x2 = x1;
    x1 = x;
    y2 = y1;
    y1 = y;
    return y;
}

CRhythmEnvelope::CRhythmEnvelope(const RhythmSettings& wanted, int sampleRate)
    : settings(wanted),
      rate(sampleRate),
      hasFilter(wanted.hertz > 0),
      band{DesignEqFilter(EqFilter::bandPass, hasFilter ? wanted.hertz : 1000.0, wanted.quality, 0, sampleRate)},
      highs{DesignEqFilter(EqFilter::bandPass, kHighs, kHighQuality, 0, sampleRate)},
      inputGain(std::pow(10.0, wanted.level / 20.0)),
      attackStep(1.0 - std::exp(-1.0 / (std::max(wanted.attack, 1e-5) * sampleRate))),
      releaseStep(std::exp(-1.0 / (std::max(wanted.release, 1e-4) * sampleRate))),
      rise(kReach, SilenceOf(wanted)),
      highRise(kHighReach, SilenceOf(wanted)),
      hopEnd(std::llround(kHop * sampleRate)) {}

void CRhythmEnvelope::Add(std::span<const float> mono) {
    double in = 0;
    double out = 0;
    for (const float sample : mono) {
        in = std::max(in, std::abs(static_cast<double>(sample)));
        const double sound = sample * inputGain;
        double x = hasFilter ? band.Step(sound) : sound;
        energy += x * x;
        if (!hasFilter) {
            const double high = highs.Step(sound - before);
            highEnergy += high * high;
        }
        if (settings.bright) x = kPlain * sound + kRising * (sound - before);
        before = sound;
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

void CRhythmEnvelope::EndHop() {
    const auto level = static_cast<float>(Decibels(highest));
    const auto length = static_cast<double>(frames - hopBegin);
    levels.push_back(level);
    Judge(std::max(rise.Add(energy / length) - kRise, highRise.Add(highEnergy / length) - kHighRise));
    Strengthen(level);
    highest = energy = highEnergy = 0;
    hopBegin = frames;
    hopEnd = std::llround(static_cast<double>(levels.size() + 1) * kHop * rate);
}

// A hit begins where the energy rises most steeply, when the envelope comes above the threshold there. `risen`: dB
// above what a hit wants.
void CRhythmEnvelope::Judge(float risen) {
    if (levels.size() < CEnergyRise::kAhead) return;
    const std::size_t hop = levels.size() - CEnergyRise::kAhead;
    if (!steepest && risen > 0) steepest = Rise{hop, hop, risen};
    if (!steepest) return;
    if (risen > steepest->risen) steepest = Rise{steepest->noticed, hop, risen};
    if (hop < steepest->noticed + kTop) return;
    const double time = static_cast<double>(steepest->begun) * kHop;
    const float top = *std::max_element(levels.begin() + static_cast<std::ptrdiff_t>(steepest->begun), levels.end());
    steepest.reset();
    const bool isApart = hits.empty() || time - hits.back().time >= kShortest;
    if (!isApart || static_cast<double>(top) < settings.threshold) return;
    hits.push_back({time, 0, 1});
    Strengthen(top);
}

// As strong as the top that follows it.
void CRhythmEnvelope::Strengthen(float level) {
    if (hits.empty()) return;
    RhythmHit& hit = hits.back();
    if (static_cast<double>(levels.size() - 1) * kHop - hit.time > kShortest / 2) return;
    hit.strength = std::max(hit.strength, level - static_cast<float>(settings.threshold));
    const double share = (static_cast<double>(hit.strength) + settings.gain) / kLoudest;
    hit.velocity = std::clamp(static_cast<int>(std::lround(127.0 * share)), 1, 127);
}

}  // namespace quib
