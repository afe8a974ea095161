// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The file of a take: a copy that can be rendered again at any time, and is read only when it is whole and was
// rendered from what its key stands for. One thread at a time, never a render thread.

#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/CFrozenTake.h"
#include "platform/CPendingFile.h"

namespace quib {

// Writes a take while it is rendered; the file is there under its name once Finish has succeeded.
class CFrozenWriter {
public:
    // `frozenKey`: of kKeyLength characters.
    CFrozenWriter(const std::filesystem::path& path, std::string frozenKey, const FrozenFormat& takeFormat);

    static constexpr std::size_t kKeyLength = 64;

    // Each is false on an error, with the reason in `error`.
    bool Open(std::string& error);
    // Frames of each channel, which follow those before.
    bool Add(const std::array<const float*, CFrozenTake::kMaximumChannels>& channels, int frames, std::string& error);
    // `endsSilent`: as of the content.
    bool Finish(bool endsSilent, std::string& error);
    // The next step, where it begins and how long it is.
    void AddStep(const FrozenStep& step) { steps.push_back(step); }

private:
    bool WriteUnits(std::string& error);
    bool Write(const void* bytes, std::size_t count, std::string& error);

    CPendingFile file;
    std::ofstream stream;
    std::string key;
    FrozenFormat format;
    std::vector<std::vector<float>> units;  // of each channel, as far as it is filled
    std::vector<FrozenStep> steps;
    std::vector<std::int32_t> places;
    std::int32_t unitCount = 0;
    std::int64_t frames = 0;
    std::uint64_t sum = 0;
};

// Null, with the reason in `error`, for a file that is not there, is damaged, or has another key.
std::shared_ptr<const CFrozenTake> ReadFrozenFile(const std::filesystem::path& path, std::string_view key,
                                                  std::string& error);

}  // namespace quib
