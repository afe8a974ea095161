// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quib {

// Of loops, and of the beats that are found in sounds: the detector, the loop creator and the loops' player know no
// other time.
constexpr int kBeatsOfBar = 4;

}  // namespace quib
