// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The kernels' compilations, one per instruction set. For the choice in StripKernels.cpp only.

#include "engine/strip/StripKernels.h"

namespace quib {

const StripKernels& StripKernelsBaseline() noexcept;

// Null in a build for another processor. What it points to may only run where AVX2 is present.
const StripKernels* StripKernelsAvx2() noexcept;

}  // namespace quib
