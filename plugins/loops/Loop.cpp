// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/Loop.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

namespace quibplug {

namespace {

constexpr double kHopSeconds = 0.005;
constexpr double kLeastSliceSeconds = 0.05;
constexpr float kRise = 2.5f;      // of the energy, over the louder of the two hops before
constexpr float kAudible = 1e-4f;  // of the loudest hop

// A tempo told by the name: the number before "bpm", or 0.
double TempoOf(const std::string& name) {
    std::string small = name;
    std::transform(small.begin(), small.end(), small.begin(), [](unsigned char c) { return std::tolower(c); });
    const std::size_t unit = small.rfind("bpm");
    if (unit == std::string::npos) return 0.0;
    std::size_t begin = unit;
    while (begin > 0 && (std::isdigit(static_cast<unsigned char>(small[begin - 1])) != 0 || small[begin - 1] == '.')) {
        --begin;
    }
    return std::strtod(small.substr(begin, unit - begin).c_str(), nullptr);
}

}  // namespace

int KeyOf(const std::string& name) {
    if (name.empty() || std::isdigit(static_cast<unsigned char>(name[0])) == 0) return -1;
    const long key = std::strtol(name.c_str(), nullptr, 10);
    return key < 128 ? static_cast<int>(key) : -1;
}

double BeatsOf(const std::string& name, double seconds) {
    const double told = TempoOf(name);
    if (told >= 20.0 && told <= 400.0) return std::max(1.0, std::round(seconds * told / 60.0));
    double beats = 1.0;
    while (60.0 * beats / seconds < 84.0) beats *= 2.0;
    return beats;
}

void Loop::SetAudio(const std::vector<float>& audio, int channels) {
    const auto width = static_cast<std::size_t>(channels);
    frames = static_cast<int>(audio.size() / width);
    const auto fill = [&](std::vector<float>& side, std::size_t channel) {
        const auto length = static_cast<std::size_t>(frames);
        side.resize(length + 2 * kGuard);
        for (std::size_t i = 0; i < side.size(); ++i) {
            side[i] = audio[(i + length * kGuard - kGuard) % length * width + channel];
        }
    };
    fill(left, 0);
    fill(right, width - 1);
}

void Loop::FindSlices() {
    const int hop = std::max(1, static_cast<int>(kHopSeconds * sampleRate));
    std::vector<float> energies;
    for (int begin = 0; begin + hop <= frames; begin += hop) {
        float energy = 0.0f;
        for (int i = begin; i < begin + hop; ++i) {
            const auto at = IndexOf(i);
            const float middle = left[at] + right[at];
            const float before = left[at - 1] + right[at - 1];
            // Highs count more: strokes begin with them.
            energy += 0.1f * middle * middle + (middle - before) * (middle - before);
        }
        energies.push_back(energy);
    }
    slices.assign(1, 0);
    if (energies.size() < 3) return;
    const float floor = kAudible * *std::max_element(energies.begin(), energies.end());
    strikesFirst = energies[0] + energies[1] > kRise * (energies[energies.size() - 1] + energies[energies.size() - 2]);
    const auto least = static_cast<int>(kLeastSliceSeconds * sampleRate);
    for (std::size_t i = 2; i < energies.size(); ++i) {
        const float before = std::max(energies[i - 1], energies[i - 2]);
        const int begin = (static_cast<int>(i) - 1) * hop + hop / 2;  // a little before the rise
        if (energies[i] > floor && energies[i] > kRise * before && begin - slices.back() >= least) {
            slices.push_back(begin);
        }
    }
}

}  // namespace quibplug
