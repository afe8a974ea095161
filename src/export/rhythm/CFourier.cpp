// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/rhythm/CFourier.h"

#include <cmath>
#include <numbers>

namespace quib {

namespace {

struct Part {
    float* real;
    float* imaginary;
};

// Two transforms of `half` points become one of twice as many.
void Join(Part left, Part right, const float* __restrict turnReal, const float* __restrict turnImaginary,
          std::size_t half) noexcept {
    float* __restrict const leftReal = left.real;
    float* __restrict const leftImaginary = left.imaginary;
    float* __restrict const rightReal = right.real;
    float* __restrict const rightImaginary = right.imaginary;
    for (std::size_t i = 0; i < half; ++i) {
        const float turnedReal = rightReal[i] * turnReal[i] - rightImaginary[i] * turnImaginary[i];
        const float turnedImaginary = rightReal[i] * turnImaginary[i] + rightImaginary[i] * turnReal[i];
        rightReal[i] = leftReal[i] - turnedReal;
        rightImaginary[i] = leftImaginary[i] - turnedImaginary;
        leftReal[i] += turnedReal;
        leftImaginary[i] += turnedImaginary;
    }
}

}  // namespace

CFourier::CFourier(std::size_t points) : size(points), places(points), real(points), imaginary(points) {
    for (std::size_t half = 1; half < size; half *= 2) {
        for (std::size_t i = 0; i < half; ++i) {
            const double angle = -std::numbers::pi * static_cast<double>(i) / static_cast<double>(half);
            turnsReal.push_back(static_cast<float>(std::cos(angle)));
            turnsImaginary.push_back(static_cast<float>(std::sin(angle)));
        }
    }
    for (std::size_t i = 1; i < size; ++i) {
        places[i] = places[i / 2] / 2 + (i % 2 != 0 ? static_cast<std::uint32_t>(size / 2) : 0U);
    }
}

void CFourier::Transform(std::complex<float>* values) noexcept {
    for (std::size_t i = 0; i < size; ++i) {
        real[i] = values[places[i]].real();
        imaginary[i] = values[places[i]].imag();
    }
    for (std::size_t half = 1; half < size; half *= 2) {
        for (std::size_t first = 0; first < size; first += 2 * half) {
            Join({&real[first], &imaginary[first]}, {&real[first + half], &imaginary[first + half]},
                 &turnsReal[half - 1], &turnsImaginary[half - 1], half);
        }
    }
    for (std::size_t i = 0; i < size; ++i) values[i] = {real[i], imaginary[i]};
}

}  // namespace quib
