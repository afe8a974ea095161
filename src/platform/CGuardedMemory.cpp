// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CGuardedMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <new>

namespace quib {

CGuardedMemory::CGuardedMemory(std::size_t bytes) {
    if (bytes == 0) return;
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    constexpr std::size_t kAlignment = 64;
    const std::size_t rounded = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    const std::size_t usable = (rounded + page - 1) / page * page;
    void* const start = mmap(nullptr, usable + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) throw std::bad_alloc();
    if (mprotect(static_cast<std::byte*>(start) + usable, page, PROT_NONE) != 0) {
        munmap(start, usable + page);
        throw std::bad_alloc();
    }
    mapping = start;
    mappingSize = usable + page;
    data = static_cast<std::byte*>(start) + (usable - rounded);
    size = bytes;
}

CGuardedMemory::~CGuardedMemory() {
    if (mapping != nullptr) munmap(mapping, mappingSize);
}

}  // namespace quib
