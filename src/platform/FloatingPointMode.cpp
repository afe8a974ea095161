// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FloatingPointMode.h"

#if defined(__x86_64__) || defined(__i386__) || defined(_M_X64)
#include <immintrin.h>
#define QUIB_HAS_MXCSR 1
#endif

namespace quib {

#if defined(QUIB_HAS_MXCSR)

namespace {
constexpr unsigned kFlushToZero = 0x8000;
constexpr unsigned kDenormalsAreZero = 0x0040;
}  // namespace

unsigned ReadFloatingPointMode() noexcept { return _mm_getcsr(); }
void WriteFloatingPointMode(unsigned mode) noexcept { _mm_setcsr(mode); }
void SetFlushToZero() noexcept { _mm_setcsr(_mm_getcsr() | kFlushToZero | kDenormalsAreZero); }

#else

unsigned ReadFloatingPointMode() noexcept { return 0; }
void WriteFloatingPointMode(unsigned) noexcept {}
void SetFlushToZero() noexcept {}

#endif

}  // namespace quib
