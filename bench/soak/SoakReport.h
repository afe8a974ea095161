// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the soak tests share: how long they run, and how they tell what they measured.

#include <fmt/format.h>

#include <cstdlib>
#include <string>

namespace quib {

// Set by scripts/soak: as long as the bars say, on a machine with nothing else to do. Otherwise short, judging
// nothing that other programs could spoil.
inline bool IsLong() { return std::getenv("QUIB_SOAK") != nullptr; }  // NOLINT(concurrency-mt-unsafe)

inline void Report(const std::string& what, const std::string& figures) {
    fmt::print("soak: {:<14} {}\n", what, figures);
}

}  // namespace quib
