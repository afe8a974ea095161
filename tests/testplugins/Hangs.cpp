// SPDX-License-Identifier: GPL-3.0-or-later
// A plug-in that never comes back from its entry point.
#include <chrono>
#include <thread>

#include "model/plugin/vst2/Vst2.h"

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback) {
    for (;;) std::this_thread::sleep_for(std::chrono::hours(1));
}
