// SPDX-License-Identifier: GPL-3.0-or-later
#define QUIB_STRIP_LANES 4
#include "engine/strip/MasterKernel.h"
#include "engine/strip/MixKernel.h"
#include "engine/strip/ProcessKernel.h"
#include "engine/strip/StripKernelSets.h"

namespace quib {

const StripKernels& StripKernelsBaseline() noexcept {
    static constexpr StripKernels kKernels = {"SSE2", ProcessStrips, MixStrips, ProcessMaster};
    return kKernels;
}

}  // namespace quib
