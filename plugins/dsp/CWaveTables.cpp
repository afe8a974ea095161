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

using Complex = std::complex<double>;

constexpr std::size_t kLongest = 8192;

std::vector<Complex> RootsOfUnity() {
    std::vector<Complex> roots(kLongest / 2);
    for (std::size_t k = 0; k < roots.size(); ++k) {
        roots[k] = std::polar(1.0, 2.0 * std::numbers::pi * static_cast<double>(k) / kLongest);
    }
    return roots;
}

// In-place inverse Fourier transform without scaling; the length is a power of two up to kLongest.
void InverseTransform(std::vector<Complex>& data, const std::vector<Complex>& roots) {
    const std::size_t length = data.size();
    for (std::size_t i = 1, j = 0; i < length; ++i) {
        std::size_t bit = length >> 1;
        for (; j & bit; bit >>= 1) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(data[i], data[j]);
    }
    for (std::size_t half = 1; half < length; half *= 2) {
        const std::size_t stride = kLongest / (2 * half);
        for (std::size_t start = 0; start < length; start += 2 * half) {
            for (std::size_t k = 0; k < half; ++k) {
                const Complex root = roots[k * stride];
                const Complex value = data[start + k + half];
                const Complex turned(value.real() * root.real() - value.imag() * root.imag(),
                                     value.real() * root.imag() + value.imag() * root.real());
                data[start + k + half] = data[start + k] - turned;
                data[start + k] += turned;
            }
        }
    }
}

// Sixteen points per period of the highest partial keep the images of the linear interpolation
// some 90 dB down.
std::size_t LengthFor(unsigned partials) {
    return std::clamp<std::size_t>(std::bit_ceil(partials * 16u), 2048, kLongest);
}

unsigned ShiftFor(std::size_t length) { return static_cast<unsigned>(32 - std::countr_zero(length)); }

}  // namespace

const CWaveTables& CWaveTables::Shared() {
    static const CWaveTables tables;
    return tables;
}

CWaveTables::CWaveTables() {
    const std::vector<Complex> roots = RootsOfUnity();
    for (std::size_t level = 0; level < kLevels; ++level) {
        const double exact = kMostPartials * std::exp2(-static_cast<double>(level) / 3.0);
        MakeLevel(level, static_cast<unsigned>(exact + 1e-9), roots);
    }
    std::vector<float> sine((1u << kSineBits) + 1);
    for (std::size_t i = 0; i < sine.size(); ++i) {
        sine[i] = static_cast<float>(std::sin(2.0 * std::numbers::pi * static_cast<double>(i) / (1u << kSineBits)));
    }
    m_storage.push_back(std::move(sine));
    m_sine = {m_storage.back().data(), 32 - kSineBits};
}

// Saw: 2/pi sum of sin(n x)/n. Triangle: 8/pi^2 sum over odd n of cos(n x)/n^2. Both come out of one
// transform: the saw as its real part, the triangle as its imaginary part.
void CWaveTables::MakeLevel(std::size_t level, unsigned partials, const std::vector<Complex>& roots) {
    const std::size_t length = LengthFor(partials);
    std::vector<Complex> spectrum(length);
    for (unsigned n = 1; n <= partials; ++n) {
        const Complex saw(0.0, -1.0 / (std::numbers::pi * n));
        const double odd = n % 2 == 1 ? 4.0 / (std::numbers::pi * std::numbers::pi * n * n) : 0.0;
        spectrum[n] = saw + Complex(0.0, odd);
        spectrum[length - n] = -saw + Complex(0.0, odd);
    }
    InverseTransform(spectrum, roots);
    std::vector<float> saw(length + 1);
    std::vector<float> triangle(length + 1);
    for (std::size_t i = 0; i <= length; ++i) {
        saw[i] = static_cast<float>(spectrum[i % length].real());
        triangle[i] = static_cast<float>(spectrum[i % length].imag());
    }
    m_storage.push_back(std::move(saw));
    m_saws[level] = {m_storage.back().data(), ShiftFor(length)};
    m_storage.push_back(std::move(triangle));
    m_triangles[level] = {m_storage.back().data(), ShiftFor(length)};
    m_maximumIncrements[level] = 0x80000000u / partials;
}

std::uint32_t CWaveTables::Increment(float hertz, float sampleRate) noexcept {
    const double share = std::clamp(static_cast<double>(hertz) / static_cast<double>(sampleRate), 0.0, 0.49);
    return static_cast<std::uint32_t>(share * 4294967296.0 + 0.5);
}

std::size_t CWaveTables::LevelFor(std::uint32_t increment) const noexcept {
    // 1024 partials fit below an increment of 2^21; each further bit is an octave of three levels.
    const int octaves = std::max(0, static_cast<int>(std::bit_width(increment)) - 22);
    std::size_t level = std::min<std::size_t>(static_cast<std::size_t>(octaves) * 3, kLevels - 1);
    while (level + 1 < kLevels && increment > m_maximumIncrements[level]) ++level;
    return level;
}

}  // namespace quibplug
