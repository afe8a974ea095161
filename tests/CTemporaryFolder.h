// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace quib {

// A folder that no other process has, gone at the end with all that is in it.
class CTemporaryFolder {
public:
    CTemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "quib-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) throw std::system_error(errno, std::generic_category(), pattern);
        path = std::filesystem::canonical(pattern);
    }
    ~CTemporaryFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path, ignored);
    }
    CTemporaryFolder(const CTemporaryFolder&) = delete;
    CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;

    const std::filesystem::path& Path() const noexcept { return path; }

private:
    std::filesystem::path path;
};

}  // namespace quib
