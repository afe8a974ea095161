// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CLaneCatalog.h"

#include <algorithm>
#include <cmath>

#include "controls/CEntryDialog.h"
#include "model/Equalizer.h"
#include "model/MixLanes.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kValueSteps = 1024;  // tried for a typed value

bool IsEffect(ELaneGroup group) noexcept { return group >= ELaneGroup::kEffect1; }
bool IsOfMaster(ELaneGroup group) noexcept { return group >= ELaneGroup::kMaster; }

SlotPlace SlotOf(ELaneGroup group, std::uint32_t instrument) noexcept {
    using EKind = SlotPlace::EKind;
    if (IsEffect(group)) return {EKind::kEffect, 0, static_cast<int>(group) - static_cast<int>(ELaneGroup::kEffect1)};
    if (group >= ELaneGroup::kMasterInsert1) return {EKind::kMasterInsert, 0, group == ELaneGroup::kMasterInsert2};
    if (group >= ELaneGroup::kInsert1) return {EKind::kInsert, instrument, group == ELaneGroup::kInsert2};
    return {EKind::kInstrument, instrument, 0};
}

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

void CLaneCatalog::AddPlugin(std::vector<LaneEntry>& lanes, const std::shared_ptr<CInstrument>& instrument,
                             ELaneGroup group) const {
    const auto plugin = PluginOf(instrument, group);
    if (!plugin) return;
    const auto first = static_cast<std::ptrdiff_t>(lanes.size());
    for (const PluginParameter& parameter : plugin->Parameters()) {
        const int index = static_cast<int>(lanes.size()) - static_cast<int>(first);
        lanes.push_back({{group, index}, {parameter.name, 0, 1, 0, ELaneKind::kContinuous}});
    }
    std::stable_sort(lanes.begin() + first, lanes.end(),
                     [](const LaneEntry& a, const LaneEntry& b) { return a.description.name < b.description.name; });
}

std::vector<LaneEntry> CLaneCatalog::Lanes(const std::shared_ptr<CInstrument>& instrument, bool song) const {
    std::vector<LaneEntry> lanes;
    const auto add = [&lanes](ELaneGroup group, const auto& descriptions, int count) {
        for (int index = 0; index < count; ++index) {
            lanes.push_back({{group, index}, descriptions[static_cast<std::size_t>(index)]});
        }
    };
    if (instrument) {
        if (!song) add(ELaneGroup::kMidi, MidiLanes(), kMidiLaneCount);
        add(ELaneGroup::kMix, MixParameters(), kMixLaneCount);
        AddPlugin(lanes, instrument, ELaneGroup::kPlugin);
    }
    if (!song) return lanes;
    for (const ELaneGroup group : {ELaneGroup::kInsert1, ELaneGroup::kInsert2}) {
        if (instrument) AddPlugin(lanes, instrument, group);
    }
    add(ELaneGroup::kMaster, MasterLanes(), kMasterLaneCount);
    for (int group = static_cast<int>(ELaneGroup::kMasterInsert1); group <= static_cast<int>(ELaneGroup::kEffect4);
         ++group) {
        AddPlugin(lanes, instrument, static_cast<ELaneGroup>(group));
    }
    return lanes;
}

std::shared_ptr<CPlugin> CLaneCatalog::PluginOf(const std::shared_ptr<CInstrument>& instrument,
                                                ELaneGroup group) const {
    if (group == ELaneGroup::kMidi || group == ELaneGroup::kMix || group == ELaneGroup::kMaster) return nullptr;
    if (!IsOfMaster(group) && !instrument) return nullptr;
    const auto slot = document.Places().Slot(SlotOf(group, instrument ? instrument->Id() : 0));
    return slot ? slot->plugin : nullptr;
}

Place<CEventLanes> CLaneCatalog::PlaceOf(const std::shared_ptr<CInstrument>& instrument, ELaneGroup group) const {
    if (group == ELaneGroup::kMaster) return {EnginePart(document.Audio().masterLanes), {EChange::kLanes}};
    if (IsOfMaster(group)) {
        const auto plugin = PluginOf(instrument, group);
        return {plugin ? Part(plugin, plugin->lanes) : nullptr, {EChange::kLanes}};
    }
    if (!instrument) return {};
    constexpr std::array kFamilies = {ELanes::kMidi, ELanes::kMix, ELanes::kPlugin, ELanes::kInsert1, ELanes::kInsert2};
    return document.Contents().LanesPlace(instrument, kFamilies[static_cast<std::size_t>(group)]);
}

std::optional<float> CLaneCatalog::ValueNow(const std::shared_ptr<CInstrument>& instrument, const LaneKey& key) const {
    if (key.group == ELaneGroup::kMaster) {
        const CValue* const setting = EngineSetting(document.Audio().settings, key.index);
        return setting != nullptr ? std::optional(setting->Get()) : std::nullopt;
    }
    if (key.group == ELaneGroup::kMix && instrument) {
        const StripSetting* const setting = MixSetting(key.index);
        return setting != nullptr ? std::optional(setting->member(instrument->strip).Get()) : std::nullopt;
    }
    const auto plugin = PluginOf(instrument, key.group);
    return plugin ? std::optional(plugin->Parameter(key.index)) : std::nullopt;
}

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
    const auto plugin = PluginOf(instrument, group);
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
