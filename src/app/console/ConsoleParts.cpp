// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/ConsoleParts.h"

#include <algorithm>
#include <cmath>

#include "controls/CEntryDialog.h"
#include "controls/CSwitchFaderCtrl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kUnit = 3;  // letters of " dB"

double DecibelsOf(float gain) { return 20 * std::log10(std::max(static_cast<double>(gain), 1e-6)); }

// The control value whose gain is nearest to so many decibels. The laws know whole values only.
float ControlOf(double decibels, float highest, const std::function<float(float)>& gain) {
    float nearest = 0;
    for (float control = 1; control <= highest; ++control) {
        const auto error = [&](float of) { return std::abs(DecibelsOf(of < 1 ? 0.0F : gain(of)) - decibels); };
        if (error(control) < error(nearest)) nearest = control;
    }
    return nearest;
}

QString DecibelsOfControl(float control, const std::function<float(float)>& gain) {
    return control < 0.5F ? QStringLiteral("-inf dB") : Decibels(gain(control));
}

float ControlOfText(const QString& text, float highest, const std::function<float(float)>& gain) {
    if (text.trimmed().startsWith(QStringLiteral("-inf"))) return 0;
    return ControlOf(static_cast<double>(CEntryDialog::NumberOf(text)), highest, gain);
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
    control.formatValue = [gain](float value) { return DecibelsOfControl(value, gain); };
    control.formatEntry = [gain](float value) { return DecibelsOfControl(value, gain).chopped(kUnit); };
    control.entryTitle = QStringLiteral("%1 (dB)").arg(control.name);
    control.onTextEntry = [gain](CControl& entered, const QString& text) {
        entered.TakeNumber(ControlOfText(text, entered.maximum, gain));
    };
}

void ShowLevelDecibels(CSwitchFaderCtrl& control, std::function<float(float)> gain) {
    control.formatLevel = [gain](float value) { return DecibelsOfControl(value, gain); };
    control.onTextEntry = [gain, &control](CControl&, const QString& text) {
        control.TakeNumber(ControlOfText(text, control.levelMaximum, gain));
    };
}

void ShowPercent(CControl& control) {
    const auto percent = [&control](float) {
        return QString::number(std::lround(static_cast<double>(control.Share()) * 100));
    };
    control.formatEntry = percent;
    if (!control.formatValue)
        control.formatValue = [percent](float shown) { return percent(shown) + QStringLiteral(" %"); };
    control.onTextEntry = [](CControl& entered, const QString& text) {
        const float share = CEntryDialog::NumberOf(text) / 100;
        entered.TakeNumber(entered.minimum + share * (entered.maximum - entered.minimum));
    };
}

void ShowPan(CControl& control) {
    control.formatValue = control.formatEntry = PanText;
    control.onTextEntry = [](CControl& entered, const QString& text) { entered.TakeNumber(PanOf(text)); };
}

QString Decibels(float gain) {
    const double exact = DecibelsOf(gain);
    const double decibels = std::abs(exact) < 0.05 ? 0 : exact;  // never "-0.0"
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

float PanOf(const QString& text) {
    const QString plain = text.trimmed().toUpper();
    const bool isSided = plain.startsWith(QLatin1Char('L')) || plain.startsWith(QLatin1Char('R'));
    const float percent = CEntryDialog::NumberOf(isSided ? plain.mid(1) : plain);
    return (plain.startsWith(QLatin1Char('L')) ? -percent : percent) / 100;
}

QString SlotText(const PluginSlot* slot, const QString& empty) {
    if (slot == nullptr) return empty;
    if (slot->plugin) return QString::fromStdString(slot->plugin->Identity().displayName);
    if (!slot->missing) return empty;
    const std::string& name = slot->missing->displayName.empty() ? slot->missing->fileName : slot->missing->displayName;
    return Text("Missing: %1").arg(QString::fromStdString(name));
}

}  // namespace quib
