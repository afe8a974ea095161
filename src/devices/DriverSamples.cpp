// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/DriverSamples.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little);

namespace quib {

namespace {

constexpr float kInt16Scale = 32767.505859375F;
constexpr float kInt24Scale = 8388608.0F;
constexpr float kLargest = 1073741824.0F;  // well inside the range of an int

// Samples converted at a time: small enough for the first-level cache, whole for every packing.
constexpr std::size_t kChunk = 256;
using Integers = std::array<std::uint32_t, kChunk>;

constexpr std::size_t kLanes = 4;
using Lanes = float __attribute__((vector_size(16)));
using LaneBits = std::int32_t __attribute__((vector_size(16)));

// round(x * scale - 0.5), ties to even. The distance from the whole part is exact.
LaneBits Round(Lanes x, float scale) noexcept {
    const Lanes number = x == x ? x * scale - 0.5F : Lanes{};
    const Lanes notBelow = number < -kLargest ? Lanes{} - kLargest : number;
    const Lanes value = notBelow > kLargest ? Lanes{} + kLargest : notBelow;
    const LaneBits whole = __builtin_convertvector(value, LaneBits);
    const Lanes rest = value - __builtin_convertvector(whole, Lanes);
    const LaneBits odd = (whole & 1) != 0;
    // Comparisons give -1 where they hold.
    const LaneBits up = (rest > 0.5F) | ((rest == 0.5F) & odd);
    const LaneBits down = (rest < -0.5F) | ((rest == -0.5F) & odd);
    return whole - up + down;
}

void RoundAll(const float* from, Integers& to, std::size_t count, float scale) noexcept {
    for (std::size_t i = 0; i < count; i += kLanes) {
        Lanes samples{};
        if (i + kLanes <= count) {
            std::memcpy(&samples, from + i, sizeof samples);
        } else {
            std::memcpy(&samples, from + i, (count - i) * sizeof(float));
        }
        const LaneBits rounded = Round(samples, scale);
        std::memcpy(&to[i], &rounded, sizeof rounded);
    }
}

std::uint16_t Swap(std::uint16_t value) noexcept { return __builtin_bswap16(value); }
std::uint32_t Swap(std::uint32_t value) noexcept { return __builtin_bswap32(value); }
std::uint64_t Swap(std::uint64_t value) noexcept { return __builtin_bswap64(value); }

// Writes words in the byte order wanted.
template <class Word, class Source>
void Store(const Source& make, unsigned char* to, std::size_t count, EByteOrder order) noexcept {
    std::array<Word, kChunk> words;
    for (std::size_t i = 0; i < count; ++i) words[i] = make(i);
    if (order == EByteOrder::kBig) {
        for (std::size_t i = 0; i < count; ++i) words[i] = Swap(words[i]);
    }
    std::memcpy(to, words.data(), count * sizeof(Word));
}

// Four samples of three bytes make three words.
void StoreThreeBytes(Integers& values, unsigned char* to, std::size_t count, EByteOrder order) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        values[i] = order == EByteOrder::kBig ? Swap(values[i]) >> 8 : values[i] & 0xffffffU;
    }
    std::array<std::uint32_t, kChunk / 4 * 3> words;
    for (std::size_t i = count; i < (count + 3) / 4 * 4; ++i) values[i] = 0;
    for (std::size_t i = 0, word = 0; i < count; i += 4, word += 3) {
        words[word] = values[i] | values[i + 1] << 24;
        words[word + 1] = values[i + 1] >> 8 | values[i + 2] << 16;
        words[word + 2] = values[i + 2] >> 16 | values[i + 3] << 8;
    }
    std::memcpy(to, words.data(), count * 3);
}

// Bits by which a 24-bit value is too wide for the type.
int ShiftDown(ESampleType type) noexcept {
    switch (type) {
        case ESampleType::kInt32Of16:
            return 8;
        case ESampleType::kInt32Of18:
            return 6;
        case ESampleType::kInt32Of20:
            return 4;
        default:
            return 0;
    }
}

void ConvertChunk(const float* from, unsigned char* to, std::size_t count, ESampleType type,
                  EByteOrder order) noexcept {
    Integers values;
    const int down = ShiftDown(type);
    switch (type) {
        case ESampleType::kInt16:
            RoundAll(from, values, count, kInt16Scale);
            return Store<std::uint16_t>([&](std::size_t i) { return static_cast<std::uint16_t>(values[i]); }, to, count,
                                        order);
        case ESampleType::kInt24:
            RoundAll(from, values, count, kInt24Scale);
            return StoreThreeBytes(values, to, count, order);
        case ESampleType::kFloat32:
            return Store<std::uint32_t>([&](std::size_t i) { return std::bit_cast<std::uint32_t>(from[i]); }, to, count,
                                        order);
        case ESampleType::kFloat64:
            return Store<std::uint64_t>(
                [&](std::size_t i) { return std::bit_cast<std::uint64_t>(static_cast<double>(from[i])); }, to, count,
                order);
        case ESampleType::kInt32:
            RoundAll(from, values, count, kInt24Scale);
            return Store<std::uint32_t>([&](std::size_t i) { return values[i] << 8; }, to, count, order);
        default:
            RoundAll(from, values, count, kInt24Scale);
            return Store<std::uint32_t>(
                [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<std::int32_t>(values[i]) >> down); },
                to, count, order);
    }
}

}  // namespace

std::size_t BytesOf(ESampleType type) noexcept {
    switch (type) {
        case ESampleType::kInt16:
            return 2;
        case ESampleType::kInt24:
            return 3;
        case ESampleType::kFloat64:
            return 8;
        default:
            return 4;
    }
}

void ToDriverSamples(const float* from, void* to, std::size_t count, ESampleType type, EByteOrder order) noexcept {
    auto* bytes = static_cast<unsigned char*>(to);
    if (type == ESampleType::kFloat32 && order == EByteOrder::kLittle) {
        std::memcpy(bytes, from, count * sizeof(float));
        return;
    }
    for (std::size_t done = 0; done < count; done += kChunk) {
        const std::size_t part = std::min(kChunk, count - done);
        ConvertChunk(from + done, bytes + done * BytesOf(type), part, type, order);
    }
}

}  // namespace quib
