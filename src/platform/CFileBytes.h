// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The whole content of a file in memory. Not for render threads.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace quib {

class CFileBytes {
public:
    // Reads a regular file. On failure returns false with path and reason in `error`, and keeps what
    // was read before.
    bool Read(const std::filesystem::path& path, std::string& error);
    std::string_view View() const noexcept { return {bytes.get(), size}; }

private:
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
};

}  // namespace quib
