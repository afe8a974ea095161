// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A thing that pulls blocks from the engine in time: a sound device, or a clock. The editing thread opens,
// starts, stops and closes it; between Start and Stop one thread of the device's own calls
// CAudio::RenderBlock. State and counters may be read by any thread.

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "devices/AudioSettings.h"
#include "engine/CAudio.h"
#include "platform/Clock.h"

namespace quib {

enum class EOutputState {
    kClosed,
    kOpen,           // claimed, its format known, not calling the engine
    kPlaying,        // calling the engine
    kFormatChanged,  // plays silence until it is stopped and started with the engine in its new format
    kLost,           // gone; only Close makes sense
};

// Which device to take when there is none of the wanted name.
enum class EFallback { kNone, kDefaultDevice };

struct DeviceFormat {
    int sampleRate = 0;  // Hz
    int blockSize = 0;   // frames

    friend bool operator==(const DeviceFormat&, const DeviceFormat&) = default;
};

class COutputDevice {
public:
    explicit COutputDevice(CAudio& engine) : audio(engine) {}
    COutputDevice(const COutputDevice&) = delete;
    COutputDevice& operator=(const COutputDevice&) = delete;
    virtual ~COutputDevice() = default;

    // Claims the device and settles its format. On failure says why in `error` and leaves it closed. Does
    // not touch the engine: may run on any one thread.
    virtual bool Open(const AudioSettings& settings, std::string& error) = 0;
    // Begins to render; the engine has the format of the device.
    virtual bool Start(std::string& error) = 0;
    // When it returns no block is being rendered and none will be until the next Start.
    virtual void Stop() noexcept = 0;
    // Stops, and gives the device back. Nothing happens to a closed one.
    virtual void Close() noexcept = 0;
    // From the 40 ms timer, while it plays.
    virtual void Watch() {}
    // Devices that bring MIDI along: the ports that can be listened to, and the name of the one to listen
    // to besides what the user connects by other means; empty to be deaf.
    virtual std::vector<std::string> MidiPorts() const { return {}; }
    virtual void ListenTo(const std::string&) {}

    // Name under which it stands in the device list.
    virtual const std::string& Name() const noexcept = 0;
    virtual DeviceFormat Format() const noexcept = 0;
    // Frames from the rendering of a block to the sound of its first one; 0 where it is not known.
    virtual int Latency() const noexcept { return 0; }

    EOutputState State() const noexcept { return state.load(std::memory_order_acquire); }
    // Blocks that did not reach the device in time, since it was opened.
    std::uint64_t Xruns() const noexcept { return xruns.load(std::memory_order_relaxed); }
    // False when the device's thread was refused real-time scheduling.
    bool IsRealTime() const noexcept { return realTime.load(std::memory_order_relaxed); }

protected:
    // The device's thread: one block into the master buffers. False when the device is to play silence in
    // its stead: the user paused, or the engine is being prepared, or an older device ends its last block.
    bool RenderBlock() noexcept { return RenderBlock(Nanoseconds()); }
    // Of a device that stamps messages itself: `now` in nanoseconds, as CAudio's.
    bool RenderBlock(std::uint64_t now) noexcept { return !audio.paused.IsOn() && audio.RenderBlock(now); }
    // A device that is lost stays so until it is closed.
    void SetState(EOutputState next) noexcept {
        EOutputState now = State();
        while (now != EOutputState::kLost || next == EOutputState::kClosed) {
            if (state.compare_exchange_weak(now, next, std::memory_order_acq_rel)) return;
        }
    }
    // What the device found out by itself; never overrides what the editing thread did meanwhile.
    void LeavePlaying(EOutputState next) noexcept {
        EOutputState playing = EOutputState::kPlaying;
        state.compare_exchange_strong(playing, next, std::memory_order_acq_rel);
    }

    CAudio& audio;
    std::atomic<std::uint64_t> xruns{0};
    std::atomic<bool> realTime{true};

private:
    std::atomic<EOutputState> state{EOutputState::kClosed};
};

}  // namespace quib
