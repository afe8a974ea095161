// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The JACK client library of the system, opened at run time, and the few of its functions that the
// program needs, declared here by their published C interface. Filled once, then only read.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/CDynamicLibrary.h"

namespace quib {

namespace jack {

struct Client;
struct Port;

struct MidiEvent {
    std::uint32_t time;  // frame of the block
    std::size_t size;    // bytes
    unsigned char* buffer;
};

constexpr int kNoStartServer = 0x01;  // option of opening a client
constexpr unsigned long kPortIsInput = 0x1;
constexpr unsigned long kPortIsOutput = 0x2;
constexpr unsigned long kPortIsPhysical = 0x4;
constexpr const char* kAudioType = "32 bit float mono audio";
constexpr const char* kMidiType = "8 bit raw midi";

using FramesCallback = int (*)(std::uint32_t frames, void* context);
// Nearest and farthest way of a port to the loudspeaker or from the microphone, in frames.
struct LatencyRange {
    std::uint32_t minimum;
    std::uint32_t maximum;
};
constexpr int kPlaybackLatency = 1;

using ConnectCallback = void (*)(std::uint32_t first, std::uint32_t second, int connected, void* context);
using XrunCallback = int (*)(void* context);
using ShutdownCallback = void (*)(void* context);
using TextCallback = void (*)(const char* text);

}  // namespace jack

class CJackLibrary {
public:
    static constexpr const char* kLibraryName = "libjack.so.0";

    // The library, or null where it is not installed. Any thread.
    static std::shared_ptr<const CJackLibrary> Load();

    jack::Client* (*open)(const char* name, int options, int* status, ...) = nullptr;
    int (*close)(jack::Client*) = nullptr;
    int (*activate)(jack::Client*) = nullptr;
    std::uint32_t (*sampleRate)(jack::Client*) = nullptr;
    std::uint32_t (*blockSize)(jack::Client*) = nullptr;
    int (*realTimePriority)(jack::Client*) = nullptr;  // below 0: none
    int (*setProcess)(jack::Client*, jack::FramesCallback, void* context) = nullptr;
    int (*setBlockSize)(jack::Client*, jack::FramesCallback, void* context) = nullptr;
    int (*setSampleRate)(jack::Client*, jack::FramesCallback, void* context) = nullptr;
    int (*setXrun)(jack::Client*, jack::XrunCallback, void* context) = nullptr;
    int (*setConnect)(jack::Client*, jack::ConnectCallback, void* context) = nullptr;
    void (*onShutdown)(jack::Client*, jack::ShutdownCallback, void* context) = nullptr;
    jack::Port* (*registerPort)(jack::Client*, const char* name, const char* type, unsigned long flags,
                                unsigned long bufferSize) = nullptr;
    jack::Port* (*portById)(jack::Client*, std::uint32_t id) = nullptr;
    void (*latencyRange)(jack::Port*, int mode, jack::LatencyRange*) = nullptr;
    void* (*buffer)(jack::Port*, std::uint32_t frames) = nullptr;
    const char* (*portName)(const jack::Port*) = nullptr;
    // Names ended by a null pointer, to be freed; null for none.
    const char** (*connections)(const jack::Client*, const jack::Port*) = nullptr;
    const char** (*ports)(jack::Client*, const char* namePattern, const char* typePattern,
                          unsigned long flags) = nullptr;
    int (*connect)(jack::Client*, const char* source, const char* target) = nullptr;
    void (*free)(void*) = nullptr;
    std::uint32_t (*midiCount)(void* portBuffer) = nullptr;
    int (*midiEvent)(jack::MidiEvent*, void* portBuffer, std::uint32_t index) = nullptr;

private:
    CJackLibrary();

    void (*setErrorText)(jack::TextCallback) = nullptr;
    void (*setInfoText)(jack::TextCallback) = nullptr;
    CDynamicLibrary library;
    bool complete = false;
};

}  // namespace quib
