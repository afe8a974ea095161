// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/rhythm/RhythmTempo.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numbers>

#include "export/rhythm/CBeatTrack.h"
#include "export/rhythm/CFourier.h"
#include "export/rhythm/HitGrid.h"

namespace quib {

namespace {

constexpr double kHopSeconds = 0.005;
constexpr std::array kEdges = {30.0, 120.0, 250.0, 500.0, 1000.0, 2500.0, 6000.0, 16000.0};  // Hz, of seven bands
constexpr std::size_t kBands = kEdges.size() - 1;
constexpr std::size_t kBodyBands = 4;  // the lower ones: drums with a body, no cymbals
constexpr float kCompression = 1000;
constexpr double kLongestRefinement = 64;  // beats: sixteen bars

using Series = std::vector<float>;  // a value each hop

struct Onsets {
    double hop = kHopSeconds;  // seconds, exactly
    Series all;
    Series body;
};

// How much louder each band has become, logarithmically.
class COnsetFinder {
public:
    COnsetFinder(std::span<const float> sound, int sampleRate)
        : mono(sound),
          hop(static_cast<std::size_t>(std::max(1L, std::lround(kHopSeconds * sampleRate)))),
          fourier(std::bit_ceil(static_cast<std::size_t>(0.016 * sampleRate))),
          window(fourier.Size()) {
        for (std::size_t i = 0; i < window.size(); ++i) {
            const double turn =
                2.0 * std::numbers::pi * (static_cast<double>(i) + 0.5) / static_cast<double>(window.size());
            window[i] = static_cast<float>(0.5 - 0.5 * std::cos(turn));
        }
        for (std::size_t edge = 0; edge < kEdges.size(); ++edge) {
            const double bin = kEdges[edge] * static_cast<double>(window.size()) / sampleRate;
            bins[edge] = std::min(static_cast<std::size_t>(std::max(1.0, std::round(bin))), window.size() / 2);
        }
        for (std::size_t band = 1; band < kEdges.size(); ++band) bins[band] = std::max(bins[band], bins[band - 1] + 1);
        onsets.hop = static_cast<double>(hop) / sampleRate;
    }

    Onsets Run(const std::function<bool()>& goOn) {
        const std::size_t count = mono.size() / hop;
        for (std::size_t index = 0; index < count; index += 2) {
            if (index % 4096 == 0 && goOn && !goOn()) return {};
            AddTwo(index, count);
        }
        return std::move(onsets);
    }

private:
    // Two real spectra by one transform.
    void AddTwo(std::size_t index, std::size_t count) {
        values.resize(window.size());
        for (std::size_t i = 0; i < window.size(); ++i) {
            values[i] = {window[i] * At(index * hop + i), window[i] * At((index + 1) * hop + i)};
        }
        fourier.Transform(values.data());
        AddLevels(false);
        if (index + 1 < count) AddLevels(true);
    }
    // Centred on the hop.
    float At(std::size_t place) const {
        const std::size_t half = window.size() / 2;
        return place >= half && place - half < mono.size() ? mono[place - half] : 0.0F;
    }

    void AddLevels(bool second) {
        float all = 0;
        float body = 0;
        for (std::size_t band = 0; band < kBands; ++band) {
            float energy = 0;
            for (std::size_t bin = bins[band]; bin < bins[band + 1]; ++bin) {
                const std::complex<float> one = values[bin];
                const std::complex<float> other = std::conj(values[window.size() - bin]);
                energy += std::norm(second ? one - other : one + other);
            }
            const float width = static_cast<float>(window.size()) * static_cast<float>(bins[band + 1] - bins[band]);
            const float level = std::log1p(kCompression * std::sqrt(energy / width));
            const float rise = std::max(0.0F, level - before[1][band]);
            before[1][band] = before[0][band];
            before[0][band] = level;
            all += rise;
            if (band < kBodyBands) body += rise;
        }
        onsets.all.push_back(all);
        onsets.body.push_back(body);
    }

