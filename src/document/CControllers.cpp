// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CControllers.h"

#include <algorithm>
#include <string>
#include <utility>

#include "engine/ControlPorts.h"
#include "model/MixLanes.h"
#include "model/files/ControlRecords.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr const char* kSection = "Controllers";

// On and off: nothing to be picked up.
bool IsSwitch(const ControlTarget& target) {
    const auto index = static_cast<std::size_t>(target.index);
    switch (target.kind) {
        case EControlTarget::kStrip: {
            const StripSetting* const setting = MixSetting(target.index);
            return setting != nullptr && setting->IsSwitch();
        }
        case EControlTarget::kMaster:
            return index < MasterControls().size() && MasterControls()[index].isSwitch;
        case EControlTarget::kInstrument:
            return index < InstrumentControls().size() && InstrumentControls()[index].isSwitch;
        default:
            return false;
    }
}

template <class Owner>
std::optional<ControlTarget> FindPort(std::span<const ControlPort<Owner>> ports, Owner& owner, const void* setting,
                                      ControlTarget target) {
    for (const ControlPort<Owner>& port : ports) {
        if (&port.value(owner) == setting) return target;
        ++target.index;
    }
    return std::nullopt;
}

QString NameOf(std::size_t number) { return QStringLiteral("Binding%1").arg(number); }

}  // namespace

const CControlMap::Entry* CControllers::Find(const ControlTarget& target) const {
    const auto& entries = Map().Entries();
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const CControlMap::Entry& entry) { return entry.binding.target == target; });
    return found == entries.end() ? nullptr : &*found;
}

std::optional<ControlTarget> CControllers::TargetOf(const std::shared_ptr<CInstrument>& instrument,
                                                    const void* setting) const {
    if (setting == nullptr) return std::nullopt;
    if (!instrument) {
        return FindPort(MasterControls(), context.audio.settings, setting, {EControlTarget::kMaster, 0, 0});
    }
    for (int parameter = 0; parameter < kMixParameterCount; ++parameter) {
        const StripSetting* const known = MixSetting(parameter);
        if (known != nullptr && &known->member(instrument->strip) == setting)
            return ControlTarget{EControlTarget::kStrip, instrument->Id(), parameter};
    }
    return FindPort(InstrumentControls(), *instrument, setting, {EControlTarget::kInstrument, instrument->Id(), 0});
}

// --- Learning ---------------------------------------------------------------------------------------------

void CControllers::Learn(const ControlTarget& target) {
    learner.Forget();
    learning = target;
    context.audio.controlLearning.Set(1);
    Q_EMIT Changed();
}

void CControllers::CancelLearning() {
    if (!learning) return;
    learning.reset();
    learner.Forget();
    context.audio.controlLearning.Set(0);
    Q_EMIT Changed();
}

void CControllers::SetPicking(bool on) {
    if (picking == on) return;
    picking = on;
    if (!on) CancelLearning();
    Q_EMIT Changed();
}

void CControllers::Hear(std::int32_t message) {
    if (!learning) return;
    if (const auto found = learner.Hear(message & 0xff, message >> 8 & 0xff, message >> 16 & 0xff, Nanoseconds()))
        Learned(*found);
}

void CControllers::Learned(const CControlLearner::Learned& found) {
    ControlBinding binding;
    binding.source = found.source;
    binding.target = *learning;
    binding.mode = found.mode == EControlMode::kPickUp && IsSwitch(*learning) ? EControlMode::kJump : found.mode;
    learning.reset();
    learner.Forget();
    context.audio.controlLearning.Set(0);
    Bind(binding);
    Q_EMIT Bound(binding);
}

void CControllers::Tick(const std::function<void(const ControlTarget&)>& moved) {
    if (learning) {
        if (const auto found = learner.Settle(Nanoseconds())) Learned(*found);
    }
    const auto& entries = Map().Entries();
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const std::uint32_t moves = entries[index].play->moves.Get();
        if (std::exchange(seen[index], moves) != moves) moved(entries[index].binding.target);
    }
}

// --- The table --------------------------------------------------------------------------------------------

void CControllers::Publish(const std::shared_ptr<const CControlMap>& map) {
    const std::vector<ControlBinding> before = Kept();
    context.audio.controlMap.Publish(map, context.audio.graveyard);
    seen.clear();
    for (const CControlMap::Entry& entry : map->Entries()) seen.push_back(entry.play->moves.Get());
    if (Kept() != before) Keep();
    Q_EMIT Changed();
}

