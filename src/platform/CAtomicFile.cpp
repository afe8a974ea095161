// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CAtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace quib {

namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kNewFile = 0666;  // before the process's mask
constexpr mode_t kPrivate = 0600;

CFileCalls systemCalls;  // holds nothing
std::atomic<unsigned> nextTemporary{0};

// A name beside `path` that no other save of this or another process uses now.
std::filesystem::path TemporaryName(const std::filesystem::path& path) {
    std::string name = ".";
    name += path.filename().string();
    name += '.' + std::to_string(::getpid()) + '-' + std::to_string(nextTemporary.fetch_add(1)) + ".tmp";
    return path.parent_path() / name;
}

// Where a link leads, so that the link itself stays; a dangling one is replaced.
std::filesystem::path Target(const std::filesystem::path& path) {
    std::error_code error;
    const auto target = std::filesystem::canonical(path, error);
    return error ? path : target;
}

}  // namespace

int CFileCalls::Open(const char* path, int flags, mode_t mode) { return ::open(path, flags, mode); }
ssize_t CFileCalls::Write(int file, const void* bytes, std::size_t count) { return ::write(file, bytes, count); }
int CFileCalls::ChangeMode(int file, mode_t mode) { return ::fchmod(file, mode); }
int CFileCalls::ChangeOwner(int file, uid_t owner, gid_t group) { return ::fchown(file, owner, group); }
int CFileCalls::Sync(int file) { return ::fsync(file); }
int CFileCalls::Close(int file) { return ::close(file); }
int CFileCalls::Rename(const char* from, const char* to) { return ::rename(from, to); }
int CFileCalls::Remove(const char* path) { return ::unlink(path); }

CAtomicFile::CAtomicFile() : CAtomicFile(systemCalls) {}

bool CAtomicFile::Replace(const std::filesystem::path& path, std::span<const char> bytes, std::string& error) {
    const std::filesystem::path target = Target(path);
    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    int reason = 0;
    if (exists && !S_ISREG(old.st_mode)) {
        reason = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
    } else if (exists && ::access(target.c_str(), W_OK) != 0) {
        reason = errno;
    } else {
        reason = WriteNew(target, bytes, exists ? &old : nullptr);
    }
    if (reason == 0) return true;
    error = path.string() + ": " + std::generic_category().message(reason);
    return false;
}

// 0, or the errno of the step that failed.
int CAtomicFile::WriteNew(const std::filesystem::path& path, std::span<const char> bytes, const struct ::stat* old) {
    const std::filesystem::path temporary = TemporaryName(path);
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    const int file = calls.Open(temporary.c_str(), flags, old != nullptr ? kPrivate : kNewFile);
    if (file < 0) return errno;
    int reason = WriteAll(file, bytes);
    if (reason == 0 && old != nullptr) {
        // Whoever may not give the file away keeps it; that has to come first, as it clears bits.
        (void)calls.ChangeOwner(file, old->st_uid, old->st_gid);
        if (calls.ChangeMode(file, old->st_mode & kPermissionBits) != 0) reason = errno;
    }
    if (reason == 0 && calls.Sync(file) != 0) reason = errno;
    if (calls.Close(file) != 0 && reason == 0 && errno != EINTR) reason = errno;
    if (reason == 0 && calls.Rename(temporary.c_str(), path.c_str()) != 0) reason = errno;
    if (reason != 0) {
        (void)calls.Remove(temporary.c_str());
        return reason;
    }
    SyncFolder(path.parent_path());
    return 0;
}

int CAtomicFile::WriteAll(int file, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = calls.Write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        if (count == 0) return EIO;  // no progress and no reason
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return 0;
}

// The new name reaches the disk. The new file stands already, so a folder that cannot be flushed (some
// file systems do not know how) makes no difference to anybody but a power cut.
void CAtomicFile::SyncFolder(const std::filesystem::path& folder) {
    const int file = calls.Open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (file < 0) return;
    (void)calls.Sync(file);
    (void)calls.Close(file);
}

}  // namespace quib
