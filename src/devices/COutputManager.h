// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Chooses, opens and watches the sound device that the engine plays through. Editing thread only. A device
// that goes away while it plays is stood in for by the silent output and taken back when it returns.

#include <functional>
#include <future>
#include <memory>
#include <string>

#include "devices/CAlsaMidiInput.h"
#include "devices/COutputDevice.h"
#include "devices/OutputBackEnds.h"
#include "engine/CAudio.h"

namespace quib {

class COutputManager {
public:
    struct Texts {
        std::string cannotOpen;  // first word of the messages: "Cannot open the driver"
        std::string deviceGone;  // what follows the name of a device that went away
    };
    // Shows a message box: its caption and its text.
    using Message = std::function<void(const std::string& caption, const std::string& text)>;

    static constexpr const char* kCaption = "QUIBBOX";
    static constexpr const char* kMidiOff = "OFF";

    COutputManager(CAudio& engine, Texts texts, Message message);
    ~COutputManager();
    COutputManager(const COutputManager&) = delete;
    COutputManager& operator=(const COutputManager&) = delete;

    // Closes what is open, then opens and starts what the settings name: the device of the back end that the
    // name belongs to, or, when that fails and has a substitute, one of any name; as often as the back end
    // wants to be tried. Plug-ins are told the format before the device starts. False when no device could
    // be opened: the user has been told and the engine stays held.
    bool OpenOutput(const AudioSettings& settings);
    void CloseOutput() noexcept;

    // Listens to the MIDI port of that name, now or when it appears; "OFF" to none. False when the system
    // refused; the user has been told.
    bool OpenMidiIn(const std::string& name);
    // Names of the MIDI ports that can be listened to.
    std::vector<std::string> ListMidiInputs() const;

    // From the 40 ms timer: follows a device that changed its format, went away or came back.
    void Poll();

    // The device that plays now; null when there is none.
    const COutputDevice* Device() const noexcept { return device.get(); }
    // Of all devices since the last OpenOutput.
    std::uint64_t Xruns() const noexcept;

private:
    using Made = std::unique_ptr<COutputDevice>;

    bool OpenNamed();
    bool OpenOf(const OutputBackEnd& backEnd);
    bool TryDevice(Made candidate);
    void PrepareEngine(const DeviceFormat& format);
    void DropDevice() noexcept;
    void FollowFormat();
    void StandIn();
    void LookForReturn();

    CAudio& audio;
    Texts texts;
    Message message;
    COutputBackEnds backEnds;
    AudioSettings settings;
    CAlsaMidiInput midiInput{audio};
    Made device;
    std::string lostName;  // device that is waited for; empty when none is
    std::future<Made> comeback;
    std::uint64_t nextAttempt = 0;  // nanoseconds
    std::uint64_t formerXruns = 0;
    bool holding = false;
};

}  // namespace quib
