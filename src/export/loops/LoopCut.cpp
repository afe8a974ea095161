// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/loops/LoopCut.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "export/CSoundFile.h"
#include "export/rhythm/RhythmHits.h"

namespace quib {

namespace {

constexpr double kMostOfSteps = 0.999;
constexpr int kLoopBits = 24;

float At(const std::vector<float>& side, std::int64_t frame) {
    return frame >= 0 && frame < static_cast<std::int64_t>(side.size()) ? side[static_cast<std::size_t>(frame)] : 0.0F;
}

std::vector<float> CutSide(const std::vector<float>& from, std::int64_t start, std::int64_t frames, std::int64_t fade) {
    std::vector<float> side(static_cast<std::size_t>(frames));
    for (std::int64_t i = 0; i < frames; ++i) {
        float value = At(from, start + i);
        const std::int64_t inside = i - (frames - fade);
        if (inside >= 0) {
            // The last frame comes from the one before the start.
            const double turn = 0.5 * std::numbers::pi * static_cast<double>(inside + 1) / static_cast<double>(fade);
            value = value * static_cast<float>(std::cos(turn)) +
                    At(from, start - fade + inside) * static_cast<float>(std::sin(turn));
        }
        side[static_cast<std::size_t>(i)] = value;
    }
    return side;
}

float StepBetween(const SoundClip& clip, std::size_t before, std::size_t after) {
    return std::max(std::abs(clip.left[after] - clip.left[before]), std::abs(clip.right[after] - clip.right[before]));
}

}  // namespace

std::int64_t LoopFrames(int beats, int sampleRate, double tempo) {
    return std::max<std::int64_t>(1, std::llround(beats * 60.0 * sampleRate / tempo));
}

SoundClip CutLoop(const SoundClip& from, const LoopCut& cut) {
    const std::int64_t frames = FramesOf(cut, from.sampleRate);
    const auto wanted = static_cast<std::int64_t>(cut.fade * from.sampleRate);
    // There is no more before the start than that.
    const std::int64_t fade =
        std::clamp<std::int64_t>(wanted, 0, std::min(std::max<std::int64_t>(cut.start, 0), frames));
    return {from.sampleRate, from.channels, CutSide(from.left, cut.start, frames, fade),
            CutSide(from.right, cut.start, frames, fade)};
}

SoundClip FoldTail(const SoundClip& from, std::int64_t frames) {
    const auto fold = [&](const std::vector<float>& side) {
        std::vector<float> folded(static_cast<std::size_t>(std::max<std::int64_t>(1, frames)));
        for (std::size_t i = 0; i < side.size(); ++i) folded[i % folded.size()] += side[i];
        return folded;
    };
    return {from.sampleRate, from.channels, fold(from.left), fold(from.right)};
}

SeamSteps StepsAtSeam(const SoundClip& loop) {
    const std::size_t count = loop.left.size();
    if (count < 2) return {};
    std::vector<float> steps(count - 1);
    for (std::size_t i = 0; i + 1 < count; ++i) steps[i] = StepBetween(loop, i, i + 1);
    const auto place =
        steps.begin() + static_cast<std::ptrdiff_t>(kMostOfSteps * static_cast<double>(steps.size() - 1));
    std::nth_element(steps.begin(), place, steps.end());
    return {StepBetween(loop, count - 1, 0), *place};
}

std::int64_t NearestZero(const SoundClip& clip, std::int64_t frame, std::int64_t reach) {
    const auto middle = [&](std::int64_t at) { return At(clip.left, at) + At(clip.right, at); };
    for (std::int64_t distance = 0; distance <= reach; ++distance) {
        for (const std::int64_t at : {frame - distance, frame + distance}) {
            if (at > 0 && at < clip.Frames() && middle(at - 1) <= 0 && middle(at) > 0) return at;
        }
    }
    return frame;
}

std::int64_t BestStart(const SoundClip& clip, LoopCut cut) {
    const auto reach = static_cast<std::int64_t>(0.002 * clip.sampleRate);
    const std::int64_t frames = FramesOf(cut, clip.sampleRate);
    std::int64_t best = cut.start;
    float least = 1e9F;
    for (std::int64_t start = std::max<std::int64_t>(0, cut.start - reach); start <= cut.start + reach; ++start) {
        const float step = std::max(std::abs(At(clip.left, start) - At(clip.left, start + frames - 1)),
                                    std::abs(At(clip.right, start) - At(clip.right, start + frames - 1)));
        if (step >= least) continue;
        least = step;
        best = start;
    }
    return best;
}

std::vector<int> StrokesOf(const SoundClip& loop) {
    constexpr std::size_t kMost = 100;
    CRhythmEnvelope envelope({}, loop.sampleRate);
    envelope.Add(MonoOf(loop));
    std::vector<int> strokes = {0};
    for (const RhythmHit& hit : envelope.Hits()) {
        const int frame = static_cast<int>(hit.time * loop.sampleRate);
        if (frame > loop.sampleRate / 20 && strokes.size() < kMost) strokes.push_back(frame);
    }
    return strokes;
}

std::string LoopName(const std::string& pattern, const std::string& name, double tempo) {
    std::string text = pattern.empty() ? "{name} {bpm}bpm" : pattern;
    const auto put = [&text](const std::string& word, const std::string& value) {
        if (const std::size_t at = text.find(word); at != std::string::npos) text.replace(at, word.size(), value);
    };
    put("{bpm}", fmt::format("{:g}", std::round(tempo * 100) / 100));
    put("{name}", name);
    for (char& letter : text) {
        if (static_cast<unsigned char>(letter) < ' ' ||
            std::string_view("/\\:*?\"<>|").find(letter) != std::string_view::npos)
            letter = '_';
    }
    if (text.starts_with('.')) text[0] = '_';
    return text;
}

bool WriteLoopFile(const std::filesystem::path& path, const SoundClip& loop, const LoopCut& cut, bool marks,
                   std::string& error) {
    SoundFormat format;
    format.kind = FormatOf(path).value_or(ESoundFormat::kWave);
    format.sampleRate = loop.sampleRate;
    format.bits = kLoopBits;
    SoundTags tags;
    tags.title = path.stem().string();
    if (marks) {
        tags.tempo = cut.tempo;
        tags.loopBeats = cut.beats;
        tags.loopFrames = loop.Frames();
        tags.strokes = StrokesOf(loop);
    }
    CSoundFile file(path, format, tags);
    const bool done = file.Open() && file.Write(loop.left.data(), loop.right.data(), static_cast<int>(loop.Frames())) &&
                      file.Finish() && file.Keep();
    if (!done) error = file.Error();
    return done;
}

}  // namespace quib
