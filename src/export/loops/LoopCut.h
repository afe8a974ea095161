// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Loops out of a longer sound: exact length, a seam that cannot be heard, and the file. Places are frames of the
// sound. Any thread but render threads.

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "export/ExportSettings.h"
#include "export/SoundClip.h"

namespace quib {

struct LoopCut {
    std::int64_t start = 0;
    int beats = 8;
    double tempo = 120;
    double fade = 0.012;  // seconds of the cross-fade at the seam, taken from before the start
};

// round(beats * 60 * rate / tempo); at least 1.
std::int64_t LoopFrames(int beats, int sampleRate, double tempo);
inline std::int64_t FramesOf(const LoopCut& cut, int sampleRate) {
    return LoopFrames(cut.beats, sampleRate, cut.tempo);
}

// The loop; its end fades, at equal power, into what lies before its start. Silence where the sound does not reach.
SoundClip CutLoop(const SoundClip& from, const LoopCut& cut);

// The first `frames` of a sound; what rings on after them is laid over their beginning, again and again.
SoundClip FoldTail(const SoundClip& from, std::int64_t frames);

// How far the seam jumps, and the step from frame to frame that 99.9 % of the loop stay below.
struct SeamSteps {
    float seam = 0;
    float usual = 0;

    bool IsSmooth() const noexcept { return seam <= usual; }
};
SeamSteps StepsAtSeam(const SoundClip& loop);

// The frame within `reach` at which both sides together come nearest to silence on the way up.
std::int64_t NearestZero(const SoundClip& clip, std::int64_t frame, std::int64_t reach);
// The start near that of the cut whose seam jumps least.
std::int64_t BestStart(const SoundClip& clip, LoopCut cut);

// Frames at which strokes begin, the first one 0.
std::vector<int> StrokesOf(const SoundClip& loop);

// "name 124bpm", of letters that file systems take.
std::string LoopName(const std::string& pattern, const std::string& name, double tempo);

// False with the reason, which names the file; what stood there stays then.
bool WriteLoopFile(const std::filesystem::path& path, const SoundClip& loop, const LoopCut& cut, bool marks,
                   std::string& error);

}  // namespace quib
