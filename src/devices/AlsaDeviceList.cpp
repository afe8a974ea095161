// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/AlsaDeviceList.h"

#include <alsa/asoundlib.h>

#include <cstdlib>
#include <memory>

#include "devices/AlsaMessages.h"

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

}  // namespace

std::vector<std::string> ListAlsaDevices() {
    QuietAlsa();
    std::vector<std::string> names;
    void** hints = nullptr;
    if (snd_device_name_hint(-1, "pcm", &hints) < 0) return names;
    for (void** hint = hints; *hint != nullptr; ++hint) {
        const HintText name(snd_device_name_get_hint(*hint, "NAME"));
        if (name && Plays(*hint) && std::string(name.get()) != "null") names.emplace_back(name.get());
    }
    snd_device_name_free_hint(hints);
    return names;
}

}  // namespace quib
