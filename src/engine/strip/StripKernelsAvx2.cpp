// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/strip/StripKernelSets.h"

#if defined(__AVX2__)

#define QUIB_STRIP_LANES 8
#include "engine/strip/MasterKernel.h"
#include "engine/strip/MixKernel.h"
#include "engine/strip/ProcessKernel.h"

namespace quib {

const StripKernels* StripKernelsAvx2() noexcept {
    static constexpr StripKernels kKernels = {"AVX2", ProcessStrips, MixStrips, ProcessMaster};
    return &kKernels;
}

}  // namespace quib

#else

namespace quib {

const StripKernels* StripKernelsAvx2() noexcept { return nullptr; }

}  // namespace quib

#endif
