// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CAtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
#include <string_view>
#include <system_error>
#include <vector>

namespace quib {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kPrivate = 0600;

CFileCalls systemCalls;  // holds nothing
std::atomic<unsigned> nextTemporary{0};

constexpr std::size_t kLongestStem = 180;  // leaves room in a file name for the number and the suffix
constexpr int kMostLinks = 40;
constexpr std::string_view kTemporarySuffix = ".tmp";
constexpr auto kLongSave = std::chrono::hours(1);

// What the temporary files of `path` begin with: its name, cut at a whole character where it is too long.
std::string TemporaryStem(const fs::path& path) {
    const std::string name = path.filename().string();
    if (name.size() <= kLongestStem) return '.' + name + '.';
    std::size_t end = kLongestStem;
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
    return '.' + name.substr(0, end) + '~' + std::to_string(std::hash<std::string>()(name)) + '.';
}

// A name beside `path` that no other save of this or another process uses now.
fs::path TemporaryName(const fs::path& path) {
    std::string name = TemporaryStem(path);
    name += std::to_string(::getpid()) + '-' + std::to_string(nextTemporary.fetch_add(1));
    return path.parent_path() / name.append(kTemporarySuffix);
}

// The process that made the temporary file of this name; 0 when it is none of `stem`.
pid_t MakerOf(const std::string& name, const std::string& stem) {
    if (!name.starts_with(stem) || !name.ends_with(kTemporarySuffix)) return 0;
    const char* const end = name.data() + name.size() - kTemporarySuffix.size();
    pid_t maker = 0;
    unsigned number = 0;
    const auto first = std::from_chars(name.data() + stem.size(), end, maker);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != '-') return 0;
    const auto second = std::from_chars(first.ptr + 1, end, number);
    return second.ec == std::errc() && second.ptr == end ? maker : 0;
}

// Of a folder, the files that killed saves have left, by the stem that the name of each should have. One of a process
// that lives stays, unless it is so old that another process has got the number.
template <typename StemOf>
std::vector<fs::path> Leftovers(const fs::path& folder, const StemOf& stemOf) {
    std::vector<fs::path> left;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const pid_t maker = MakerOf(name, stemOf(name));
        if (maker <= 0 || maker == ::getpid()) continue;
        std::error_code unknown;
        const auto age = fs::file_time_type::clock::now() - fs::last_write_time(entry->path(), unknown);
        const bool isOld = !unknown && age > kLongSave;
        if (isOld || (::kill(maker, 0) != 0 && errno == ESRCH)) left.push_back(entry->path());
    }
    return left;
}

std::vector<fs::path> LeftoversOf(const fs::path& path) {
    const std::string stem = TemporaryStem(path);
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    return Leftovers(folder, [&stem](const std::string&) { return stem; });
}

// Where a link leads, so that the link itself stays, also when nothing is there yet.
fs::path Target(const fs::path& path) {
    fs::path target = path;
    std::error_code error;
    for (int link = 0; link < kMostLinks && fs::is_symlink(target, error); ++link) {
        const fs::path next = fs::read_symlink(target, error);
        if (error) return path;
        target = target.parent_path() / next;
    }
    return target;
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

void CAtomicFile::RemoveLeftovers(const fs::path& folder) {
    const auto stemOf = [](const std::string& name) {
        const std::size_t numbers = name.rfind('.', name.size() - std::min(name.size(), kTemporarySuffix.size() + 1));
        return name.starts_with('.') && numbers != std::string::npos ? name.substr(0, numbers + 1) : name;
    };
    std::error_code ignored;
    for (const fs::path& leftover : Leftovers(folder, stemOf)) fs::remove(leftover, ignored);
}

fs::path CAtomicFile::TemporaryFor(const fs::path& path) {
    std::error_code ignored;
    for (const fs::path& left : LeftoversOf(path)) fs::remove(left, ignored);
    return TemporaryName(path);
}

bool CAtomicFile::Replace(const fs::path& path, std::span<const char> bytes, std::string& error) {
    const fs::path target = Target(path);
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
int CAtomicFile::WriteNew(const fs::path& path, std::span<const char> bytes, const struct ::stat* old) {
    for (const fs::path& leftover : LeftoversOf(path)) (void)calls.Remove(leftover.c_str());
    const fs::path temporary = TemporaryName(path);
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
void CAtomicFile::SyncFolder(const fs::path& folder) {
    const int file = calls.Open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (file < 0) return;
    (void)calls.Sync(file);
    (void)calls.Close(file);
}

}  // namespace quib
