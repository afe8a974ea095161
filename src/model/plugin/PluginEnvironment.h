// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the plug-in host needs of the program around it. One object, owned by the engine or by a tool,
// outlives its plug-ins. Its functions are called on the editing thread.

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "model/plugin/PlayTime.h"

namespace quib {

class CPlugin;

struct PluginEnvironment {
    // Rate in hertz and largest block that plug-ins are prepared for. Written by the editing thread
    // while nothing renders.
    double sampleRate = 44100.0;
    int blockSize = 2048;

    // Current folder of the process while a library loads; unset: left alone.
    std::filesystem::path applicationFolder;

    // Tells the user; `caption` is the title of the message.
    std::function<void(const std::string& text, const std::string& caption)> showMessage;
    // A plug-in asks for the application's idle work.
    std::function<void()> idle;
    // The user moved a parameter in the plug-in's own window (value 0..1), or took hold of it or let it go.
    std::function<void(CPlugin& plugin, int parameter, float value)> parameterChanged;
    std::function<void(CPlugin& plugin, int parameter, bool held)> parameterTouched;
    // A plug-in wants its own window in this size (pixels); gives whether it gets it.
    std::function<bool(CPlugin& plugin, int width, int height)> sizeWindow;
    // Where the song is, for a plug-in that asks outside rendering.
    std::function<void(PlayTime& time)> currentTime;

    void Message(const std::string& text, const std::string& caption) const {
        if (showMessage) showMessage(text, caption);
    }
};

}  // namespace quib
