// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CFolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace quib {

namespace {

constexpr const char* kFileName = ".in-use";
constexpr mode_t kMode = 0644;
constexpr std::size_t kMostBytes = 256;

std::string OwnName() {
    std::array<char, kMostBytes> host{};
    (void)::gethostname(host.data(), host.size() - 1);
    return std::to_string(::getpid()) + " on " + host.data();
}

std::string ReadName(int file) {
    std::array<char, 2 * kMostBytes> text{};
    const ssize_t count = ::pread(file, text.data(), text.size(), 0);
    std::string name(text.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return name.substr(0, name.find('\n'));
}

}  // namespace

CFolderLock::~CFolderLock() {
    if (file >= 0) ::close(file);
}

// The file stays: removing it would let two processes lock two files of one name.
bool CFolderLock::Take(const std::filesystem::path& folder) {
    file = ::open((folder / kFileName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kMode);
    if (file < 0) return true;
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK) return true;
        holder = ReadName(file);
        ::close(file);
        file = -1;
        return false;
    }
    const std::string name = OwnName() + '\n';
    if (::ftruncate(file, 0) == 0) (void)!::pwrite(file, name.data(), name.size(), 0);
    return true;
}

}  // namespace quib
