// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Float samples to every sample type that drivers ask for, in both byte orders. Render thread: takes no
// memory. There is no clamping, and what is out of range wraps: the master bus stays within 0.99.

#include <cstddef>
#include <cstdint>

namespace quib {

enum class SampleType : std::uint8_t {
    Int16,      // round(x * 32767.505859375 - 0.5)
    Int24,      // round(x * 8388608 - 0.5), three bytes
    Int32,      // v = round(x * 8388608 - 0.5), shifted left by 8
    Int32Of16,  // v shifted right by 8: sixteen significant bits in four bytes
    Int32Of18,  // v shifted right by 6
    Int32Of20,  // v shifted right by 4
    Int32Of24,  // v as it is
    Float32,
    Float64,
};

enum class ByteOrder : std::uint8_t { Little, Big };

// Bytes of one sample.
std::size_t BytesOf(SampleType type) noexcept;

// Converts `count` samples of one channel into `to`, which need not be aligned. Ties round to even; what
// is not a number becomes 0. Expects the processor's default rounding.
void ToDriverSamples(const float* from, void* to, std::size_t count, SampleType type, ByteOrder order) noexcept;

}  // namespace quib
