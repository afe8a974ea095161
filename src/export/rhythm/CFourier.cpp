// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/rhythm/CFourier.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace quib {

CFourier::CFourier(std::size_t points) : size(points), turns(points / 2), places(points) {
    for (std::size_t i = 0; i < turns.size(); ++i) {
        const double angle = -2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(size);
        turns[i] = {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle))};
    }
    for (std::size_t i = 1; i < size; ++i) {
        places[i] = places[i / 2] / 2 + (i % 2 != 0 ? static_cast<std::uint32_t>(size / 2) : 0U);
    }
}

void CFourier::Transform(std::complex<float>* values) const noexcept {
    for (std::size_t i = 0; i < size; ++i) {
        if (places[i] > i) std::swap(values[i], values[places[i]]);
    }
    for (std::size_t half = 1; half < size; half *= 2) {
        const std::size_t stride = size / (2 * half);
        for (std::size_t first = 0; first < size; first += 2 * half) {
            for (std::size_t i = 0; i < half; ++i) {
                const std::complex<float> turn = turns[i * stride];
                const std::complex<float> right = values[first + half + i];
                // Written out: the library's product looks for infinities.
                const std::complex<float> turned{right.real() * turn.real() - right.imag() * turn.imag(),
                                                 right.real() * turn.imag() + right.imag() * turn.real()};
                values[first + half + i] = values[first + i] - turned;
                values[first + i] += turned;
            }
        }
    }
}

}  // namespace quib
