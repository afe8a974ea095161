// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/ChannelStrip.h"

#include <utility>

namespace quib {

namespace {

// Each member of a strip has one row of the table.
consteval bool RowsReachEveryMember() {
    StripValues values;
    float row = 0;
    for (const StripSetting& setting : kStripSettings) setting.member(values) = ++row;
    row = 0;
    for (const StripSetting& setting : kStripSettings) {
        if (setting.member(values) != ++row) return false;
    }
    return sizeof(StripValues) == kStripSettings.size() * sizeof(float);
}
static_assert(RowsReachEveryMember());

// Calls `visit` for every row; unrolled, so that the members are reached without calls.
template <class Visit>
void ForEachSetting(Visit visit) noexcept {
    [&]<std::size_t... Row>(std::index_sequence<Row...>) { (visit(kStripSettings[Row]), ...); }
    (std::make_index_sequence<kStripSettings.size()>());
}

}  // namespace

ChannelStrip::ChannelStrip() noexcept { SetValues(*this, InitialStripValues()); }

StripValues ValuesOf(const ChannelStrip& strip) noexcept {
    StripValues values;
    ForEachSetting([&](const StripSetting& setting) { setting.member(values) = setting.member(strip).Get(); });
    return values;
}

void SetValues(ChannelStrip& strip, const StripValues& values) noexcept {
    ForEachSetting([&](const StripSetting& setting) { setting.member(strip).Set(setting.member(values)); });
}

const StripSetting* StripSettingOf(const ChannelStrip& strip, const CValue* value) noexcept {
    for (const StripSetting& setting : kStripSettings) {
        if (&setting.member(strip) == value) return &setting;
    }
    return nullptr;
}

void KeepThroughReset(ChannelStrip& fresh, const ChannelStrip& old) noexcept {
    for (const StripSetting& setting : kStripSettings) {
        if (setting.staysOnReset) setting.member(fresh).Set(setting.member(old).Get());
    }
}

EqBandUpdate DesignEqBand(const ChannelStrip& strip, int band, double sampleRate) {
    const auto index = static_cast<std::size_t>(band);
    return DesignEqBand(band, strip.eqFreq[index].Get(), strip.eqQ[index].Get(), strip.eqGain[index].Get(), sampleRate);
}

}  // namespace quib
