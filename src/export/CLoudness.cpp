// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/CLoudness.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace quib {

namespace {
// Meters differ by what they see between samples: their filters are not all the same.
constexpr double kPeakMargin = 0.1;  // dB
}  // namespace

struct CLoudness::Meter {
    explicit Meter(int sampleRate)
        : state(ebur128_init(2, static_cast<unsigned long>(sampleRate), EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK)) {
        if (state == nullptr) throw std::bad_alloc();
    }
    ~Meter() { ebur128_destroy(&state); }
    Meter(const Meter&) = delete;
    Meter& operator=(const Meter&) = delete;

    ebur128_state* state;
};

CLoudness::CLoudness(int sampleRate) : meter(std::make_unique<Meter>(sampleRate)) {}

CLoudness::~CLoudness() = default;

void CLoudness::Add(const float* left, const float* right, int frames) {
    const auto count = static_cast<std::size_t>(frames);
    interleaved.resize(2 * count);
    for (std::size_t i = 0; i < count; ++i) {
        interleaved[2 * i] = left[i];
        interleaved[2 * i + 1] = right[i];
    }
    if (ebur128_add_frames_float(meter->state, interleaved.data(), count) != EBUR128_SUCCESS) throw std::bad_alloc();
}

double CLoudness::Integrated() const {
    double loudness = 0;
    const bool known = ebur128_loudness_global(meter->state, &loudness) == EBUR128_SUCCESS;
    return known ? loudness : -std::numeric_limits<double>::infinity();
}

double CLoudness::TruePeak() const {
    double highest = 0;
    for (const unsigned channel : {0U, 1U}) {
        double peak = 0;
        if (ebur128_true_peak(meter->state, channel, &peak) == EBUR128_SUCCESS) highest = std::max(highest, peak);
    }
    return 20.0 * std::log10(highest);
}

double GainTowards(const LoudnessTarget& target, double loudness, double truePeak) {
    if (!std::isfinite(loudness) || !std::isfinite(truePeak)) return 0;
    return std::min(target.loudness - loudness, target.truePeak - kPeakMargin - truePeak);
}

}  // namespace quib
