// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Marks a folder as used by this process, so that a second start in it knows. The mark is a lock of the
// system on a file in the folder: it ends with the process, however that ends. User-interface thread.

#include <filesystem>
#include <string>

namespace quib {

class CFolderLock {
public:
    CFolderLock() = default;
    ~CFolderLock();
    CFolderLock(const CFolderLock&) = delete;
    CFolderLock& operator=(const CFolderLock&) = delete;

    // False when another process has the folder; Holder() then says which. True when it is ours, and also
    // when nobody can mark it (a folder that is read only, a file system without locks). Once.
    bool Take(const std::filesystem::path& folder);

    // Process and computer, as the holder wrote them: "1234 on studio"; empty when it wrote nothing.
    const std::string& Holder() const noexcept { return holder; }

private:
    int file = -1;
    std::string holder;
};

}  // namespace quib
