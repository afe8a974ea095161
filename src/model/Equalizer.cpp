// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Equalizer.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace quib {

namespace {

constexpr double kHighestPartOfSampleRate = 0.49;
constexpr double kLowestResponse = 1e-10;

struct Biquad {
    double b0, b1, b2, a0, a1, a2;
};

// The two shelves mirror each other: the high shelf is the low shelf with the cosine's sign turned, and
// with it the sign of the two odd coefficients.
Biquad Shelf(double amplitude, double cosine, double alpha, double side) noexcept {
    const double c = side * cosine;
    const double more = amplitude + 1;
    const double less = amplitude - 1;
    const double slope = 2 * std::sqrt(amplitude) * alpha;
    return {amplitude * (more - less * c + slope), side * 2 * amplitude * (less - more * c),
            amplitude * (more - less * c - slope), more + less * c + slope,
            side * -2 * (less + more * c),         more + less * c - slope};
}

Biquad Peak(double amplitude, double cosine, double alpha) noexcept {
    return {1 + alpha * amplitude, -2 * cosine, 1 - alpha * amplitude,
            1 + alpha / amplitude, -2 * cosine, 1 - alpha / amplitude};
}

Biquad Design(EqFilter filter, double angle, double quality, double amplitude) noexcept {
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    const double alpha = sine / (2 * quality);
    switch (filter) {
        case EqFilter::lowShelf:
            return Shelf(amplitude, cosine, alpha, 1);
        case EqFilter::peaking:
            return Peak(amplitude, cosine, alpha);
        case EqFilter::highShelf:
            return Shelf(amplitude, cosine, alpha, -1);
        case EqFilter::bandPass:
            return {sine / 2, 0, -sine / 2, 1 + alpha, -2 * cosine, 1 - alpha};
        case EqFilter::lowPass:
            break;
    }
    return {(1 - cosine) / 2, 1 - cosine, (1 - cosine) / 2, 1 + alpha, -2 * cosine, 1 - alpha};
}

}  // namespace

EqFilter EqFilterOfBand(int band) noexcept {
    if (band == 0) return EqFilter::lowShelf;
    return band == 1 ? EqFilter::peaking : EqFilter::highShelf;
}

double EqFrequencyHertz(float control) noexcept { return 20 * std::pow(800.0, static_cast<double>(control)); }

double EqQuality(int band, float control) noexcept {
    return 0.2 * std::pow(band == 1 ? 25.0 : 7.0, static_cast<double>(control));
}

double EqGainDecibels(float control) noexcept { return 20.0 * static_cast<double>(control); }

EqBandUpdate DesignEqFilter(EqFilter filter, double hertz, double quality, double gainDecibels, double sampleRate) {
    const double frequency = std::min(hertz, kHighestPartOfSampleRate * sampleRate);
    const double amplitude = std::pow(10.0, gainDecibels / 40);
    const Biquad biquad = Design(filter, 2 * std::numbers::pi * frequency / sampleRate, quality, amplitude);
    const auto normal = [&biquad](double value) { return static_cast<float>(value / biquad.a0); };
    return {0, normal(biquad.a1), normal(biquad.a2), normal(biquad.b0), normal(biquad.b1), normal(biquad.b2)};
}

EqBandUpdate DesignEqBand(int band, float frequency, float quality, float gain, double sampleRate) {
    EqBandUpdate update = DesignEqFilter(EqFilterOfBand(band), EqFrequencyHertz(frequency), EqQuality(band, quality),
                                         EqGainDecibels(gain), sampleRate);
    update.band = band;
    return update;
}

double EqResponseDecibels(const EqBandUpdate& filter, double hertz, double sampleRate) {
    const std::complex<double> delay = std::polar(1.0, -2 * std::numbers::pi * hertz / sampleRate);
    const std::complex<double> zeros =
        static_cast<double>(filter.b0) +
        delay * (static_cast<double>(filter.b1) + delay * static_cast<double>(filter.b2));
    const std::complex<double> poles =
        1.0 + delay * (static_cast<double>(filter.a1) + delay * static_cast<double>(filter.a2));
    return 20 * std::log10(std::max(std::abs(zeros / poles), kLowestResponse));
}

}  // namespace quib
