// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugins/CLoadedEffect.h"

namespace quibtest {

void StereoSignal::Append(const StereoSignal& more) {
    left.insert(left.end(), more.left.begin(), more.left.end());
    right.insert(right.end(), more.right.begin(), more.right.end());
}

void CLoadedEffect::SetTempo(double beatsPerMinute) {
    m_time.tempo = beatsPerMinute;
    m_time.flags = vst2::kVstTempoValid;
    SetTime(beatsPerMinute > 0.0 ? &m_time : nullptr);
}

StereoSignal CLoadedEffect::Run(const StereoSignal& input, const std::vector<int>& blocks,
                                const std::function<void(long)>& between) {
    Channels played = Process({input.left, input.right}, {}, blocks, between);
    StereoSignal output;
    output.left = std::move(played[0]);
    output.right = std::move(played[1]);
    return output;
}

void CLoadedEffect::RunInPlace(StereoSignal& signal, long begin, int frames) {
    float* both[] = {signal.left.data() + begin, signal.right.data() + begin};
    Effect().processReplacing(&Effect(), both, both, frames);
}

StereoSignal Impulse(long frames, float left, float right) {
    StereoSignal signal(frames);
    signal.left[0] = left;
    signal.right[0] = right;
    return signal;
}

StereoSignal SineTone(long frames, double hertz, double sampleRate, float amplitude) {
    StereoSignal signal(frames);
    for (std::size_t i = 0; i < signal.left.size(); ++i) {
        const double turns = hertz * static_cast<double>(i) / sampleRate;
        signal.left[i] = signal.right[i] = amplitude * static_cast<float>(std::sin(2.0 * std::numbers::pi * turns));
    }
    return signal;
}

StereoSignal Noise(long frames, float amplitude, unsigned seed) {
    StereoSignal signal(frames);
    std::minstd_rand random(seed);
    std::uniform_real_distribution<float> range(-amplitude, amplitude);
    for (float& sample : signal.left) sample = range(random);
    for (float& sample : signal.right) sample = range(random);
    return signal;
}

double Rms(const std::vector<float>& samples, long begin, long end) {
    double sum = 0.0;
    for (long i = begin; i < end; ++i) {
        const auto sample = static_cast<double>(samples[static_cast<std::size_t>(i)]);
        sum += sample * sample;
    }
    return std::sqrt(sum / static_cast<double>(end - begin));
}

bool AllFinite(const StereoSignal& signal) { return AllFinite(Channels{signal.left, signal.right}); }

}  // namespace quibtest
