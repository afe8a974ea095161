// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One channel strip of an instrument: its settings, each readable and writable by any thread, and what
// others tell it. Copies of the settings are taken one by one: they need not be of one moment.

#include "model/Equalizer.h"
#include "model/StripSettings.h"

namespace quib {

struct ChannelStrip : StripFields<CValue> {
    // With the values that the table has for a new strip.
    ChannelStrip() noexcept;

    CValue soloMuted;  // switch, set by the solo rule of the console
    CValue peak;       // meter, written by the render thread: 0..
};

StripValues ValuesOf(const ChannelStrip& strip) noexcept;
void SetValues(ChannelStrip& strip, const StripValues& values) noexcept;

// The row of the setting of this strip that `value` is; null when it is none.
const StripSetting* StripSettingOf(const ChannelStrip& strip, const CValue* value) noexcept;

// Gives the strip of an instrument made anew what a reset leaves alone.
void KeepThroughReset(ChannelStrip& fresh, const ChannelStrip& old) noexcept;

// The filter of a band 0..2 from the settings of the strip.
EqBandUpdate DesignEqBand(const ChannelStrip& strip, int band, double sampleRate);

}  // namespace quib
