// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CWaveTables.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace quibplug {

namespace {

constexpr unsigned kMostPartials = 1024;
constexpr unsigned kSineBits = 12;

constexpr std::size_t kLongest = 8192;

// Complex numbers as two rows, which the compiler turns into fast code.
struct ComplexRow {
    std::vector<double> real;
    std::vector<double> imaginary;
    explicit ComplexRow(std::size_t length) : real(length), imaginary(length) {}
};

// The factors of every stage of a transform, in a row: that of two halves of h points stands at h.
ComplexRow StageFactors() {
    ComplexRow factors(kLongest);
    for (std::size_t k = 0; k < kLongest / 2; ++k) {
        const double angle = 2.0 * std::numbers::pi * static_cast<double>(k) / kLongest;
        factors.real[kLongest / 2 + k] = std::cos(angle);
        factors.imaginary[kLongest / 2 + k] = std::sin(angle);
    }
    for (std::size_t i = kLongest / 2 - 1; i > 0; --i) {
        factors.real[i] = factors.real[2 * i];
        factors.imaginary[i] = factors.imaginary[2 * i];
    }
    return factors;
}

void ReverseBits(ComplexRow& row) {
    const std::size_t length = row.real.size();
    for (std::size_t i = 1, j = 0; i < length; ++i) {
        std::size_t bit = length >> 1;
        for (; j & bit; bit >>= 1) j ^= bit;
        j ^= bit;
        if (i >= j) continue;
        std::swap(row.real[i], row.real[j]);
        std::swap(row.imaginary[i], row.imaginary[j]);
    }
}

// In-place inverse Fourier transform without scaling; the length is a power of two up to kLongest.
void InverseTransform(ComplexRow& row) {
    static const ComplexRow factors = StageFactors();
    ReverseBits(row);
    const std::size_t length = row.real.size();
    for (std::size_t half = 1; half < length; half *= 2) {
        const double* factorReal = factors.real.data() + half;
        const double* factorImaginary = factors.imaginary.data() + half;
        for (std::size_t start = 0; start < length; start += 2 * half) {
            double* real = row.real.data() + start;
            double* imaginary = row.imaginary.data() + start;
            for (std::size_t k = 0; k < half; ++k) {
                const double turnedReal = real[half + k] * factorReal[k] - imaginary[half + k] * factorImaginary[k];
                const double turnedImaginary =
                    real[half + k] * factorImaginary[k] + imaginary[half + k] * factorReal[k];
                real[half + k] = real[k] - turnedReal;
                imaginary[half + k] = imaginary[k] - turnedImaginary;
                real[k] += turnedReal;
                imaginary[k] += turnedImaginary;
            }
        }
    }
}

// Sixteen points per period of the highest partial keep the images of the linear interpolation
// some 90 dB down.
std::size_t LengthFor(unsigned partials) {
    return std::clamp<std::size_t>(std::bit_ceil(partials * 16u), 2048, kLongest);
}

}  // namespace

const CWaveTables& CWaveTables::Shared() {
    static const CWaveTables tables;
    return tables;
}

CWaveTables::CWaveTables() {
    for (std::size_t level = 0; level < kLevels; ++level) {
        const double exact = kMostPartials * std::exp2(-static_cast<double>(level) / 3.0);
        MakeLevel(level, static_cast<unsigned>(exact + 1e-9));
    }
    std::vector<float> sine((1u << kSineBits) + 1);
    for (std::size_t i = 0; i < sine.size(); ++i) {
        sine[i] = static_cast<float>(std::sin(2.0 * std::numbers::pi * static_cast<double>(i) / (1u << kSineBits)));
    }
    m_sine = Keep(std::move(sine));
}

WaveTable CWaveTables::Keep(std::vector<float> values) {
    const std::size_t length = values.size() - 1;
    m_storage.push_back(std::move(values));
    return {m_storage.back().data(), static_cast<unsigned>(32 - std::countr_zero(length))};
}

// Saw: 2/pi sum of sin(n x)/n. Triangle: 8/pi^2 sum over odd n of cos(n x)/n^2. Both come out of one
// transform: the saw as its real part, the triangle as its imaginary part.
void CWaveTables::MakeLevel(std::size_t level, unsigned partials) {
    const std::size_t length = LengthFor(partials);
    ComplexRow row(length);
    for (unsigned n = 1; n <= partials; ++n) {
        const double saw = 1.0 / (std::numbers::pi * n);
        const double triangle = n % 2 == 1 ? 4.0 / (std::numbers::pi * std::numbers::pi * n * n) : 0.0;
        row.imaginary[n] = triangle - saw;
        row.imaginary[length - n] = triangle + saw;
    }
    InverseTransform(row);
    std::vector<float> saw(length + 1);
    std::vector<float> triangle(length + 1);
    for (std::size_t i = 0; i <= length; ++i) {
        saw[i] = static_cast<float>(row.real[i % length]);
        triangle[i] = static_cast<float>(row.imaginary[i % length]);
    }
    m_saws[level] = Keep(std::move(saw));
    m_triangles[level] = Keep(std::move(triangle));
    m_maximumIncrements[level] = 0x80000000u / partials;
}

std::uint32_t CWaveTables::Increment(float hertz, float sampleRate) noexcept {
    const double share = std::clamp(static_cast<double>(hertz) / static_cast<double>(sampleRate), 0.0, 0.49);
    return static_cast<std::uint32_t>(share * 4294967296.0);
}

std::size_t CWaveTables::LevelFor(std::uint32_t increment) const noexcept {
    // 1024 partials fit below an increment of 2^21; each further bit is an octave of three levels.
    const int octaves = std::max(0, static_cast<int>(std::bit_width(increment)) - 22);
    std::size_t level = std::min<std::size_t>(static_cast<std::size_t>(octaves) * 3, kLevels - 1);
    while (level + 1 < kLevels && increment > m_maximumIncrements[level]) ++level;
    return level;
}

}  // namespace quibplug
