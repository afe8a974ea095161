// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/SoundClip.h"

#include <fmt/format.h>
#include <sndfile.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>

namespace quib {

namespace {
constexpr sf_count_t kBlock = 4096;  // frames
constexpr const char* kExtensions[] = {".wav", ".mp3", ".flac", ".ogg", ".opus", ".aif", ".aiff"};
}  // namespace

bool ReadClip(const std::filesystem::path& path, SoundClip& clip, std::string& error, const ClipProgress& progress) {
    const auto fail = [&](const std::string& reason) {
        error = fmt::format("Cannot read \"{}\": {}", path.string(), reason);
        return false;
    };
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, decltype(&sf_close)> file(sf_open(path.c_str(), SFM_READ, &info), &sf_close);
    if (file == nullptr) return fail(sf_strerror(nullptr));
    if (info.channels < 1 || info.channels > 2) return fail(fmt::format("it has {} channels", info.channels));
    if (info.samplerate < 8000 || info.samplerate > 384000)
        return fail(fmt::format("its rate is {} Hz", info.samplerate));
    if (static_cast<double>(info.frames) > kLongestClip * info.samplerate) return fail("it is longer than 20 minutes");
    clip = {info.samplerate, info.channels, {}, {}};
    std::vector<float> block(static_cast<std::size_t>(kBlock * info.channels));
    const auto width = static_cast<std::size_t>(info.channels);
    while (const sf_count_t read = sf_readf_float(file.get(), block.data(), kBlock)) {
        if (clip.Seconds() > kLongestClip) return fail("it is longer than 20 minutes");
        for (std::size_t i = 0; i < static_cast<std::size_t>(read) * width; ++i) {
            if (!std::isfinite(block[i])) block[i] = 0;
        }
        for (std::size_t i = 0; i < static_cast<std::size_t>(read); ++i) {
            clip.left.push_back(block[i * width]);
            clip.right.push_back(block[i * width + width - 1]);
        }
        const double share =
            static_cast<double>(clip.Frames()) / static_cast<double>(std::max<sf_count_t>(info.frames, 1));
        if (progress && !progress(std::min(share, 1.0))) {
            error.clear();
            return false;
        }
    }
    if (clip.left.empty()) return fail("it holds no sound");
    return true;
}

bool IsSoundFile(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return std::find(std::begin(kExtensions), std::end(kExtensions), extension) != std::end(kExtensions);
}

std::vector<float> MonoOf(const SoundClip& clip) {
    std::vector<float> mono(clip.left.size());
    for (std::size_t i = 0; i < mono.size(); ++i) mono[i] = 0.5F * (clip.left[i] + clip.right[i]);
    return mono;
}

}  // namespace quib
