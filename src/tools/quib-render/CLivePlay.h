// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Plays what the engine holds in real time on a sound device, and shows how it goes on the terminal. One
// thread, which is the editing thread.

#include <functional>
#include <string>

#include "devices/CLame.h"
#include "devices/COutputManager.h"
#include "engine/CAudio.h"

namespace quib {

class CLivePlay {
public:
    struct Options {
        AudioSettings audio;
        std::filesystem::path record;  // sound file that takes what is played; empty: none
        double seconds = 0;            // ends after this; 0: never
        int steps = 0;                 // ends after these; 0: never
    };
    using Say = std::function<void(const std::string& line)>;

    CLivePlay(CAudio& engine, Say sayLine);

    // Plays from the start until the music ends, the time is over or `stopped` says so. False when no
    // device could be opened or the recording is not whole; the user has been told.
    bool Run(const Options& options, const std::function<bool()>& stopped);

private:
    bool Begin(const Options& options);
    void PlayUntil(double seconds, const std::function<bool()>& stopped);
    void Turn();
    void ShowState();
    void SayRecorderFailed();

    CAudio& audio;
    CLame recorder;
    Say say;
    COutputManager output;
    std::uint64_t startTime = 0;  // nanoseconds
    std::uint64_t shownTime = 0;
};

}  // namespace quib
