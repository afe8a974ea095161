// SPDX-License-Identifier: GPL-3.0-or-later
// How what MIDI moves, and what moves it, are called.
#include <array>

#include "document/CControllers.h"
#include "document/CPluginPlaces.h"
#include "engine/ControlPorts.h"
#include "model/MixLanes.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr std::array kTransportKeys = {
    TextKey("Play"),      TextKey("Stop"),      TextKey("Record notes"), TextKey("Record automation"),
    TextKey("Metronome"), TextKey("Tap tempo"), TextKey("Panic")};

template <class Owner>
QString PortText(std::span<const ControlPort<Owner>> ports, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < ports.size()
               ? Text(ports[static_cast<std::size_t>(index)].name)
               : QString();
}

QString KeyText(int key) {
    constexpr std::array kNames = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    return QLatin1String(kNames[static_cast<std::size_t>(key % 12)]) + QString::number(key / 12 - 2);
}

// The parameter's own name, with that of its plug-in.
QString ParameterText(const PluginSlot* slot, int index) {
    if (slot == nullptr || !slot->plugin) return Text("missing");
    const auto& parameters = slot->plugin->Parameters();
    const auto place = static_cast<std::size_t>(index);
    const QString name = place < parameters.size() ? QString::fromStdString(parameters[place].name) : Text("missing");
    return QStringLiteral("%1, %2").arg(name, QString::fromStdString(slot->plugin->Identity().displayName));
}

}  // namespace

QString CControllers::SourceText(const ControlSource& source) {
    switch (source.kind) {
        case EControlSource::kController:
            return QStringLiteral("CC %1").arg(source.number);
        case EControlSource::kFineController:
            return QStringLiteral("CC %1+%2").arg(source.number).arg(source.number + kFineControllers);
        case EControlSource::kKey:
            return KeyText(source.number);
        case EControlSource::kBend:
            return Text("Pitch bend");
        case EControlSource::kPressure:
            return Text("Aftertouch");
        case EControlSource::kProgram:
            return Text("Program %1").arg(source.number + 1);
    }
    return {};
}

QString CControllers::ChannelText(int selector) {
    return selector <= 1 ? Text("Every channel") : Text("Channel %1").arg(selector - 1);
}

QString CControllers::OwnerText(const ControlTarget& target) const {
    if (!IsOfInstrument(target.kind)) return Text("Master");
    const auto instrument = context.InstrumentById(target.instrument);
    return instrument ? QString::fromStdString(instrument->title) : Text("missing");
}

QString CControllers::TargetText(const ControlTarget& target) const {
    const auto instrument = IsOfInstrument(target.kind) ? context.InstrumentById(target.instrument) : nullptr;
    const auto number = static_cast<std::size_t>(static_cast<int>(target.kind));
    switch (target.kind) {
        case EControlTarget::kStrip: {
            const StripSetting* const setting = MixSetting(target.index);
            return setting != nullptr ? QString::fromUtf8(setting->lane.name) : QString();
        }
        case EControlTarget::kInstrument:
            return PortText(InstrumentControls(), target.index);
        case EControlTarget::kBallX:
            return Text("Ball %1, X").arg(target.index + 1);
        case EControlTarget::kBallY:
            return Text("Ball %1, Y").arg(target.index + 1);
        case EControlTarget::kPattern:
            return Text("Pattern %1").arg(target.index + 1);
        case EControlTarget::kPreset:
        case EControlTarget::kPresets:
            return Text("Preset %1").arg(target.index + 1);
        case EControlTarget::kSolo:
            return Text("Solo");
        case EControlTarget::kMaster:
            if (target.index == 2 || target.index == 3) return Text("Master insert %1").arg(target.index - 1);
            return PortText(MasterControls(), target.index);
        case EControlTarget::kTransport:
            return Text(kTransportKeys[static_cast<std::size_t>(target.index % kTransportKeyCount)]);
        default:
            break;
    }
    if (target.kind >= EControlTarget::kEffect1) {
        const auto place = number - static_cast<std::size_t>(EControlTarget::kEffect1);
        return ParameterText(context.audio.sharedEffects[place].ForEdit().get(), target.index);
    }
    if (target.kind >= EControlTarget::kMasterInsert1) {
        const auto place = number - static_cast<std::size_t>(EControlTarget::kMasterInsert1);
        return ParameterText(context.audio.masterInserts[place].ForEdit().get(), target.index);
    }
    if (!instrument) return Text("missing");
    if (target.kind == EControlTarget::kPlugin) return ParameterText(instrument->plugin.ForEdit().get(), target.index);
    const auto place = number - static_cast<std::size_t>(EControlTarget::kInsert1);
    return ParameterText(instrument->inserts[place].ForEdit().get(), target.index);
}

}  // namespace quib
