// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/AlsaMessages.h"

#include <alsa/asoundlib.h>

namespace quib {

namespace {
void Ignore(const char*, int, const char*, int, const char*, ...) {}
}  // namespace

void QuietAlsa() {
    static const int result = snd_lib_error_set_handler(&Ignore);
    static_cast<void>(result);
}

}  // namespace quib
