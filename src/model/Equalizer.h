// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Filter design of the three-band equaliser: controls to units, units to coefficients, coefficients to
// a response curve. Computed on the UI thread (and by windows that draw the curve); the render thread
// only copies finished coefficients. Never touches filter memories.
// Source: R. Bristow-Johnson, "Cookbook formulae for audio equalizer biquad filter coefficients".

namespace quib {

constexpr int kEqBandCount = 3;

enum class EqFilter { lowShelf, peaking, highShelf, bandPass, lowPass };

// Coefficients of band 0..2, normalised by a0:
//   y[n] = b0 x[n] + b1 x[n-1] + b2 x[n-2] - a1 y[n-1] - a2 y[n-2]
struct EqBandUpdate {
    int band = 0;
    float a1 = 0, a2 = 0, b0 = 1, b1 = 0, b2 = 0;
};

// Band 0 is the low shelf, band 1 the peak, band 2 the high shelf.
EqFilter EqFilterOfBand(int band) noexcept;

// 20 * 800^control: 20 Hz at 0, 16 kHz at 1.
double EqFrequencyHertz(float control) noexcept;

// 0.2 at control 0, up to 5 (band 1) or 1.4 (bands 0 and 2) at control 1.
double EqQuality(int band, float control) noexcept;

// 20 dB per unit of the gain control.
double EqGainDecibels(float control) noexcept;

// One filter in real units. The frequency is held at or below 0.49 of the sample rate: the poles of a
// design at or above half the sample rate leave the unit circle, and 16 kHz is above it at 22050 Hz.
EqBandUpdate DesignEqFilter(EqFilter filter, double hertz, double quality, double gainDecibels, double sampleRate);

// The filter of a band from its three controls.
EqBandUpdate DesignEqBand(int band, float frequency, float quality, float gain, double sampleRate);

// Gain in decibels of a filter for a steady tone; -200 at the least.
double EqResponseDecibels(const EqBandUpdate& filter, double hertz, double sampleRate);

}  // namespace quib
