// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/Terminal.h"

#include <fmt/format.h>

#include <cstdio>

namespace quib {

void Say(const std::string& text) { fmt::print(stderr, "quib-render: {}\n", text); }

CProgressBar::~CProgressBar() {
    if (drawn >= 0) fmt::print(stderr, "\r{:60}\r", "");
}

void CProgressBar::Show(double share) {
    constexpr int kWidth = 50;
    const int cells = static_cast<int>(share * kWidth);
    if (!terminal || cells == drawn) return;
    drawn = cells;
    fmt::print(stderr, "\r[{:<{}}] {:3.0f} %", std::string(static_cast<std::size_t>(cells), '#'), kWidth,
               share * 100.0);
    std::fflush(stderr);
}

}  // namespace quib
