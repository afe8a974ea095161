// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/strip/StripKernels.h"

#include "engine/strip/StripKernelSets.h"

namespace quib {

const StripKernels* FindStripKernels(StripInstructions instructions) noexcept {
    if (instructions == StripInstructions::sse2) return &StripKernelsBaseline();
#if defined(__x86_64__) || defined(__i386__)
    if (__builtin_cpu_supports("avx2")) return StripKernelsAvx2();
#endif
    return nullptr;
}

const StripKernels& BestStripKernels() noexcept {
    const StripKernels* wide = FindStripKernels(StripInstructions::avx2);
    return wide ? *wide : StripKernelsBaseline();
}

}  // namespace quib
