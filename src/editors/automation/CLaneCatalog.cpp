// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CLaneCatalog.h"

#include <algorithm>
#include <cmath>

#include "controls/CEntryDialog.h"
#include "model/Equalizer.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kValueSteps = 1024;  // tried for a typed value

QString Decibels(double decibels) {
    return QStringLiteral("%1%2 dB").arg(decibels >= 0.05 ? QStringLiteral("+") : QString()).arg(decibels, 0, 'f', 1);
}

QString Hertz(double hertz) {
    return hertz < 1000 ? QStringLiteral("%1 Hz").arg(hertz, 0, 'f', 0)
                        : QStringLiteral("%1 kHz").arg(hertz / 1000, 0, 'f', 2);
}

// What a text says as a number in the unit of the lane.
std::optional<double> TypedNumber(const QString& text) {
    const bool isNumber = std::any_of(text.begin(), text.end(), [](QChar letter) { return letter.isDigit(); });
    if (!isNumber) return std::nullopt;
    const double number = static_cast<double>(CEntryDialog::NumberOf(text));
    return text.contains(QLatin1Char('k'), Qt::CaseInsensitive) ? number * 1000 : number;
}

}  // namespace

QString CLaneCatalog::ValueText(const LaneEntry& lane, float value) const {
    const auto number = static_cast<double>(value);
    switch (lane.description.kind) {
        case ELaneKind::kLowPassFrequency:
        case ELaneKind::kBandPassFrequency:
        case ELaneKind::kHighPassFrequency:
            return Hertz(EqFrequencyHertz(value));
        case ELaneKind::kGain:
            return Decibels(EqGainDecibels(value));
        case ELaneKind::kResonance:
            return QStringLiteral("%1").arg(EqQuality((lane.key.index - 5) / 3, value), 0, 'f', 2);
        case ELaneKind::kLevel: {
            if (value < 0.5F) return QStringLiteral("-inf dB");
            const bool isChannel = lane.key.group == ELaneGroup::kMix && lane.key.index == 0;
            const float gain = isChannel ? tables.ChannelGain(value) : tables.SendGain(value);
            return Decibels(20 * std::log10(std::max(static_cast<double>(gain), 1e-6)));
        }
        case ELaneKind::kProgram:
            return QString::number(std::lround(number));
        case ELaneKind::kSwitch:
            return value >= 0.5F ? Text("On") : Text("Off");
        case ELaneKind::kContinuous:
            break;
    }
    const float range = lane.description.maximum - lane.description.minimum;
    if (lane.key.group != ELaneGroup::kMix && lane.description.maximum == 1.0F) {
        return QStringLiteral("%1 %").arg(number * 100, 0, 'f', 0);
    }
    return QString::number(number, 'f', range > 200 ? 1 : range > 5 ? 0 : 2);
}

// The laws of levels and filters have no inverse here: the nearest of many values is taken.
std::optional<float> CLaneCatalog::ValueOf(const LaneEntry& lane, const QString& text) const {
    const LaneDescription& range = lane.description;
    if (range.kind == ELaneKind::kSwitch) {
        if (text.trimmed().compare(Text("On"), Qt::CaseInsensitive) == 0) return 1.0F;
        if (text.trimmed().compare(Text("Off"), Qt::CaseInsensitive) == 0) return 0.0F;
    }
    if (range.kind == ELaneKind::kLevel && text.contains(QStringLiteral("inf"))) return range.minimum;
    const auto typed = TypedNumber(text);
    if (!typed) return std::nullopt;
    float best = range.minimum;
    double distance = std::numeric_limits<double>::infinity();
    for (int step = 0; step <= kValueSteps; ++step) {
        const float value = range.minimum + (range.maximum - range.minimum) * static_cast<float>(step) / kValueSteps;
        const QString written = ValueText(lane, value);
        if (written.contains(QStringLiteral("inf"))) continue;
        const double away = std::abs(TypedNumber(written).value_or(static_cast<double>(value)) - *typed);
        if (away < distance) best = value;
        distance = std::min(distance, away);
    }
    return best;
}

QString CLaneCatalog::GroupName(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const {
    if (group == ELaneGroup::kMidi) return Text("MIDI");
    if (group == ELaneGroup::kMix) return Text("MIX");
    if (group == ELaneGroup::kMaster) return Text("MASTER");
    const auto plugin = document.Lanes().PluginOf(instrument, group);
    return plugin ? QString::fromStdString(plugin->Identity().displayName).toUpper() : QString();
}

ESection CLaneCatalog::SectionOf(const LaneKey& key) noexcept {
    if (key.group == ELaneGroup::kMidi) return ESection::kKeyboard;
    if (key.group == ELaneGroup::kPlugin) return ESection::kPattern;
    if (key.group == ELaneGroup::kMaster) return key.index == 2 || key.index == 3 ? ESection::kEffects : ESection::kMix;
    if (key.group != ELaneGroup::kMix) return ESection::kEffects;
    if (key.index >= 3 && key.index <= 12) return ESection::kEqualiser;
    return key.index >= 13 && key.index <= 22 ? ESection::kEffects : ESection::kMix;
}

}  // namespace quib
