// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/ConsoleParts.h"

#include <algorithm>
#include <cmath>

#include "controls/CEntryDialog.h"
#include "controls/CSwitchFaderCtrl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

// The control value of a gain in decibels, by halving: the laws grow without exception.
float ControlOf(double decibels, float highest, const std::function<float(float)>& gain) {
    const auto wanted = static_cast<float>(std::pow(10.0, decibels / 20.0));
    float low = 0;
    float high = highest;
    for (int step = 0; step < 24; ++step) {
        const float middle = (low + high) / 2;
        (gain(middle) < wanted ? low : high) = middle;
    }
    return high;
}

}  // namespace

void BindValue(CControl& control, const ConsoleContext& context, const char* valueName, int infoString,
               std::function<void()> afterwards) {
    control.name = Text(valueName);
    control.infoString = infoString;
    CWorkstation& station = context.station;
    control.learns = station.Controllers().TargetOf(context.owner, control.Value());
    control.onGesture = [&station, owner = context.owner, afterwards](CControl& changed, float before) {
        station.Changes().ValueEdited(Part(owner, *changed.Value()), before, changed.ValueNow(), changed.name,
                                      afterwards);
    };
}

void BindSetting(CControl& control, const ConsoleContext& context, const ChannelStrip& strip, int infoString) {
    const StripSetting& setting = *StripSettingOf(strip, control.Value());
    control.minimum = setting.range.minimum;
    control.maximum = setting.range.maximum;
    if (!setting.IsSwitch()) control.defaultValue = setting.range.initial;
    BindValue(control, context, setting.name, infoString);
}

void BindLevel(CSwitchFaderCtrl& control, const ConsoleContext& context, const ChannelStrip& strip) {
    CWorkstation& station = context.station;
    const StripSetting& setting = *StripSettingOf(strip, control.Level());
    control.levelMaximum = setting.range.maximum;
    control.levelDefault = setting.range.initial;
    control.levelLearns = station.Controllers().TargetOf(context.owner, control.Level());
    control.onLevelGesture = [&station, owner = context.owner, name = Text(setting.name)](CControl& changed,
                                                                                          float before) {
        CValue* const level = static_cast<CSwitchFaderCtrl&>(changed).Level();
        station.Changes().ValueEdited(Part(owner, *level), before, level->Get(), name);
    };
}

void ShowDecibels(CControl& control, std::function<float(float)> gain) {
    control.formatValue = [gain](float value) {
        return value < 0.5F ? QStringLiteral("-inf dB") : Decibels(gain(value));
    };
    control.entryTitle = QStringLiteral("%1 (dB)").arg(control.name);
    control.onTextEntry = [gain](CControl& entered, const QString& text) {
        const bool silent = text.trimmed().startsWith(QStringLiteral("-inf"));
        const double decibels = static_cast<double>(CEntryDialog::NumberOf(text));
        entered.ChangeByUser(silent ? 0.0F : ControlOf(decibels, entered.maximum, gain));
    };
}

QString Decibels(float gain) {
    const double decibels = 20 * std::log10(std::max(static_cast<double>(gain), 1e-6));
    return QStringLiteral("%1%2 dB").arg(decibels >= 0.05 ? QStringLiteral("+") : QString()).arg(decibels, 0, 'f', 1);
}

QString BarBeatStep(int step, int stepsPerBeat, int beatsPerBar) {
    const int inBeat = std::max(1, stepsPerBeat);
    const int inBar = std::max(1, beatsPerBar);
    const int whole = std::max(0, step);
    return QStringLiteral("%1.%2.%3")
        .arg(whole / (inBeat * inBar) + 1, 3, 10, QLatin1Char('0'))
        .arg(whole / inBeat % inBar + 1)
        .arg(whole % inBeat + 1);
}

QString CountInText(int bars) {
    if (bars == 0) return Text("No count-in");
    return bars == 1 ? Text("1 bar") : Text("%1 bars").arg(bars);
}

QString PanText(float pan) {
    const auto percent = std::lround(std::abs(pan) * 100);
    if (percent == 0) return QStringLiteral("C");
    return QStringLiteral("%1 %2").arg(pan < 0 ? QLatin1Char('L') : QLatin1Char('R')).arg(percent);
}

QString SlotText(const PluginSlot* slot, const QString& empty) {
    if (slot == nullptr) return empty;
    if (slot->plugin) return QString::fromStdString(slot->plugin->Identity().displayName);
    if (!slot->missing) return empty;
    const std::string& name = slot->missing->displayName.empty() ? slot->missing->fileName : slot->missing->displayName;
    return Text("Missing: %1").arg(QString::fromStdString(name));
}

}  // namespace quib
