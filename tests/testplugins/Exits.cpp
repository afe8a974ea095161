// SPDX-License-Identifier: GPL-3.0-or-later
// A plug-in that ends the process while it loads.
#include <cstdlib>

#include "model/plugin/vst2/Vst2.h"

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback) { std::exit(0); }
