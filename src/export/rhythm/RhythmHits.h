// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the rhythm detector listens to and hits: band-pass, then an envelope with attack and release, hits where it
// rises above the threshold, and how strong they are. Any thread but render threads.

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "export/rhythm/CEnergyRise.h"
#include "model/Equalizer.h"
#include "project/ProjectState.h"

namespace quib {

// The settings of a project in units. Each is 0..1 there; 0 means the default.
struct RhythmSettings {
    double hertz = 0;        // centre of the band-pass; 0: the whole sound
    double quality = 0.7;    // of the band-pass
    double attack = 0.002;   // seconds
    double release = 0.03;   // seconds
    double threshold = -30;  // dB below full scale
    double level = 0;        // dB, -24..24: of what is listened to
    double gain = 0;         // dB, 0..24: of the hits' strength
    bool bright = false;     // highs count more: cymbals stand out beside bass drums
};
RhythmSettings RhythmSettingsOf(const DetectorSettings& stored);

struct RhythmHit {
    double time = 0;     // seconds
    float strength = 0;  // dB above the threshold
    int velocity = 0;    // 1..127
};

// Takes a sound block by block, as it comes from a file or from the master output. A hit is known some 15 ms after it.
class CRhythmEnvelope {
public:
    CRhythmEnvelope(const RhythmSettings& wanted, int sampleRate);

    void Add(std::span<const float> mono);
    // The highest of the envelope in each hop of kHop seconds so far, dB.
    static constexpr double kHop = 0.002;
    const std::vector<float>& Levels() const noexcept { return levels; }
    const std::vector<RhythmHit>& Hits() const noexcept { return hits; }
    // Highest level that came in, before the filter, and of the envelope, dB, in the last block.
    float LevelIn() const noexcept { return levelIn; }
    float LevelOut() const noexcept { return levelOut; }

private:
    // A filter on its way.
    struct Filtered {
        EqBandUpdate filter;
        double x1 = 0, x2 = 0, y1 = 0, y2 = 0;

        double Step(double x) noexcept;
    };
    struct Rise {
        std::size_t noticed = 0, begun = 0;  // hops
        float risen = 0;                     // dB
    };
    void EndHop();
    void Judge(float rise);
    void Strengthen(float level);

    RhythmSettings settings;
    int rate;
    bool hasFilter;
    Filtered band;
    Filtered highs;  // of the whole sound
    double inputGain, attackStep, releaseStep;
    double before = 0;  // the sample
    double envelope = 0;
    double highest = 0;
    double energy = 0, highEnergy = 0;  // sums over the hop
    CEnergyRise rise, highRise;
    std::int64_t frames = 0;
    std::int64_t hopBegin = 0;
    std::int64_t hopEnd = 0;
    std::vector<float> levels;
    std::vector<RhythmHit> hits;
    std::optional<Rise> steepest;  // of the one that goes on
    float levelIn = -120, levelOut = -120;
};

}  // namespace quib
