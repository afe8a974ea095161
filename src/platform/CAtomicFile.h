// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Replaces files so that a crash, a full disk or a power cut leaves the old content or the new one and
// nothing in between: a temporary file in the same folder, flushed to disk, then renamed. Any thread
// but the render threads.

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>

namespace quib {

// Of a file that is new, before the process's mask.
constexpr mode_t kNewFile = 0666;

// The calls of the system that a replacement makes; each as the function of its name, with errno.
// Tests derive from it to make calls fail.
class CFileCalls {
public:
    virtual ~CFileCalls() = default;
    virtual int Open(const char* path, int flags, mode_t mode);
    virtual ssize_t Write(int file, const void* bytes, std::size_t count);
    virtual int ChangeMode(int file, mode_t mode);
    virtual int ChangeOwner(int file, uid_t owner, gid_t group);
    virtual int Sync(int file);
    virtual int Close(int file);
    virtual int Rename(const char* from, const char* to);
    virtual int Remove(const char* path);
};

class CAtomicFile {
public:
    CAtomicFile();
    explicit CAtomicFile(CFileCalls& fileCalls) : calls(fileCalls) {}

    // Makes `bytes` the content of `path`; a link is followed, and an existing file keeps its
    // permissions. Removes what a killed save of the same path has left. On failure returns false with path and reason
    // in `error`: the old file is as it was and no temporary one is left. A file that may not be written is not
    // replaced either.
    bool Replace(const std::filesystem::path& path, std::span<const char> bytes, std::string& error);

    // For files that grow until they are renamed: an unused temporary name beside `path`. What killed
    // processes have left under such names goes.
    static std::filesystem::path TemporaryFor(const std::filesystem::path& path);
    // What killed saves of any file have left in a folder goes.
    static void RemoveLeftovers(const std::filesystem::path& folder);

private:
    int WriteNew(const std::filesystem::path& path, std::span<const char> bytes, const struct ::stat* old);
    int WriteAll(int file, std::span<const char> bytes);
    void SyncFolder(const std::filesystem::path& folder);

    CFileCalls& calls;
};

}  // namespace quib
