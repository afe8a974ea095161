// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Fourier transform of a power of two of complex numbers, in place: X[k] = sum x[n] exp(-2 pi i k n / N), without a
// factor. One thread at a time.

#include <complex>
#include <cstdint>
#include <vector>

namespace quib {

class CFourier {
public:
    // `size`: a power of two, at least 2.
    explicit CFourier(std::size_t size);

    std::size_t Size() const noexcept { return size; }
    void Transform(std::complex<float>* values) noexcept;

private:
    std::size_t size;
    // Of every stage one behind the other: half a circle in 1, 2, 4 ... steps.
    std::vector<float> turnsReal, turnsImaginary;
    std::vector<std::uint32_t> places;  // with their bits reversed
    // What is worked on: apart, so that several go through one instruction.
    std::vector<float> real, imaginary;
};

}  // namespace quib
