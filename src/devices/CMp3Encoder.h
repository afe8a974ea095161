// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The MP3 encoder of the system, opened at run time, and the few of its functions that a recording
// needs, declared here by their published C interface. Filled once, then only read; its functions
// serve one stream on one thread at a time, never a render thread.

#include <filesystem>
#include <string>

#include "platform/CDynamicLibrary.h"

namespace quib {

class CMp3Encoder {
public:
    static constexpr const char* kLibraryName = "libmp3lame.so.0";

    using Stream = void*;
    using Setting = int (*)(Stream, int);

    // Opens the library and finds every function; false, with the reason in `error`, if one is missing.
    bool Load(const std::filesystem::path& library, std::string& error);
    bool IsAvailable() const noexcept { return available; }

    Stream (*init)() = nullptr;
    Setting setInputRate = nullptr;
    Setting setOutputRate = nullptr;
    Setting setChannels = nullptr;
    Setting setMode = nullptr;
    Setting setBitRate = nullptr;  // kbit/s
    Setting setPrivateBit = nullptr;
    Setting setErrorProtection = nullptr;
    Setting setCopyright = nullptr;
    Setting setOriginal = nullptr;
    Setting setInfoTag = nullptr;
    int (*initParameters)(Stream) = nullptr;
    // Frames in, bytes written to `output` out; below 0 on an error.
    int (*encode)(Stream, short* interleaved, int frames, unsigned char* output, int outputBytes) = nullptr;
    int (*flush)(Stream, unsigned char* output, int outputBytes) = nullptr;
    // The frame for the start of the file, known at its end; its bytes, or what it needs if `outputBytes` is less.
    std::size_t (*getInfoTag)(Stream, unsigned char* output, std::size_t outputBytes) = nullptr;
    int (*close)(Stream) = nullptr;

private:
    CDynamicLibrary library;
    bool available = false;
};

}  // namespace quib
