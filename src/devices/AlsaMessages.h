// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quib {

// Keeps the ALSA library from printing its findings to standard error; what matters comes back as error
// codes. Any thread, before the library is used.
void QuietAlsa();

}  // namespace quib
