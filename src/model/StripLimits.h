// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How many of everything a channel strip has.

namespace quib {

constexpr int kSendCount = 4;
constexpr int kInsertCount = 2;
constexpr int kEqBandCount = 3;

}  // namespace quib
