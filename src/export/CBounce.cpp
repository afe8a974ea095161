// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/CBounce.h"

#include <algorithm>

namespace quib {

namespace {

constexpr double kSilenceSeconds = 0.25;
constexpr float kSilence = 1.5e-5F;  // swing below half a step of 16 bits

// Difference between the highest and the lowest sample: what an idle equaliser leaves is constant.
float Swing(const float* samples, int count) {
    const auto [lowest, highest] = std::minmax_element(samples, samples + count);
    return *highest - *lowest;
}

}  // namespace

bool CBounce::Run(const BounceSpan& span, const Take& take, const Progress& progress, std::string& error) {
    frames = silentFrames = 0;
    if (span.firstStep > 0) audio.Post({EngineCommand::EKind::kLocate, 0, span.firstStep});
    if (span.frames == 0) audio.Post({EngineCommand::EKind::kStopAt, 0, span.endStep});
    audio.Post({EngineCommand::EKind::kPlay});
    if (!Play(span, take, progress, error)) return false;
    if (span.frames > 0) audio.Post({EngineCommand::EKind::kStop});
    return PlayTail(span.tailSeconds, take, error);
}

bool CBounce::Play(const BounceSpan& span, const Take& take, const Progress& progress, std::string& error) {
    const int block = audio.Format().blockSize;
    bool playing = true;
    while (playing) {
        if (!RenderBlock(error)) return false;
        const PlayPicture& picture = audio.Picture();
        const std::int64_t end = span.frames > 0 ? span.frames : picture.playing ? frames + block : picture.endedAt;
        playing = span.frames > 0 ? frames + block < span.frames : picture.playing;
        const bool cut = !playing && span.tailSeconds <= 0;
        const auto count = cut ? static_cast<int>(std::clamp<std::int64_t>(end - frames, 0, block)) : block;
        if (!take(count)) return false;
        played = std::clamp<std::int64_t>(end, frames, frames + block);
        frames += count;
        const double steps = picture.soundingStep + 1.0 - span.firstStep;
        const double share = span.frames > 0 ? static_cast<double>(frames) / static_cast<double>(span.frames)
                                             : steps / (span.endStep - span.firstStep);
        if (!progress(std::clamp(share, 0.0, 1.0))) return false;
    }
    return true;
}

bool CBounce::PlayTail(double seconds, const Take& take, std::string& error) {
    const double rate = audio.Format().sampleRate;
    const std::int64_t end = frames + static_cast<std::int64_t>(seconds * rate);
    while (frames < end && static_cast<double>(silentFrames) < kSilenceSeconds * rate) {
        if (!RenderBlock(error)) return false;
        if (!take(audio.Format().blockSize)) return false;
        frames += audio.Format().blockSize;
    }
    return true;
}

bool CBounce::RenderBlock(std::string& error) {
    if (!audio.RenderBlock()) {
        error = "the engine is busy";
        return false;
    }
    const int block = audio.Format().blockSize;
    const float swing = std::max(Swing(audio.Master(0), block), Swing(audio.Master(1), block));
    silentFrames = swing < kSilence ? silentFrames + block : 0;
    return true;
}

}  // namespace quib
