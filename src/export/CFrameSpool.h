// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Stereo sound on its way, kept on disk beside the file that it is for, until the gain is known that the
// file wants. It is gone with the object. One thread at a time, never a render thread.

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/CPendingFile.h"

namespace quib {

class CFrameSpool {
public:
    explicit CFrameSpool(const std::filesystem::path& beside) : file(beside) {}

    // Each is false on an error, with the reason in `error`.
    bool Open(std::string& error);
    bool Write(const float* left, const float* right, int frames, std::string& error);
    // From the first frame on.
    bool Rewind(std::string& error);
    // One block as it was written, 0 at the end. Valid until the next call.
    int Read();
    float* Left() noexcept { return block.data(); }
    float* Right() noexcept { return block.data() + block.size() / 2; }

private:
    bool Fail(std::string& error) const;

    CPendingFile file;
    std::fstream stream;
    std::vector<float> block;  // left, then right
};

}  // namespace quib
