// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Memory that is a file at the same time: what is stored there is in the file without a call of the system, and
// stays when the process ends, however that ends (a loss of power excepted). One owner.

#include <cstddef>
#include <filesystem>

namespace quib {

class CMappedFile {
public:
    CMappedFile() = default;
    ~CMappedFile();
    CMappedFile(const CMappedFile&) = delete;
    CMappedFile& operator=(const CMappedFile&) = delete;

    // Makes the file anew, `size` bytes of zero, in place of what was open before. False, and nothing changes, when
    // that is not possible.
    bool Create(const std::filesystem::path& file, std::size_t size) noexcept;
    std::byte* Data() const noexcept { return memory; }

private:
    std::byte* memory = nullptr;
    std::size_t bytes = 0;
};

}  // namespace quib
