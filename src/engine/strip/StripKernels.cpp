// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/strip/StripKernels.h"

#include "engine/strip/StripKernelSets.h"

namespace quib {

const StripKernels* FindStripKernels(EStripInstructions instructions) noexcept {
    if (instructions == EStripInstructions::kSse2) return &StripKernelsBaseline();
#if defined(__x86_64__) || defined(__i386__)
    if (__builtin_cpu_supports("avx2")) return StripKernelsAvx2();
#endif
    return nullptr;
}

const StripKernels& BestStripKernels() noexcept {
    const StripKernels* wide = FindStripKernels(EStripInstructions::kAvx2);
    return wide ? *wide : StripKernelsBaseline();
}

}  // namespace quib
