// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A built-in effect as the tests see it: a loaded plug-in that is given sound, with a host that tells
// the tempo.

#include "plugins/CLoadedPlugin.h"

namespace quibtest {

// At which effects are tested; another one than instruments are.
constexpr double kEffectRate = 48000.0;
constexpr long kEffectSecond = 48000;

struct StereoSignal {
    std::vector<float> left;
    std::vector<float> right;

    explicit StereoSignal(long frames = 0)
        : left(static_cast<std::size_t>(frames)), right(static_cast<std::size_t>(frames)) {}
    long Frames() const { return static_cast<long>(left.size()); }
    void Append(const StereoSignal& more);
    bool operator==(const StereoSignal&) const = default;
};

class CLoadedEffect : public CLoadedPlugin {
public:
    explicit CLoadedEffect(const std::string& name, float sampleRate = kEffectRate)
        : CLoadedPlugin(name, sampleRate, "PluginEffects") {}

    // What the host answers from now on; 0 is a host that knows no time at all.
    void SetTempo(double beatsPerMinute);

    // Processes `input` in blocks of the given sizes, used in turn; `between` is called before each
    // block with the frame it begins at.
    StereoSignal Run(const StereoSignal& input, const std::vector<int>& blocks = {256},
                     const std::function<void(long)>& between = {});
    // Processes `frames` of `signal` from `begin` on in one block, over itself.
    void RunInPlace(StereoSignal& signal, long begin, int frames);

private:
    vst2::VstTimeInfo m_time{};
};

StereoSignal Impulse(long frames, float left = 1.0f, float right = 1.0f);
StereoSignal SineTone(long frames, double hertz, double sampleRate, float amplitude);
StereoSignal Noise(long frames, float amplitude, unsigned seed = 1);

double Rms(const std::vector<float>& samples, long begin, long end);
bool AllFinite(const StereoSignal& signal);

}  // namespace quibtest
