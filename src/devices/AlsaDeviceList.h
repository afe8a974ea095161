// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Names of ALSA's playback devices, in its own order. Editing thread; asks the system anew.

#include <string>
#include <vector>

namespace quib {

std::vector<std::string> ListAlsaDevices();

}  // namespace quib
