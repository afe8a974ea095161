// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// An output without sound that renders by the clock, so that transport, meters and recorder work
// without a sound card. Also what plays on while a device is away.

#include <thread>

#include "devices/COutputDevice.h"
#include "platform/CWakeEvent.h"

namespace quib {

class CSilentOutput final : public COutputDevice {
public:
    static constexpr const char* kName = "Silent";

    explicit CSilentOutput(CAudio& engine) : COutputDevice(engine) {}
    ~CSilentOutput() override { Close(); }

    bool Open(const AudioSettings& settings, std::string& error) override;
    bool Start(std::string& error) override;
    void Stop() noexcept override;
    void Close() noexcept override;
    const std::string& Name() const noexcept override { return name; }
    DeviceFormat Format() const noexcept override { return format; }

private:
    void Run() noexcept;

    std::string name = kName;
    DeviceFormat format;
    CWakeEvent stopping;
    std::thread thread;
};

}  // namespace quib
