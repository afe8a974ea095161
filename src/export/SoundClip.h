// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The sound of a file in memory, read through libsndfile: Wave, AIFF, FLAC, Ogg, Opus, MP3. Any thread but render
// threads.

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace quib {

constexpr double kLongestClip = 20.0 * 60.0;  // seconds

struct SoundClip {
    int sampleRate = 44100;
    int channels = 2;  // of the file
    std::vector<float> left;
    std::vector<float> right;  // the same as left for mono

    std::int64_t Frames() const noexcept { return static_cast<std::int64_t>(left.size()); }
    double Seconds() const noexcept { return static_cast<double>(left.size()) / sampleRate; }
};

// Told the share read so far, 0..1; false stops.
using ClipProgress = std::function<bool(double share)>;

// False with the reason in `error`, which is empty when it was stopped; `clip` grows meanwhile, and what is there
// can be read by nobody else before this returns.
bool ReadClip(const std::filesystem::path& path, SoundClip& clip, std::string& error,
              const ClipProgress& progress = {});

// Whether a name looks like a sound file that can be read.
bool IsSoundFile(const std::filesystem::path& path);

// Mean of both sides.
std::vector<float> MonoOf(const SoundClip& clip);

}  // namespace quib
