// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A file that grows under a temporary name beside its own and gets its own only when it is whole: until
// then what stood there stays, and an object that goes before takes the temporary file with it. For files
// too large to be held in memory. One thread at a time, never a render thread.

#include <filesystem>
#include <string>
#include <utility>

namespace quib {

class CPendingFile {
public:
    explicit CPendingFile(std::filesystem::path finalPath) : path(std::move(finalPath)) {}
    ~CPendingFile();
    CPendingFile(const CPendingFile&) = delete;
    CPendingFile& operator=(const CPendingFile&) = delete;

    // Makes the folder where it is missing, and the temporary file, empty. False with path and reason in
    // `error`, also when what stands at the path may not be replaced.
    bool Create(std::string& error);
    // What is written to, by its name.
    const std::filesystem::path& WorkingPath() const noexcept { return working; }
    const std::filesystem::path& FinalPath() const noexcept { return path; }
    // Puts what was written, and closed, on disk under its own name.
    bool Keep(std::string& error);

private:
    bool Fail(const std::string& reason, std::string& error) const;

    std::filesystem::path path;
    std::filesystem::path working;  // empty: nothing is there
};

}  // namespace quib
