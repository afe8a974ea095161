// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Names of the sound devices that the user can choose from. Editing thread; asks the system anew.

#include <string>
#include <vector>

namespace quib {

// ALSA's playback devices in its own order, then JACK where its library is installed, then Silent.
std::vector<std::string> ListOutputDevices();

}  // namespace quib
