// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A binary file that grows while its head can still be corrected. It keeps no buffer of its own, so
// Size() is what the system has taken, even after a full disk. It keeps the first error, with the
// path. One thread at a time, never a render thread.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <utility>

namespace quib {

class CGrowingFile {
public:
    explicit CGrowingFile(std::filesystem::path path) : filePath(std::move(path)) {}

    // Creates the file or empties the one that is there. Once in the life of the object.
    bool Open();

    // Writes at the end. False when not all of it could be written.
    bool Append(std::span<const std::uint8_t> bytes);

    // Replaces bytes that are already there; works on a full disk too. `offset` in bytes.
    bool Overwrite(std::uint64_t offset, std::span<const std::uint8_t> bytes);

    bool Close();

    // Remembers `reason` as the error unless there is one. Always false.
    bool Fail(const std::string& reason);

    std::uint64_t Size() const noexcept { return size; }
    const std::string& Error() const noexcept { return error; }

private:
    std::size_t Put(std::span<const std::uint8_t> bytes);
    bool FailWithSystemReason();

    std::filesystem::path filePath;
    std::filebuf file;
    std::uint64_t size = 0;
    std::string error;
};

}  // namespace quib
