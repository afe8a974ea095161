// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A PCM device of ALSA: 16-bit interleaved stereo through a ring of five blocks, fed by a time-critical
// thread of its own. A ring that ran dry is filled again and counted; a device that disappears ends the
// thread and leaves the state Lost.

#include <alsa/asoundlib.h>
#include <poll.h>

#include <thread>
#include <vector>

#include "devices/COutputDevice.h"
#include "platform/CWakeEvent.h"

namespace quib {

class CAlsaOutput final : public COutputDevice {
public:
    static constexpr const char* kDefaultDevice = "default";
    static constexpr unsigned kBlocks = 5;

    CAlsaOutput(CAudio& engine, EFallback whenAbsent) : COutputDevice(engine), fallback(whenAbsent) {}
    ~CAlsaOutput() override { Close(); }

    // The device's nearest rate and block size become the format.
    bool Open(const AudioSettings& settings, std::string& error) override;
    bool Start(std::string& error) override;
    void Stop() noexcept override;
    void Close() noexcept override;
    // The device that was really opened.
    const std::string& Name() const noexcept override { return name; }
    DeviceFormat Format() const noexcept override { return format; }
    int Latency() const noexcept override { return ringFrames - format.blockSize; }
    // Frames of the whole ring as the device granted it.
    int RingFrames() const noexcept { return ringFrames; }

private:
    int OpenPcm(const std::string& wanted);
    int Configure(const AudioSettings& settings);
    int FillWithSilence() noexcept;
    void Run() noexcept;
    int Feed() noexcept;
    int WriteBlock() noexcept;
    int Recover(int error) noexcept;
    bool WaitForRoom() noexcept;
    void PaceWithoutClock() noexcept;

    EFallback fallback;
    std::string name;
    DeviceFormat format;
    int ringFrames = 0;
    snd_pcm_t* pcm = nullptr;
    std::vector<std::int16_t> interleaved;
    std::vector<pollfd> descriptors;  // the first is `stopping`
    CWakeEvent stopping;
    std::thread thread;

    // Feeding thread.
    std::uint64_t progressTime = 0;  // nanoseconds
    std::uint64_t startTime = 0;     // nanoseconds; since when frames are counted
    std::int64_t framesWritten = 0;
    bool ownClock = false;  // the device has none
};

}  // namespace quib
