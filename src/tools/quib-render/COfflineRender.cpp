// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/COfflineRender.h"

#include "export/CBounce.h"
#include "platform/Clock.h"

namespace quib {

namespace {
constexpr double kLongestTailSeconds = 10.0;
}

RenderResult COfflineRender::Run(int steps, std::int64_t frames, const std::function<bool(double)>& progress,
                                 std::string& error) {
    RenderResult result;
    const std::uint64_t cpuStart = ProcessCpuNanoseconds();
    CBounce bounce(audio);
    const auto goOn = [&](double share) {
        if (progress(share)) return true;
        error = "stopped by the user";
        return false;
    };
    bounce.Run(
        {0, steps, frames, kLongestTailSeconds}, [&](int count) { return TakeBlock(result, count, error); }, goOn,
        error);
    result.frames = bounce.Frames();
    result.cpuSeconds = static_cast<double>(ProcessCpuNanoseconds() - cpuStart) * 1e-9;
    return result;
}

// What the recorder takes with each block is all of it.
bool COfflineRender::TakeBlock(RenderResult& result, int frames, std::string& error) {
    recorder.Flush();
    for (const int channel : {0, 1}) result.statistics.Add(audio.Master(channel), frames);
    if (recorder.IsRecording()) return true;
    error = recorder.Error();
    return false;
}

}  // namespace quib
