// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of one fuzzer; QUIB_FUZZ_TARGET names its function.
#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quib::fuzz::QUIB_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
    return 0;
}
