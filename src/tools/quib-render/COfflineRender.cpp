// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/COfflineRender.h"

#include <algorithm>

#include "platform/Clock.h"

namespace quib {

namespace {

constexpr double kLongestTailSeconds = 10.0;
constexpr double kSilenceSeconds = 0.25;
constexpr float kSilence = 1.5e-5F;  // swing below half a step of 16 bits

// Difference between the highest and the lowest sample: what an idle equaliser leaves is constant.
float Swing(const float* samples, int frames) {
    const auto [lowest, highest] = std::minmax_element(samples, samples + frames);
    return *highest - *lowest;
}

}  // namespace

RenderResult COfflineRender::Run(int steps, std::int64_t frames, const std::function<bool(double)>& progress,
                                 std::string& error) {
    RenderResult result;
    const std::uint64_t cpuStart = ProcessCpuNanoseconds();
    if (frames == 0) audio.Post({EngineCommand::EKind::kStopAt, 0, steps});
    audio.Post({EngineCommand::EKind::kPlay});
    const auto rate = audio.Format().sampleRate;
    const auto stillPlaying = [&] { return frames > 0 ? result.frames < frames : audio.Picture().playing; };
    bool whole = true;
    do {
        whole = RenderOne(result, error);
        const double share = frames > 0 ? static_cast<double>(result.frames) / static_cast<double>(frames)
                                        : (audio.Picture().soundingStep + 1.0) / steps;
        if (whole && !progress(std::min(share, 1.0))) {
            error = "stopped by the user";
            whole = false;
        }
    } while (whole && stillPlaying());

    if (frames > 0) audio.Post({EngineCommand::EKind::kStop});
    const auto tailEnd = result.frames + static_cast<std::int64_t>(kLongestTailSeconds * rate);
    while (whole && result.frames < tailEnd && static_cast<double>(silentFrames) < kSilenceSeconds * rate) {
        whole = RenderOne(result, error);
    }
    result.cpuSeconds = static_cast<double>(ProcessCpuNanoseconds() - cpuStart) * 1e-9;
    return result;
}

bool COfflineRender::RenderOne(RenderResult& result, std::string& error) {
    if (!audio.RenderBlock()) {
        error = "the engine is busy";
        return false;
    }
    recorder.Flush();
    if (stems != nullptr && !stems->WriteBlock(error)) return false;
    const int frames = audio.Format().blockSize;
    float swing = 0;
    for (const int channel : {0, 1}) {
        result.statistics.Add(audio.Master(channel), frames);
        swing = std::max(swing, Swing(audio.Master(channel), frames));
    }
    silentFrames = swing < kSilence ? silentFrames + frames : 0;
    result.frames += frames;
    if (recorder.IsRecording()) return true;
    error = recorder.Error();
    return false;
}

}  // namespace quib
