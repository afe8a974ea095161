// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/LoopFolder.h"

#include <dlfcn.h>
#include <samplerate.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
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

// A file as it was found.
struct FoundFile {
    fs::path path;
    fs::file_time_type time;
    std::uintmax_t size = 0;

    friend bool operator==(const FoundFile&, const FoundFile&) = default;
};
using FoundFiles = std::vector<FoundFile>;

void FindFiles(const std::string& folder, FoundFiles& found) {
    const auto first = static_cast<std::ptrdiff_t>(found.size());
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::string extension = entry->path().extension().string();
        std::transform(extension.begin(), extension.end(), extension.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        if ((extension != ".wav" && extension != ".mp3") || !entry->is_regular_file(error)) continue;
        found.push_back({entry->path(), entry->last_write_time(error), entry->file_size(error)});
    }
    std::sort(found.begin() + first, found.end(),
              [](const FoundFile& one, const FoundFile& other) { return one.path < other.path; });
}

struct Audio {
    std::vector<float> samples;  // interleaved
    int channels = 0;
    double sampleRate = 0.0;
    double beats = 0.0;       // told by the file, or 0
    std::vector<int> slices;  // told by the file
};

// The places that the file marks.
std::vector<int> CuePlaces(SNDFILE* file, std::int64_t frames) {
    std::vector<int> places;
    SF_CUES cues{};
    if (sf_command(file, SFC_GET_CUE, &cues, sizeof cues) != SF_TRUE) return places;
    for (std::uint32_t i = 0; i < std::min<std::uint32_t>(cues.cue_count, std::size(cues.cue_points)); ++i) {
        const std::uint32_t place = cues.cue_points[i].sample_offset;
        if (place < frames) places.push_back(static_cast<int>(place));
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

std::optional<Audio> ReadSound(const fs::path& path) {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_READ, &info), &sf_close);
    if (file == nullptr || info.channels < 1 || info.channels > 2 || info.samplerate < 8000) return std::nullopt;
    const double seconds = static_cast<double>(info.frames) / info.samplerate;
    if (seconds < kShortestSeconds || seconds > kLongestSeconds) return std::nullopt;
    Audio audio;
    audio.channels = info.channels;
    audio.sampleRate = info.samplerate;
    audio.samples.resize(static_cast<std::size_t>(info.frames) * static_cast<std::size_t>(info.channels));
    const sf_count_t read = sf_readf_float(file.get(), audio.samples.data(), info.frames);
    // The length of an MP3 file may be an estimate.
    const bool isExact = (info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_MPEG;
    if (read != info.frames && (isExact || static_cast<double>(read) < kShortestSeconds * info.samplerate))
        return std::nullopt;
    audio.samples.resize(static_cast<std::size_t>(read) * static_cast<std::size_t>(info.channels));
    for (float& sample : audio.samples) {
        if (!std::isfinite(sample)) sample = 0.0f;
    }
    SF_LOOP_INFO loop{};
    if (sf_command(file.get(), SFC_GET_LOOP_INFO, &loop, sizeof loop) == SF_TRUE) audio.beats = loop.num_beats;
    audio.slices = CuePlaces(file.get(), read);
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
    std::optional<Audio> audio = ReadSound(path);
    if (!audio) return std::nullopt;
    Loop loop;
    loop.name = path.stem().string();
    const double frames = static_cast<double>(audio->samples.size()) / audio->channels;
    loop.beats = audio->beats >= 1.0 ? audio->beats : BeatsOf(loop.name, frames / audio->sampleRate);
    Resample(*audio, sampleRate);
    loop.sampleRate = audio->sampleRate;
    loop.SetAudio(audio->samples, audio->channels);
    loop.FindSlices();
    if (audio->slices.size() < 2) return loop;
    loop.slices.assign(1, 0);
    for (const int place : audio->slices) {
        const auto scaled = static_cast<int>(std::lround(place * (loop.frames / frames)));
        if (scaled > loop.slices.back() && scaled < loop.frames) loop.slices.push_back(scaled);
    }
    return loop;
}

// The files behind a set, and what they gave, in the same order; null for those that cannot be read.
struct ReadSet {
    FoundFiles files;
    std::vector<std::shared_ptr<const Loop>> loops;
    std::weak_ptr<const LoopSet> set;
};

std::mutex mutex;
std::map<double, ReadSet> known;  // by sample rate

std::shared_ptr<const Loop> LoopOf(const FoundFile& file, double sampleRate, const ReadSet& before) {
    const auto same = std::find(before.files.begin(), before.files.end(), file);
    if (same != before.files.end()) return before.loops[static_cast<std::size_t>(same - before.files.begin())];
    std::optional<Loop> loop = ReadLoop(file.path, sampleRate);
    return loop ? std::make_shared<const Loop>(std::move(*loop)) : nullptr;
}

std::shared_ptr<const Loop> AtKey(const std::shared_ptr<const Loop>& loop, int key) {
    if (loop->key == key) return loop;
    auto moved = std::make_shared<Loop>(*loop);
    moved->key = key;
    return moved;
}

// Gives each loop its key, in `loops` too.
LoopSet Place(std::vector<std::shared_ptr<const Loop>>& loops) {
    std::map<int, std::shared_ptr<const Loop>> byKey;
    std::vector<std::shared_ptr<const Loop>*> anywhere;
    for (auto& loop : loops) {
        if (!loop) continue;
        const int key = KeyOf(loop->name);
        if (key < 0 || byKey.contains(key)) {
            anywhere.push_back(&loop);
        } else {
            byKey[key] = loop = AtKey(loop, key);
        }
    }
    int key = kFirstFreeKey;
    for (auto* const loop : anywhere) {
        while (key < 128 && byKey.contains(key)) ++key;
        if (key >= 128) break;
        byKey[key] = *loop = AtKey(*loop, key);
    }
    LoopSet set;
    for (auto& [place, loop] : byKey) set.push_back(std::move(loop));
    return set;
}

}  // namespace

