// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Sets the processor's flush-to-zero mode for a scope and puts the host's mode back afterwards, so
// that a plug-in neither stalls on denormal numbers nor sounds different from host to host.

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace quibplug {

class CFlushToZero {
public:
#if defined(__SSE2__)
    CFlushToZero() noexcept : m_before(_mm_getcsr()) { _mm_setcsr(m_before | kFlushToZero | kDenormalsAreZero); }
    ~CFlushToZero() { _mm_setcsr(m_before); }
#else
    CFlushToZero() noexcept = default;
#endif
    CFlushToZero(const CFlushToZero&) = delete;
    CFlushToZero& operator=(const CFlushToZero&) = delete;

#if defined(__SSE2__)
private:
    static constexpr unsigned kFlushToZero = 0x8000;
    static constexpr unsigned kDenormalsAreZero = 0x0040;
    unsigned m_before;
#endif
};

}  // namespace quibplug
