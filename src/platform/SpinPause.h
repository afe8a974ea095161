// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace quib {

// Tells the processor that the calling thread waits in a loop.
inline void SpinPause() noexcept {
#if defined(__x86_64__) || defined(__i386__)
    _mm_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

}  // namespace quib
