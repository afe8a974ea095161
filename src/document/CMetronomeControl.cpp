// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CMetronomeControl.h"

#include <algorithm>
#include <cmath>

#include "document/CSettings.h"

namespace quib {

namespace {

constexpr const char* kOn = "Metronome";
constexpr const char* kLevel = "MetronomeLevel";
constexpr const char* kCountIn = "CountIn";

float Gain(int decibels) { return std::pow(10.0F, static_cast<float>(decibels) / 20); }

}  // namespace

CMetronomeControl::CMetronomeControl(const DocumentContext& document) : context(document) {
    const auto read = [this](const char* name, int missing) {
        return context.settings.ReadSettingInt(kSettingsSection, QLatin1String(name), missing);
    };
    Values().on.Set(read(kOn, 0) == 1 ? 1.0F : 0.0F);
    Values().level.Set(Gain(std::clamp(read(kLevel, kDefaultLevel), kSoftest, 0)));
    Values().countIn.Set(std::clamp(read(kCountIn, 0), 0, kMostBars));
}

void CMetronomeControl::Keep() { context.settings.SetOn(QLatin1String(kOn), On().IsOn()); }

void CMetronomeControl::SetOn(bool on) {
    On().Set(on ? 1.0F : 0.0F);
    Keep();
}

int CMetronomeControl::Level() const noexcept {
    return static_cast<int>(std::lround(20 * std::log10(Values().level.Get())));
}

void CMetronomeControl::SetLevel(int decibels) {
    Values().level.Set(Gain(decibels));
    context.settings.WriteSettingInt(kSettingsSection, QLatin1String(kLevel), decibels);
}

void CMetronomeControl::SetCountIn(int bars) {
    Values().countIn.Set(bars);
    context.settings.WriteSettingInt(kSettingsSection, QLatin1String(kCountIn), bars);
}

}  // namespace quib
