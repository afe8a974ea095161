// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A built-in effect as the tests see it: its library loaded with a host that tells the tempo, and
// driven through the VST 2 interface alone.

#include <functional>
#include <string>
#include <vector>

#include "Vst2.h"

namespace quibtest {

struct StereoSignal {
    std::vector<float> left;
    std::vector<float> right;

    explicit StereoSignal(long frames = 0)
        : left(static_cast<std::size_t>(frames)), right(static_cast<std::size_t>(frames)) {}
    long Frames() const { return static_cast<long>(left.size()); }
    bool operator==(const StereoSignal&) const = default;
};

class CEffectRunner {
public:
    // `name` without folder and extension; opened, set to its first program and resumed.
    explicit CEffectRunner(const std::string& name, float sampleRate = 48000.0f);
    ~CEffectRunner();
    CEffectRunner(const CEffectRunner&) = delete;
    CEffectRunner& operator=(const CEffectRunner&) = delete;

    // What the host answers from now on; 0 is a host that knows no time at all.
    void SetTempo(double beatsPerMinute);

    vst2::AEffect& Effect() { return *m_effect; }
    std::intptr_t Call(int opcode, int index = 0, std::intptr_t value = 0, void* pointer = nullptr, float option = 0);
    std::string Text(int opcode, int index = 0);
    // Sets a parameter by its name to what its display shows, such as "-6" or "1/8 D".
    void Set(const std::string& parameter, const std::string& shown);
    void Resume(float sampleRate);

    // Processes `input` in blocks of the given sizes, used in turn; `between` is called before each
    // block with the frame it begins at.
    StereoSignal Run(const StereoSignal& input, const std::vector<int>& blocks = {256},
                     const std::function<void(long)>& between = {});

    // Processes `frames` of `signal` from `begin` on in one block, over itself.
    void RunInPlace(StereoSignal& signal, long begin, int frames);

    std::vector<char> Chunk(bool bank = true);
    std::intptr_t SetChunk(std::vector<char> chunk, bool bank = true);

private:
    vst2::AEffect* m_effect = nullptr;
    vst2::VstTimeInfo m_time{};
};

StereoSignal Impulse(long frames, float left = 1.0f, float right = 1.0f);
StereoSignal SineTone(long frames, double hertz, double sampleRate, float amplitude);
StereoSignal Noise(long frames, float amplitude, unsigned seed = 1);

float Peak(const std::vector<float>& samples, long begin = 0, long end = -1);
double Rms(const std::vector<float>& samples, long begin, long end);
bool Finite(const StereoSignal& signal);
// The largest step from one sample to the next.
float LargestJump(const std::vector<float>& samples, long begin, long end);
// Amplitude of a sine of `hertz` within the samples (Hann window).
double Amplitude(const std::vector<float>& samples, double hertz, double sampleRate, long begin, long end);

}  // namespace quibtest
