// SPDX-License-Identifier: GPL-3.0-or-later
// Conversion of float samples to the sample types of drivers, beside a plain copy: bytes read a second.
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <vector>

#include "devices/DriverSamples.h"

namespace {

using namespace quib;

std::vector<float> Noise() {
    std::minstd_rand random(1);
    std::uniform_real_distribution<float> noise(-0.99F, 0.99F);
    std::vector<float> samples(2048);
    for (float& sample : samples) sample = noise(random);
    return samples;
}

void Copy(benchmark::State& state) {
    const std::vector<float> from = Noise();
    std::vector<float> to(from.size());
    for ([[maybe_unused]] auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size() * sizeof(float));
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(from.size() * sizeof(float)));
}
BENCHMARK(Copy);

void Convert(benchmark::State& state, ESampleType type, EByteOrder order) {
    const std::vector<float> from = Noise();
    std::vector<unsigned char> to(from.size() * BytesOf(type));
    for ([[maybe_unused]] auto _ : state) {
        ToDriverSamples(from.data(), to.data(), from.size(), type, order);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(from.size() * sizeof(float)));
}

#define CONVERSION(type)                                                      \
    BENCHMARK_CAPTURE(Convert, type, ESampleType::type, EByteOrder::kLittle); \
    BENCHMARK_CAPTURE(Convert, type##_swapped, ESampleType::type, EByteOrder::kBig)

CONVERSION(Int16);
CONVERSION(Int24);
CONVERSION(Int32);
CONVERSION(Int32Of16);
CONVERSION(Int32Of18);
CONVERSION(Int32Of20);
CONVERSION(Int32Of24);
CONVERSION(Float32);
CONVERSION(Float64);

}  // namespace

BENCHMARK_MAIN();
