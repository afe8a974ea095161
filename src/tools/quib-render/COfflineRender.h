// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Plays what the engine holds into the recorder, faster than real time, until the music and its tail
// are over. One thread.

#include <atomic>
#include <functional>
#include <string>

#include "devices/CLame.h"
#include "engine/CAudio.h"
#include "export/CSignalStatistics.h"

namespace quib {

struct RenderResult {
    std::int64_t frames = 0;
    CSignalStatistics statistics;
    double cpuSeconds = 0;  // of all threads
};

class COfflineRender {
public:
    COfflineRender(CAudio& engine, CLame& fileRecorder) : audio(engine), recorder(fileRecorder) {}

    // Plays `steps`, or `frames` where it is not 0, then the tail until silence, ten seconds at most.
    // `progress` is told the share done, 0..1, and ends the render by returning false; `error` then and
    // after a failed write says why the result is not whole.
    RenderResult Run(int steps, std::int64_t frames, const std::function<bool(double)>& progress, std::string& error);

private:
    bool TakeBlock(RenderResult& result, int frames, std::string& error);

    CAudio& audio;
    CLame& recorder;
};

}  // namespace quib
