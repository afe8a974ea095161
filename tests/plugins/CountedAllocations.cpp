// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugins/CountedAllocations.h"

#include <cstdlib>
#include <new>

namespace {
thread_local long allocations = 0;
}  // namespace

long quibtest::AllocationsOfThisThread() { return allocations; }

#if !defined(QUIB_SANITIZED)
// The plug-ins' libraries find these before those of the C++ library.
void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
#endif
