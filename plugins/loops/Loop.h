// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One loop as it is played: its sound, its tempo and where its strokes begin. Made on the host's
// threads, then only read, by any number of instances at once.

#include <cstddef>
#include <string>
#include <vector>

namespace quibplug {

struct Loop {
    static constexpr std::size_t kGuard = 16;  // frames before the first and after the last, from the other end

    std::string name;
    int key = 0;
    double beats = 4.0;
    int frames = 0;
    double sampleRate = 44100.0;  // of its file, or less
    std::vector<float> left;      // frames + 2 * kGuard
    std::vector<float> right;     // the same
    std::vector<int> slices;      // first frames, rising; the first one is 0
    bool strikesFirst = true;     // whether a stroke is at frame 0, or the sound goes on there

    // Where a frame stands in `left` and `right`: from -kGuard to frames + kGuard - 1.
    static std::size_t IndexOf(int frame) noexcept { return static_cast<std::size_t>(frame) + kGuard; }
    double FramesPerBeat() const noexcept { return static_cast<double>(frames) / beats; }
    double Tempo() const noexcept { return 60.0 * sampleRate / FramesPerBeat(); }
    int SliceEnd(std::size_t slice) const noexcept { return slice + 1 < slices.size() ? slices[slice + 1] : frames; }

    // `audio` is interleaved, 1 or 2 channels.
    void SetAudio(const std::vector<float>& audio, int channels);
    // Finds the strokes: where the energy of 5 ms doubles and more above what came just before.
    void FindSlices();
};

// Beats of a loop of that length whose name may tell the tempo ("... 124bpm"): else the power of two
// that gives a tempo between 84 and 168.
double BeatsOf(const std::string& name, double seconds);

// The number that a name begins with, as a key, or -1.
int KeyOf(const std::string& name);

}  // namespace quibplug
