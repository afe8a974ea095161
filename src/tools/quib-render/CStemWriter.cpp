// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/CStemWriter.h"

#include <fmt/format.h>

#include <algorithm>

#include "engine/Int16Frames.h"
#include "export/ExportPlan.h"

namespace quib {

namespace {

std::string FileName(std::size_t number, std::string title) {
    std::replace_if(
        title.begin(), title.end(), [](unsigned char c) { return c < ' ' || c == '/' || c == '\\'; }, '_');
    return fmt::format("{:02} {}.wav", number, title);
}

}  // namespace

bool CStemWriter::Open(const std::filesystem::path& folder, std::string& error) {
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure) {
        error = fmt::format("Cannot make \"{}\": {}", folder.string(), failure.message());
        return false;
    }
    const auto& instruments = *audio.instruments.ForEdit();
    const RenderFormat& format = audio.Format();
    for (std::size_t index = 0; index < instruments.size(); ++index) {
        if (!Sounds(*instruments[index])) continue;
        auto file = std::make_unique<CWaveSink>(folder / FileName(index + 1, instruments[index]->title),
                                                static_cast<int>(format.sampleRate));
        if (!file->Open()) {
            error = file->Error();
            return false;
        }
        files.push_back(std::move(file));
    }
    left.resize(static_cast<std::size_t>(format.blockSize));
    right.resize(left.size());
    interleaved.resize(2 * left.size());
    return true;
}

bool CStemWriter::WriteBlock(std::string& error) {
    const auto strips = audio.Strips();
    for (std::size_t index = 0; index < std::min(strips.size(), files.size()); ++index) {
        if (Write(*files[index], strips[index])) continue;
        error = files[index]->Error();
        return false;
    }
    return true;
}

bool CStemWriter::Write(CWaveSink& file, const StripJob& strip) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        left[i] = strip.mixLeft[i] * strip.mixGainLeft;
        right[i] = strip.mixRight[i] * strip.mixGainRight;
    }
    ToInt16Frames(left.data(), right.data(), interleaved.data(), static_cast<int>(left.size()));
    return file.Write(interleaved);
}

bool CStemWriter::Close(std::string& error) {
    for (const auto& file : files) {
        if (!file->Close() && error.empty()) error = file->Error();
    }
    files.clear();
    return error.empty();
}

}  // namespace quib