    std::span<const float> mono;
    std::size_t hop;
    CFourier fourier;
    Series window;
    std::array<std::size_t, kEdges.size()> bins{};
    std::vector<std::complex<float>> values;
    std::array<std::array<float, kBands>, 2> before{};
    Onsets onsets;
};

// Above its mean of half a second.
Series Peaks(const Series& series, double hop) {
    const auto reach = static_cast<std::size_t>(0.25 / hop);
    std::vector<double> sums(series.size() + 1);
    for (std::size_t i = 0; i < series.size(); ++i) sums[i + 1] = sums[i] + static_cast<double>(series[i]);
    Series peaks(series.size());
    for (std::size_t i = 0; i < series.size(); ++i) {
        const std::size_t first = i > reach ? i - reach : 0;
        const std::size_t end = std::min(i + reach, series.size());
        const double mean = (sums[end] - sums[first]) / static_cast<double>(end - first);
        peaks[i] = std::max(0.0F, series[i] - static_cast<float>(mean));
    }
    return peaks;
}

// Likeness of a series to itself so many hops later, up to `most`, for the part that both share.
class CLikeness {
public:
    CLikeness(const Series& series, std::size_t most) {
        CFourier fourier(std::bit_ceil(2 * series.size() + 2));
        std::vector<std::complex<float>> values(fourier.Size());
        std::copy(series.begin(), series.end(), values.begin());
        fourier.Transform(values.data());
        for (auto& value : values) value = std::norm(value);
        fourier.Transform(values.data());
        most = std::min(most, series.size() / 2);
        likeness.resize(most + 1);
        for (std::size_t lag = 0; lag <= most; ++lag) {
            const auto shared = static_cast<float>(series.size() - lag) / static_cast<float>(series.size());
            likeness[lag] = values[lag].real() / shared;
        }
        const float whole = std::max(likeness[0], 1e-20F);
        for (float& value : likeness) value /= whole;
    }

