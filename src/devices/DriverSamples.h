// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Float samples to every sample type that drivers ask for, in both byte orders. Render thread: takes no
// memory. There is no clamping, and what is out of range wraps: the master bus stays within 0.99.

#include <cstddef>
#include <cstdint>

namespace quib {

enum class ESampleType : std::uint8_t {
    kInt16,      // round(x * 32767.505859375 - 0.5)
    kInt24,      // round(x * 8388608 - 0.5), three bytes
    kInt32,      // v = round(x * 8388608 - 0.5), shifted left by 8
    kInt32Of16,  // v shifted right by 8: sixteen significant bits in four bytes
    kInt32Of18,  // v shifted right by 6
    kInt32Of20,  // v shifted right by 4
    kInt32Of24,  // v as it is
    kFloat32,
    kFloat64,
};

enum class EByteOrder : std::uint8_t { kLittle, kBig };

// Bytes of one sample.
std::size_t BytesOf(ESampleType type) noexcept;

// Converts `count` samples of one channel into `to`, which need not be aligned. Ties round to even; what
// is not a number becomes 0. Expects the processor's default rounding.
void ToDriverSamples(const float* from, void* to, std::size_t count, ESampleType type, EByteOrder order) noexcept;

}  // namespace quib
