// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Loudness (ITU-R BS.1770, EBU R 128: integrated, gated) and true peak of stereo sound. One thread at a
// time, never a render thread.

#include <memory>
#include <vector>

#include "export/ExportSettings.h"

namespace quib {

class CLoudness {
public:
    // `sampleRate` in Hz.
    explicit CLoudness(int sampleRate);
    ~CLoudness();
    CLoudness(const CLoudness&) = delete;
    CLoudness& operator=(const CLoudness&) = delete;

    void Add(const float* left, const float* right, int frames);
    // LUFS; minus infinity for silence.
    double Integrated() const;
    // dBTP of the louder channel; minus infinity for silence.
    double TruePeak() const;

private:
    struct Meter;

    std::unique_ptr<Meter> meter;
    std::vector<float> interleaved;
};

// The gain, in dB, that brings a mix to its target without its true peak passing the ceiling; 0 for silence.
double GainTowards(const LoudnessTarget& target, double loudness, double truePeak);

}  // namespace quib
