// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the user chose for sound output and MIDI input, as the settings hold it.

#include <string>

namespace quib {

struct AudioSettings {
    std::string outputDevice;  // name as in the device list
    int sampleRate = 44100;    // Hz
    int bufferSize = 2048;     // frames of one block
    std::string midiInDevice;  // name of a port, or "OFF"
    int threads = 1;           // render threads, the device's own included
};

}  // namespace quib
