// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/OutputDeviceList.h"

#include <alsa/asoundlib.h>

#include <cstdlib>
#include <memory>

#include "devices/AlsaMessages.h"
#include "devices/CJackOutput.h"
#include "devices/CSilentOutput.h"

namespace quib {

namespace {

struct CFree {
    void operator()(char* text) const noexcept { std::free(text); }
};
using HintText = std::unique_ptr<char, CFree>;

// A hint without direction serves both.
bool Plays(const void* hint) {
    const HintText direction(snd_device_name_get_hint(hint, "IOID"));
    return !direction || std::string(direction.get()) == "Output";
}

void AppendAlsaDevices(std::vector<std::string>& names) {
    QuietAlsa();
    void** hints = nullptr;
    if (snd_device_name_hint(-1, "pcm", &hints) < 0) return;
    for (void** hint = hints; *hint != nullptr; ++hint) {
        const HintText name(snd_device_name_get_hint(*hint, "NAME"));
        if (name && Plays(*hint) && std::string(name.get()) != "null") names.emplace_back(name.get());
    }
    snd_device_name_free_hint(hints);
}

}  // namespace

std::vector<std::string> ListOutputDevices() {
    std::vector<std::string> names;
    AppendAlsaDevices(names);
    if (CJackLibrary::Installed() != nullptr) names.emplace_back(CJackOutput::kName);
    names.emplace_back(CSilentOutput::kName);
    return names;
}

}  // namespace quib
