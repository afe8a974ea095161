// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CMappedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace quib {

namespace {
constexpr mode_t kPrivateMode = 0600;
}

CMappedFile::~CMappedFile() {
    if (memory != nullptr) ::munmap(memory, bytes);
}

// Its blocks are taken at once: a disk that fills up later would end the process at a store.
bool CMappedFile::Create(const std::filesystem::path& file, std::size_t size) noexcept {
    const int opened = ::open(file.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, kPrivateMode);
    if (opened < 0) return false;
    void* mapped = MAP_FAILED;
    if (::posix_fallocate(opened, 0, static_cast<off_t>(size)) == 0) {
        mapped = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, opened, 0);
    }
    ::close(opened);
    if (mapped == MAP_FAILED) return false;
    if (memory != nullptr) ::munmap(memory, bytes);
    memory = static_cast<std::byte*>(mapped);
    bytes = size;
    return true;
}

}  // namespace quib
