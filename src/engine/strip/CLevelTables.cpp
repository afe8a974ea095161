// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/strip/CLevelTables.h"

#include <cmath>
#include <cstddef>

namespace quib {

namespace {

using Table = std::array<float, CLevelTables::kSize>;

// A geometric run over the indexes first..last that ends on a gain.
void FillRun(Table& table, int first, int last, double gainAtLast, double ratio) {
    for (int i = first; i <= last; ++i)
        table[static_cast<std::size_t>(i)] = static_cast<float>(gainAtLast * std::pow(ratio, i - last));
}

}  // namespace

CLevelTables::CLevelTables() {
    FillRun(send, 0, 63, 0.25, 1.0920085);
    FillRun(send, 64, 127, 1.0, 1.0222485);
    FillRun(channel, 0, 63, 0.25, 1.0920085);
    FillRun(channel, 64, 127, 2.0, 1.0335578);
    FillRun(crossfade, 0, 31, 0.1767767, 1.1308593);
    FillRun(crossfade, 32, 63, 0.70710677, 1.0457342);
    FillRun(crossfade, 64, 127, 1.0, 1.0055163);
}

unsigned CLevelTables::Index(float control) noexcept {
    constexpr float kLimit = 2147483520.0f;  // the largest float below 2^31
    if (!(control >= -kLimit && control <= kLimit)) return 0;
    return static_cast<unsigned>(static_cast<int>(control)) & static_cast<unsigned>(kSize - 1);
}

}  // namespace quib
