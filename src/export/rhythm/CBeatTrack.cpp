// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/rhythm/CBeatTrack.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace quib {

namespace {

constexpr double kBeginBeats = 16;    // that the first period is found on
constexpr double kMostChange = 0.03;  // of the period at the begin from the mean
constexpr double kChangeStep = 0.0005;
constexpr double kCatch = 0.1;        // of a beat: how far from where it is expected
constexpr double kFollowPlace = 0.3;  // of what a beat is off
constexpr double kFollowPeriod = 0.05;
constexpr double kSmoothing = 8;     // beats to each side
constexpr double kEven = 0.008;      // seconds that beats of an even tempo are off
constexpr double kEvenShare = 0.75;  // of the beats of an even tempo, that are no further off
constexpr double kEnoughSeen = 0.6;  // of the beats
constexpr std::size_t kFewest = 24;  // beats

// Those of the first beats.
RhythmHits FirstOf(RhythmHits hits, double period) {
    const double end = hits.all.front().time + kBeginBeats * period;
    for (auto* const some : {&hits.all, &hits.low, &hits.snare}) {
        std::erase_if(*some, [&](const RhythmHit& hit) { return hit.time > end; });
    }
    return hits;
}

}  // namespace

CBeatTrack::CBeatTrack(const RhythmHits& hits, double period, double seconds) {
    if (hits.all.empty() || period <= 0) return;
    Follow(hits, period, seconds);
    Judge(period);
}

void CBeatTrack::Follow(const RhythmHits& hits, double period, double seconds) {
    const RhythmHits first = FirstOf(hits, period);
    period = BestNear(first.all, period, kMostChange, kChangeStep);
    double expected = PhaseOf(first, period);
    auto hit = hits.all.begin();
    for (int beat = 0; expected < seconds; ++beat) {
        const double reach = kCatch * period;
        double off = 0;
        double weights = 0;
        while (hit != hits.all.end() && hit->time < expected - reach) ++hit;
        for (; hit != hits.all.end() && hit->time <= expected + reach; ++hit) {
            off += static_cast<double>(hit->strength) * (hit->time - expected);
            weights += static_cast<double>(hit->strength);
        }
        if (weights > 0) {
            off /= weights;
            seen.push_back({static_cast<double>(beat), expected + off, weights});
        }
        beats.push_back(expected);
        period += kFollowPeriod * off;
        expected += period + kFollowPlace * off;
    }
    for (std::size_t beat = 0; beat < beats.size(); ++beat) beats[beat] = TimeOf(static_cast<double>(beat));
}

// By the line through what was seen near it.
double CBeatTrack::TimeOf(double beat) const {
    double weight = 0, place = 0, time = 0, square = 0, product = 0;
    for (const Seen& one : seen) {
        const double away = one.beat - beat;
        if (std::abs(away) > kSmoothing) continue;
        weight += one.weight;
        place += one.weight * away;
        time += one.weight * one.time;
        square += one.weight * away * away;
        product += one.weight * away * one.time;
    }
    const double spread = weight * square - place * place;
    if (weight <= 0 || spread <= 1e-9) return beats[static_cast<std::size_t>(beat)];
    return (time * square - place * product) / spread;
}

double CBeatTrack::MeanPeriod() const {
    return beats.size() > 1 ? (beats.back() - beats.front()) / static_cast<double>(beats.size() - 1) : 0.0;
}

// A song that slows down at its end is even still.
void CBeatTrack::Judge(double period) {
    if (beats.size() < kFewest || static_cast<double>(seen.size()) < kEnoughSeen * static_cast<double>(beats.size()))
        return;
    if (std::ranges::adjacent_find(beats, std::greater_equal<>()) != beats.end()) return;
    std::vector<double> off;
    for (std::size_t beat = 0; beat < beats.size(); ++beat) {
        off.push_back(beats[beat] - static_cast<double>(beat) * period);
    }
    const auto middle = off.begin() + static_cast<std::ptrdiff_t>(off.size() / 2);
    std::nth_element(off.begin(), middle, off.end());
    const auto even = std::ranges::count_if(off, [at = *middle](double one) { return std::abs(one - at) <= kEven; });
    wanders = static_cast<double>(even) < kEvenShare * static_cast<double>(off.size());
}

double CBeatTrack::ToEven(double time) const {
    const auto next = std::upper_bound(beats.begin() + 1, beats.end() - 1, time);
    const double length = *next - *(next - 1);
    const double beat = static_cast<double>(next - 1 - beats.begin()) + (time - *(next - 1)) / length;
    return beats.front() + beat * MeanPeriod();
}

double CBeatTrack::FromEven(double time) const {
    const double place = (time - beats.front()) / MeanPeriod();
    const double beat = std::clamp(std::floor(place), 0.0, static_cast<double>(beats.size() - 2));
    const auto index = static_cast<std::size_t>(beat);
    return beats[index] + (place - beat) * (beats[index + 1] - beats[index]);
}

}  // namespace quib
