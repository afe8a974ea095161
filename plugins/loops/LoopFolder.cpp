// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/LoopFolder.h"

#include <dlfcn.h>
#include <samplerate.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>

namespace quibplug {

namespace {

namespace fs = std::filesystem;

constexpr int kFirstFreeKey = 36;
constexpr double kLongestSeconds = 60.0;
constexpr double kShortestSeconds = 0.05;
constexpr std::size_t kWrap = 512;  // frames from the other end, for the resampler's memory

std::vector<fs::path> WaveFiles(const std::string& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::string extension = entry->path().extension().string();
        std::transform(extension.begin(), extension.end(), extension.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        if (extension == ".wav" && entry->is_regular_file(error)) files.push_back(entry->path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

struct Audio {
    std::vector<float> samples;  // interleaved
    int channels = 0;
    double sampleRate = 0.0;
    double beats = 0.0;  // told by the file, or 0
};

std::optional<Audio> ReadWave(const fs::path& path) {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_READ, &info), &sf_close);
    if (file == nullptr || info.channels < 1 || info.channels > 2 || info.samplerate < 8000) return std::nullopt;
    const double seconds = static_cast<double>(info.frames) / info.samplerate;
    if (seconds < kShortestSeconds || seconds > kLongestSeconds) return std::nullopt;
    Audio audio;
    audio.channels = info.channels;
    audio.sampleRate = info.samplerate;
    audio.samples.resize(static_cast<std::size_t>(info.frames) * static_cast<std::size_t>(info.channels));
    if (sf_readf_float(file.get(), audio.samples.data(), info.frames) != info.frames) return std::nullopt;
    for (float& sample : audio.samples) {
        if (!std::isfinite(sample)) sample = 0.0f;
    }
    SF_LOOP_INFO loop{};
    if (sf_command(file.get(), SFC_GET_LOOP_INFO, &loop, sizeof loop) == SF_TRUE) audio.beats = loop.num_beats;
    return audio;
}

// Takes away what the lower rate cannot hold; a higher one is the player's matter. A loop has no ends:
// what precedes it is its own end. The ratio makes it a whole number of frames.
void Resample(Audio& audio, double sampleRate) {
    if (audio.sampleRate <= sampleRate) return;
    const auto width = static_cast<std::size_t>(audio.channels);
    const std::size_t frames = audio.samples.size() / width;
    const auto wanted =
        static_cast<std::size_t>(std::llround(static_cast<double>(frames) * sampleRate / audio.sampleRate));
    const double ratio = static_cast<double>(wanted) / static_cast<double>(frames);
    std::vector<float> wrapped;
    for (std::size_t i = 0; i < frames + 2 * kWrap; ++i) {
        const std::size_t from = (i + frames * kWrap - kWrap) % frames;
        wrapped.insert(wrapped.end(), audio.samples.begin() + static_cast<std::ptrdiff_t>(from * width),
                       audio.samples.begin() + static_cast<std::ptrdiff_t>((from + 1) * width));
    }
    std::vector<float> output((static_cast<std::size_t>(static_cast<double>(frames + 2 * kWrap) * ratio) + 64) * width);
    SRC_DATA data{};
    data.data_in = wrapped.data();
    data.input_frames = static_cast<long>(frames + 2 * kWrap);
    data.data_out = output.data();
    data.output_frames = static_cast<long>(output.size() / width);
    data.src_ratio = ratio;
    if (src_simple(&data, SRC_SINC_FASTEST, audio.channels) != 0) return;
    const auto skipped = static_cast<std::ptrdiff_t>(std::llround(static_cast<double>(kWrap) * ratio)) * audio.channels;
    audio.samples.assign(output.begin() + skipped,
                         output.begin() + skipped + static_cast<std::ptrdiff_t>(wanted * width));
    audio.sampleRate = sampleRate;
}

std::optional<Loop> ReadLoop(const fs::path& path, double sampleRate) {
    std::optional<Audio> audio = ReadWave(path);
    if (!audio) return std::nullopt;
    Loop loop;
    loop.name = path.stem().string();
    const double frames = static_cast<double>(audio->samples.size()) / audio->channels;
    loop.beats = audio->beats >= 1.0 ? audio->beats : BeatsOf(loop.name, frames / audio->sampleRate);
    Resample(*audio, sampleRate);
    loop.sampleRate = audio->sampleRate;
    loop.SetAudio(audio->samples, audio->channels);
    loop.FindSlices();
    return loop;
}

}  // namespace

std::string LoopsFolder() {
    Dl_info info{};
    static const char mark = 0;
    if (dladdr(&mark, &info) == 0 || info.dli_fname == nullptr) return "Loops";
    std::error_code error;
    const fs::path library = fs::absolute(info.dli_fname, error);
    const fs::path beside = library.parent_path().parent_path() / "Loops";
    if (fs::exists(beside, error)) return beside.string();
    return (library.parent_path() / QUIB_DATA_FROM_PLUGINS / "Loops").lexically_normal().string();
}

LoopSet ReadLoops(const std::string& folder, double sampleRate) {
    std::map<int, Loop> byKey;
    std::vector<Loop> anywhere;
    for (const fs::path& path : WaveFiles(folder)) {
        std::optional<Loop> loop = ReadLoop(path, sampleRate);
        if (!loop) continue;
        loop->key = KeyOf(loop->name);
        if (loop->key < 0 || byKey.contains(loop->key)) {
            anywhere.push_back(std::move(*loop));
        } else {
            byKey.emplace(loop->key, std::move(*loop));
        }
    }
    int key = kFirstFreeKey;
    for (Loop& loop : anywhere) {
        while (key < 128 && byKey.contains(key)) ++key;
        if (key >= 128) break;
        loop.key = key;
        byKey.emplace(key, std::move(loop));
    }
    LoopSet set;
    for (auto& [place, loop] : byKey) set.push_back(std::move(loop));
    return set;
}

std::shared_ptr<const LoopSet> SharedLoops(double sampleRate) {
    static std::mutex mutex;
    static std::map<double, std::weak_ptr<const LoopSet>> known;
    const std::lock_guard lock(mutex);
    std::shared_ptr<const LoopSet> set = known[sampleRate].lock();
    if (set == nullptr) {
        set = std::make_shared<const LoopSet>(ReadLoops(LoopsFolder(), sampleRate));
        known[sampleRate] = set;
    }
    return set;
}

}  // namespace quibplug