std::vector<std::string> LoopsFolders() {
    std::vector<std::string> folders;
    Dl_info info{};
    std::error_code error;
    if (dladdr(&known, &info) != 0 && info.dli_fname != nullptr) {
        const fs::path library = fs::absolute(info.dli_fname, error);
        const fs::path beside = library.parent_path().parent_path() / "Loops";
        const fs::path installed = library.parent_path() / QUIB_DATA_FROM_PLUGINS / "Loops";
        folders.push_back(fs::exists(beside, error) ? beside.string() : installed.lexically_normal().string());
    }
    const char* const told = std::getenv("QUIB_LOOPS");
    const char* const data = std::getenv("XDG_DATA_HOME");
    const char* const home = std::getenv("HOME");
    if (told != nullptr) {
        std::string_view rest = told;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(':'), rest.size());
            if (end > 0) folders.emplace_back(rest.substr(0, end));
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    } else if (data != nullptr && *data != 0) {
        folders.push_back((fs::path(data) / "QUIBSequencer/Loops").string());
    } else if (home != nullptr) {
        folders.push_back((fs::path(home) / ".local/share/QUIBSequencer/Loops").string());
    }
    return folders;
}

std::shared_ptr<const LoopSet> SharedLoops(double sampleRate) {
    FoundFiles files;
    std::vector<fs::path> seen;
    for (const std::string& folder : LoopsFolders()) {
        std::error_code error;
        const fs::path real = fs::weakly_canonical(folder, error);
        if (std::find(seen.begin(), seen.end(), real) != seen.end()) continue;
        seen.push_back(real);
        FindFiles(folder, files);
    }
    const std::lock_guard lock(mutex);
    ReadSet& before = known[sampleRate];
    std::shared_ptr<const LoopSet> set = before.set.lock();
    if (set != nullptr && before.files == files) return set;
    ReadSet next;
    for (const FoundFile& file : files) next.loops.push_back(LoopOf(file, sampleRate, before));
    next.files = std::move(files);
    set = std::make_shared<const LoopSet>(Place(next.loops));
    next.set = set;
    before = std::move(next);
    return set;
}

}  // namespace quibplug