    double Longest() const { return static_cast<double>(likeness.size()) - 2; }
    // Between hops, linearly.
    double At(double lag) const {
        if (lag < 0 || lag > Longest()) return 0;
        const auto place = static_cast<std::size_t>(lag);
        const double share = lag - std::floor(lag);
        return (1 - share) * static_cast<double>(likeness[place]) + share * static_cast<double>(likeness[place + 1]);
    }
    // The top within `reach` of a lag, between hops by a parabola; unset beyond what is known.
    double TopNear(double lag, double reach) const {
        auto best = static_cast<std::size_t>(std::max(1.0, std::round(lag)));
        const auto first = static_cast<std::size_t>(std::max(1.0, std::ceil(lag - reach)));
        const auto last = static_cast<std::size_t>(std::min(lag + reach, Longest()));
        for (std::size_t place = first; place <= last; ++place) {
            if (likeness[place] > likeness[best]) best = place;
        }
        const double before = likeness[best - 1];
        const double middle = likeness[best];
        const double after = likeness[best + 1];
        const double bend = before - 2 * middle + after;
        return static_cast<double>(best) + (bend < 0 ? 0.5 * (before - after) / bend : 0.0);
    }

private:
    Series likeness;
};

// Of a period in hops: likeness at it and its multiples.
double ScoreOf(const CLikeness& likeness, double period) {
    double sum = 0;
    double weights = 0;
    for (int multiple = 1; multiple <= 8; ++multiple) {
        if (multiple * period > likeness.Longest()) break;
        const double weight = 1.0 / std::sqrt(multiple);
        const double reach = std::min(1.0 + 0.01 * multiple * period, 2.0);
        double top = 0;
        for (double offset = -reach; offset <= reach; offset += 0.5) {
            top = std::max(top, likeness.At(multiple * period + offset));
        }
        sum += weight * top;
        weights += weight;
    }
    return weights > 0 ? sum / weights : 0.0;
}

// People tap near 120.
double Preference(double tempo) {
    const double octaves = std::log2(tempo / 118.0);
    return std::exp(-0.5 * octaves * octaves / (0.9 * 0.9));
}

// Ever longer multiples of the period, each found near where the one before leads.
double Refined(const CLikeness& likeness, double period) {
    for (double beats = 1; beats <= kLongestRefinement; beats *= 2) {
        const double lag = beats * period;
        if (lag + 8 > likeness.Longest()) break;
        period = likeness.TopNear(lag, beats == 1 ? 3.0 : 2.5) / beats;
    }
    return period;
}

// Whether each second pulse of a period is about as strong as the others, in drums with a body.
double Evenness(const Series& body, double period, double phase) {
    std::array<double, 2> sums{};
    std::size_t index = 0;
    for (double place = phase; place + 4 < static_cast<double>(body.size()); place += period, ++index) {
        const auto middle = static_cast<std::size_t>(std::max(4.0, std::round(place)));
        sums[index % 2] +=
            static_cast<double>(*std::max_element(body.begin() + static_cast<std::ptrdiff_t>(middle) - 4,
                                                  body.begin() + static_cast<std::ptrdiff_t>(middle) + 4));
    }
    return std::min(sums[0], sums[1]) / std::max(std::max(sums[0], sums[1]), 1e-9);
}

// The distance at which most snares follow each other, seconds; 0 when there is none.
double SnareDistance(const std::vector<RhythmHit>& snare) {
    std::vector<double> distances;
    for (std::size_t i = 1; i < snare.size(); ++i) distances.push_back(snare[i].time - snare[i - 1].time);
    constexpr double kAlike = 0.025;
    double best = 0;
    std::ptrdiff_t most = std::max<std::ptrdiff_t>(3, static_cast<std::ptrdiff_t>(distances.size()) / 2);
    for (const double distance : distances) {
        const auto alike = std::ranges::count_if(
            distances, [&](double other) { return std::abs(other - distance) < kAlike * distance; });
        if (alike <= most) continue;
        most = alike;
        best = distance;
    }
    return best;
}

// Which of the tempos that go into each other is the beat: the one that a snare on each second beat tells; else the
// fastest whose pulses are alike.
double MetreOf(const CLikeness& likeness, const Onsets& onsets, const RhythmHits& hits, double found) {
    const auto periodOf = [&](double tempo) { return 60.0 / tempo / onsets.hop; };
    const double distance = SnareDistance(hits.snare);
    for (const double beats : {2.0, 1.0, 4.0}) {
        const double tempo = distance > 0 ? 60.0 * beats / distance : 0.0;
        if (tempo < kLowestTempo || tempo > kHighestTempo) continue;
        if (ScoreOf(likeness, periodOf(tempo)) > 0.5 * ScoreOf(likeness, periodOf(found))) return tempo;
    }
    double best = found;
    while (best / 2 >= kLowestTempo) best /= 2;
    for (double faster = 2 * best; faster <= kHighestTempo; faster *= 2) {
        const double period = Refined(likeness, periodOf(faster));
        const double phase = PhaseOf(hits, period * onsets.hop) / onsets.hop;
        if (Evenness(onsets.body, period, phase) < 0.5) break;
        best = faster;
    }
    return best;
}

// As if every beat were as long as the mean.
RhythmHits Even(RhythmHits hits, const CBeatTrack& track) {
    for (auto* const some : {&hits.all, &hits.low, &hits.snare}) {
        for (RhythmHit& hit : *some) hit.time = track.ToEven(hit.time);
    }
    return hits;
}

}  // namespace

RhythmTempo FindTempo(std::span<const float> mono, int sampleRate, const std::function<bool()>& goOn) {
    RhythmTempo found;
    const Onsets onsets = COnsetFinder(mono, sampleRate).Run(goOn);
    if (onsets.all.size() < static_cast<std::size_t>(3.0 / kHopSeconds)) return found;
    const Series body = Peaks(onsets.body, onsets.hop);
    Series mixed = Peaks(onsets.all, onsets.hop);
    for (std::size_t i = 0; i < mixed.size(); ++i) mixed[i] += body[i];
    const CLikeness likeness(mixed,
                             static_cast<std::size_t>(kLongestRefinement * 60.0 / kLowestTempo / onsets.hop) + 16);
    const auto periodOf = [&](double tempo) { return 60.0 / tempo / onsets.hop; };
    for (double tempo = kLowestTempo / 2; tempo <= 2 * kHighestTempo; tempo += 1) {
        found.strengths.push_back(static_cast<float>(std::clamp(ScoreOf(likeness, periodOf(tempo)), 0.0, 1.0)));
    }
    double best = 0;
    double most = 0;
    double sum = 0;
    int count = 0;
    for (double tempo = kLowestTempo; tempo <= kHighestTempo; tempo *= 1.002, ++count) {
        const double score = ScoreOf(likeness, periodOf(tempo));
        sum += score;
        if (score * Preference(tempo) <= most) continue;
        most = score * Preference(tempo);
        best = tempo;
    }
    if (most <= 0 || (goOn && !goOn())) return found;
    const RhythmHits hits = FindHits(mono, sampleRate);
    const double tempo = MetreOf(likeness, onsets, hits, best);
    const double seconds = static_cast<double>(mono.size()) / sampleRate;
    const double period = Sharpened(hits.all, Refined(likeness, periodOf(tempo)) * onsets.hop, seconds);
    const CBeatTrack track(hits, period, seconds);
    found.tempo = 60.0 / (track.Wanders() ? track.MeanPeriod() : period);
    found.downbeat =
        track.Wanders() ? track.FromEven(DownbeatOf(Even(hits, track), track.MeanPeriod())) : DownbeatOf(hits, period);
    const double mean = sum / std::max(1, count);
    const double score = ScoreOf(likeness, period / onsets.hop);
    found.sureness = std::clamp((score - mean) / std::max(0.6 * score, 1e-9), 0.0, 1.0);
    found.steadiness = SteadinessOf(hits.all, found.downbeat, period / 4);
    return found;
}

double FindDownbeat(std::span<const float> mono, int sampleRate, double tempo) {
    return tempo > 0 ? DownbeatOf(FindHits(mono, sampleRate), 60.0 / tempo) : 0.0;
}

}  // namespace quib
