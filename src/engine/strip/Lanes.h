// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Vectors of QUIB_STRIP_LANES floats for the strip kernels. Included by one source file per instruction
// set, which sets the number of lanes; all of it is local to that file, so that code for one set never
// stands in for another's, and it calls no inline function of any library for the same reason.

#ifndef QUIB_STRIP_LANES
#error "The including source file says how many lanes there are"
#endif

namespace quib {
namespace {

inline constexpr int kLanes = QUIB_STRIP_LANES;
using Lanes = float __attribute__((vector_size(kLanes * sizeof(float))));
using LaneBits = int __attribute__((vector_size(kLanes * sizeof(float))));

// The four sends of a strip.
using Quad = float __attribute__((vector_size(16)));
using QuadBits = int __attribute__((vector_size(16)));

inline Lanes Load(const float* from) noexcept {
    Lanes lanes;
    __builtin_memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

inline void Store(float* to, Lanes lanes) noexcept { __builtin_memcpy(to, &lanes, sizeof lanes); }

inline Lanes Spread(float value) noexcept { return value - Lanes{}; }

inline Lanes Absolute(Lanes lanes) noexcept {
    return reinterpret_cast<Lanes>(reinterpret_cast<LaneBits>(lanes) & 0x7fffffff);
}

// The second where the first is not a number.
inline Lanes Larger(Lanes a, Lanes b) noexcept { return a > b ? a : b; }
inline Lanes Smaller(Lanes a, Lanes b) noexcept { return a < b ? a : b; }

inline float LargestLane(Lanes lanes) noexcept {
    float largest = lanes[0];
    for (int i = 1; i < kLanes; ++i) largest = lanes[i] > largest ? lanes[i] : largest;
    return largest;
}

inline Lanes NumberOrZero(Lanes lanes) noexcept { return Absolute(lanes) <= __builtin_inff() ? lanes : Lanes{}; }
inline Lanes FiniteOrZero(Lanes lanes) noexcept { return Absolute(lanes) <= __FLT_MAX__ ? lanes : Lanes{}; }

// Rows become columns.
#if QUIB_STRIP_LANES == 4

inline void Transpose(Lanes (&rows)[4]) noexcept {
    const Lanes low01 = __builtin_shufflevector(rows[0], rows[1], 0, 4, 1, 5);
    const Lanes high01 = __builtin_shufflevector(rows[0], rows[1], 2, 6, 3, 7);
    const Lanes low23 = __builtin_shufflevector(rows[2], rows[3], 0, 4, 1, 5);
    const Lanes high23 = __builtin_shufflevector(rows[2], rows[3], 2, 6, 3, 7);
    rows[0] = __builtin_shufflevector(low01, low23, 0, 1, 4, 5);
    rows[1] = __builtin_shufflevector(low01, low23, 2, 3, 6, 7);
    rows[2] = __builtin_shufflevector(high01, high23, 0, 1, 4, 5);
    rows[3] = __builtin_shufflevector(high01, high23, 2, 3, 6, 7);
}

#else

inline void Transpose(Lanes (&rows)[8]) noexcept {
    Lanes pairs[8];
    for (int i = 0; i < 8; i += 2) {
        pairs[i] = __builtin_shufflevector(rows[i], rows[i + 1], 0, 8, 1, 9, 4, 12, 5, 13);
        pairs[i + 1] = __builtin_shufflevector(rows[i], rows[i + 1], 2, 10, 3, 11, 6, 14, 7, 15);
    }
    Lanes fours[8];
    for (int i = 0; i < 8; i += 4)
        for (int j = 0; j < 2; ++j) {
            const Lanes a = pairs[i + j];
            const Lanes b = pairs[i + j + 2];
            fours[i + 2 * j] = __builtin_shufflevector(a, b, 0, 1, 8, 9, 4, 5, 12, 13);
            fours[i + 2 * j + 1] = __builtin_shufflevector(a, b, 2, 3, 10, 11, 6, 7, 14, 15);
        }
    for (int i = 0; i < 4; ++i) {
        rows[i] = __builtin_shufflevector(fours[i], fours[i + 4], 0, 1, 2, 3, 8, 9, 10, 11);
        rows[i + 4] = __builtin_shufflevector(fours[i], fours[i + 4], 4, 5, 6, 7, 12, 13, 14, 15);
    }
}

#endif

}  // namespace
}  // namespace quib
