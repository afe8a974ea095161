// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CFileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <system_error>

namespace quib {

namespace {

constexpr std::size_t kLargestFile = std::size_t{4} << 30;

// Reads until `wanted` bytes have come or the file ends; -1 with errno on failure.
ssize_t ReadAll(int file, char* to, std::size_t wanted) {
    std::size_t done = 0;
    while (done < wanted) {
        const ssize_t count = ::read(file, to + done, wanted - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return -1;
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<ssize_t>(done);
}

bool Fail(const std::filesystem::path& path, int reason, std::string& error) {
    error = path.string() + ": " + std::generic_category().message(reason);
    return false;
}

}  // namespace

bool CFileBytes::Read(const std::filesystem::path& path, std::string& error) {
    // Without O_NONBLOCK, opening a pipe by mistake would wait for somebody who writes into it.
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) return Fail(path, errno, error);
    struct stat status {};
    int reason = 0;
    std::unique_ptr<char[]> content;
    ssize_t count = 0;
    if (::fstat(file, &status) != 0) {
        reason = errno;
    } else if (!S_ISREG(status.st_mode)) {
        reason = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    } else if (static_cast<std::size_t>(status.st_size) > kLargestFile) {
        reason = EFBIG;
    } else {
        content.reset(new (std::nothrow) char[static_cast<std::size_t>(status.st_size) + 1]);
        count = content ? ReadAll(file, content.get(), static_cast<std::size_t>(status.st_size)) : -1;
        if (count < 0) reason = content ? errno : ENOMEM;
    }
    ::close(file);
    if (reason != 0) return Fail(path, reason, error);
    bytes = std::move(content);
    size = static_cast<std::size_t>(count);
    return true;
}

}  // namespace quib
