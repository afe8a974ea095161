// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The metronome and the count-in as windows set them; kept in the settings. User-interface thread.

#include "document/DocumentContext.h"

namespace quib {

class CMetronomeControl {
public:
    static constexpr int kMostBars = 2;   // that are counted in
    static constexpr int kSoftest = -24;  // decibels
    static constexpr int kDefaultLevel = -6;

    explicit CMetronomeControl(const DocumentContext& document);

    // The engine's switch; whoever moves it calls Keep.
    CValue& On() const noexcept { return Values().on; }
    void Keep();
    void SetOn(bool on);
    // Decibels, kSoftest to 0.
    int Level() const noexcept;
    void SetLevel(int decibels);
    // Bars, 0 to kMostBars.
    int CountIn() const noexcept { return Values().countIn.Get(); }
    void SetCountIn(int bars);

private:
    MetronomeSettings& Values() const noexcept { return context.audio.metronome; }

    const DocumentContext& context;
};

}  // namespace quib