void CControllers::Set(CControlMap next, const QString& name) {
    const auto set = [this](const std::shared_ptr<const CControlMap>& map) { Publish(map); };
    context.changes.Push(
        name, [set, map = std::make_shared<const CControlMap>(std::move(next))] { set(map); },
        [set, before = context.audio.controlMap.ForEdit()] { set(before); });
}

void CControllers::Bind(const ControlBinding& binding) {
    const CControlMap others =
        Map().Without([&](const ControlBinding& known) { return known.target == binding.target; });
    if (others.Entries().size() >= CControlMap::kMostBindings) return;
    Set(others.With(binding), Text("Learn MIDI"));
}

void CControllers::Change(std::size_t index, const ControlBinding& next) {
    if (index >= Map().Entries().size() || Map().Entries()[index].binding == next) return;
    Set(Map().Replaced(index, next), Text("MIDI binding"));
}

void CControllers::Remove(std::size_t index) {
    if (index < Map().Entries().size()) Forget(Map().Entries()[index].binding.target);
}

void CControllers::Forget(const ControlTarget& target) {
    Drop([&](const ControlTarget& known) { return known == target; }, Text("Forget MIDI"));
}

void CControllers::RemoveAll() {
    Drop([](const ControlTarget&) { return true; }, Text("Forget MIDI"));
}

void CControllers::Drop(const std::function<bool(const ControlTarget&)>& goes, const QString& name) {
    Retarget([&](ControlTarget& target) { return !goes(target); }, name);
}

void CControllers::Retarget(const std::function<bool(ControlTarget&)>& change, const QString& name) {
    const auto& entries = Map().Entries();
    const bool any = std::any_of(entries.begin(), entries.end(), [&](const CControlMap::Entry& entry) {
        ControlTarget target = entry.binding.target;
        return !change(target) || target != entry.binding.target;
    });
    if (any) Set(Map().Retargeted(change), name);
}

// --- Where it is kept -------------------------------------------------------------------------------------

std::vector<ControlBinding> CControllers::Kept() const {
    std::vector<ControlBinding> kept;
    for (const CControlMap::Entry& entry : Map().Entries()) {
        if (!IsOfProject(entry.binding.target.kind)) kept.push_back(entry.binding);
    }
    return kept;
}

void CControllers::Keep() const {
    context.settings.DeleteSettingSection(QLatin1String(kSection));
    std::size_t number = 0;
    for (const ControlBinding& binding : Kept()) {
        CRecordWriter writer;
        WriteBinding(writer, binding);
        const std::string line(writer.Bytes().data(), writer.Bytes().size());
        context.settings.WriteSettingString(QLatin1String(kSection), NameOf(++number),
                                            QString::fromStdString(line).trimmed());
    }
}

std::vector<ControlBinding> CControllers::ForProject() const {
    std::vector<ControlBinding> bindings;
    for (const CControlMap::Entry& entry : Map().Entries()) {
        ControlBinding binding = entry.binding;
        if (!IsOfProject(binding.target.kind)) continue;
        if (IsOfInstrument(binding.target.kind)) {
            const int place = context.IndexOf(binding.target.instrument);
            if (place < 0) continue;
            binding.target.instrument = static_cast<std::uint32_t>(place + 1);
        }
        bindings.push_back(binding);
    }
    return bindings;
}

void CControllers::ProjectReplaced(const std::vector<ControlBinding>& bindings) {
    CancelLearning();
    std::vector<CControlMap::Entry> entries;
    for (ControlBinding binding : bindings) {
        if (!IsOfProject(binding.target.kind)) continue;
        if (IsOfInstrument(binding.target.kind)) {
            const auto instrument = context.Instrument(static_cast<int>(binding.target.instrument) - 1);
            if (!instrument) continue;
            binding.target.instrument = instrument->Id();
        }
        entries.emplace_back().binding = binding;
    }
    for (std::size_t number = 1; number <= CControlMap::kMostBindings; ++number) {
        const std::string line =
            context.settings.ReadSettingString(QLatin1String(kSection), NameOf(number)).toStdString() + "\n";
        CRecordReader reader(line);
        const auto binding = reader.NextLine() ? ReadBinding(reader) : std::nullopt;
        if (!binding) break;
        if (!IsOfProject(binding->target.kind)) entries.emplace_back().binding = *binding;
    }
    Publish(std::make_shared<const CControlMap>(std::move(entries)));
}

}  // namespace quib
