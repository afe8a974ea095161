// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/AlsaMessages.h"

#include <alsa/asoundlib.h>

#include <mutex>

namespace quib {

namespace {
std::once_flag quieted;

void Ignore(const char*, int, const char*, int, const char*, ...) {}
}  // namespace

void QuietAlsa() {
    std::call_once(quieted, [] { snd_lib_error_set_handler(&Ignore); });
}

}  // namespace quib
