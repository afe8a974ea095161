// SPDX-License-Identifier: GPL-3.0-or-later
// Places for plug-ins: loading, clearing, banks and programs, parameters.
#include <QFileInfo>
#include <utility>

#include "document/CWorkstation.h"
#include "document/EditCommands.h"
#include "model/files/ContentFiles.h"
#include "texts/Texts.h"

namespace quib {

// The whole state of a plug-in, to go back to.
struct CWorkstation::PluginState {
    std::shared_ptr<const StateImage> bank;
    int program = 0;
};

CPublished<PluginSlot>* CWorkstation::PublishedSlot(const Instrumented& owner, const SlotPlace& place) const {
    auto& engine = const_cast<CAudio&>(audio);  // the place is only looked up
    const auto index = static_cast<std::size_t>(place.index);
    switch (place.kind) {
        case SlotPlace::EKind::kInstrument:
            return owner ? &owner->plugin : nullptr;
        case SlotPlace::EKind::kInsert:
            return owner && index < owner->inserts.size() ? &owner->inserts[index] : nullptr;
        case SlotPlace::EKind::kMasterInsert:
            return index < engine.masterInserts.size() ? &engine.masterInserts[index] : nullptr;
        case SlotPlace::EKind::kEffect:
            return index < engine.sharedEffects.size() ? &engine.sharedEffects[index] : nullptr;
    }
    return nullptr;
}

CPublished<PluginSlot>* CWorkstation::PublishedSlot(const SlotPlace& place) const {
    return PublishedSlot(InstrumentById(place.instrument), place);
}

std::shared_ptr<const PluginSlot> CWorkstation::Slot(const SlotPlace& place) const {
    const CPublished<PluginSlot>* const slot = PublishedSlot(place);
    return slot != nullptr ? slot->ForEdit() : nullptr;
}

void CWorkstation::ForEachSlot(const std::function<void(const PluginSlot&, const SlotPlace&)>& visit) const {
    for (const auto& instrument : Instruments()) {
        const std::uint32_t id = instrument->Id();
        visit(*instrument->plugin.ForEdit(), {SlotPlace::EKind::kInstrument, id, 0});
        for (int i = 0; i < kInsertCount; ++i) {
            visit(*instrument->inserts[static_cast<std::size_t>(i)].ForEdit(), {SlotPlace::EKind::kInsert, id, i});
        }
    }
    for (int i = 0; i < kInsertCount; ++i) {
        visit(*audio.masterInserts[static_cast<std::size_t>(i)].ForEdit(), {SlotPlace::EKind::kMasterInsert, 0, i});
    }
    for (int i = 0; i < kSendCount; ++i) {
        visit(*audio.sharedEffects[static_cast<std::size_t>(i)].ForEdit(), {SlotPlace::EKind::kEffect, 0, i});
    }
}

bool CWorkstation::FindPlugin(const CPlugin* plugin, SlotPlace& place) const {
    bool found = false;
    ForEachSlot([&](const PluginSlot& slot, const SlotPlace& at) {
        if (found || plugin == nullptr || slot.plugin.get() != plugin) return;
        place = at;
        found = true;
    });
    return found;
}

std::shared_ptr<CPlugin> CWorkstation::Shared(const CPlugin& plugin) const {
    std::shared_ptr<CPlugin> found;
    ForEachSlot([&](const PluginSlot& slot, const SlotPlace&) {
        if (slot.plugin.get() == &plugin) found = slot.plugin;
    });
    return found;
}

std::shared_ptr<CPlugin> CWorkstation::LoadNamed(const PluginReference& wanted, SlotKind kind, std::string& error) {
    const auto library = finder.Find(wanted, kind);
    if (library) return CPlugin::Load(*library, kind, audio.environment, error);
    error = Text("not found in any plug-in folder").toStdString();
    return nullptr;
}

PluginLoader CWorkstation::Loader() {
    return [this](const PluginReference& wanted, SlotKind kind, std::string& error) {
        return LoadNamed(wanted, kind, error);
    };
}

std::shared_ptr<CPlugin> CWorkstation::LoadLibrary(const QString& nameOrPath, SlotKind kind, QString& error) {
    std::string reason;
    messageShown = false;
    const bool isPath = nameOrPath.contains(QLatin1Char('/')) && QFileInfo::exists(nameOrPath);
    auto plugin = isPath ? CPlugin::Load(nameOrPath.toStdString(), kind, audio.environment, reason)
                         : LoadNamed({nameOrPath.toStdString(), {}}, kind, reason);
    error = plugin || messageShown ? QString() : nameOrPath + QStringLiteral(": ") + QString::fromStdString(reason);
    return plugin;
}

// A plug-in that comes back may have missed a change of the sound device, and must not sound on where it
// was taken away.
void CWorkstation::PublishSlot(const SlotPlace& place, std::shared_ptr<const PluginSlot> next, const QString& name) {
    const Instrumented owner = InstrumentById(place.instrument);
    CPublished<PluginSlot>* const slot = PublishedSlot(owner, place);
    const auto publish = [this, owner, slot](const std::shared_ptr<const PluginSlot>& content) {
        if (content->plugin) content->plugin->Prepare();
        slot->Publish(content, audio.graveyard);
        Q_EMIT SlotChanged();
        Q_EMIT InstrumentChanged(owner ? owner->Id() : 0);
    };
    PushChange(
        name, [publish, next = std::move(next)] { publish(next); },
        [publish, before = slot->ForEdit()] { publish(before); });
}

bool CWorkstation::LoadPlugin(const SlotPlace& place, const QString& nameOrPath, QString& error) {
    if (PublishedSlot(place) == nullptr) return false;
    const bool isInstrument = place.kind == SlotPlace::EKind::kInstrument;
    const auto plugin = LoadLibrary(nameOrPath, isInstrument ? SlotKind::Instrument : SlotKind::Effect, error);
    if (!plugin) return false;
    auto next = std::make_shared<PluginSlot>();
    next->plugin = plugin;
    PublishSlot(place, std::move(next), Text("Load plug-in"));
    return true;
}

void CWorkstation::ClearPlugin(const SlotPlace& place) {
    const auto slot = Slot(place);
    if (!slot || (!slot->plugin && !slot->missing)) return;
    PublishSlot(place, std::make_shared<const PluginSlot>(), Text("Clear plug-in"));
}

CWorkstation::PluginState CWorkstation::StateOf(CPlugin& plugin) {
    return {std::make_shared<const StateImage>(plugin.SaveBank()), plugin.CurrentProgram()};
}

// The program first: selecting one afterwards would make some plug-ins forget the edits in the image.
void CWorkstation::SetState(CPlugin& plugin, const PluginState& state) {
    plugin.SelectProgram(state.program);
    if (!state.bank->empty()) plugin.LoadBank(*state.bank);
}

bool CWorkstation::ChangeState(const SlotPlace& place, const QString& name,
                               const std::function<bool(CPlugin&)>& change) {
    const auto slot = Slot(place);
    if (!slot || !slot->plugin) return false;
    const auto plugin = slot->plugin;
    const PluginState before = StateOf(*plugin);
    if (!change(*plugin)) return false;
    const auto set = [this, plugin](const PluginState& state) {
        SetState(*plugin, state);
        Q_EMIT ParameterMoved(plugin.get(), -1);
    };
    PushChange(
        name, [set, after = StateOf(*plugin)] { set(after); }, [set, before] { set(before); }, true);
    Q_EMIT ParameterMoved(plugin.get(), -1);
    return true;
}

bool CWorkstation::LoadBank(const SlotPlace& place, const QString& path, QString& error) {
    return ChangeState(place, Text("Load bank"), [&](CPlugin& plugin) {
        std::string reason;
        const bool loaded = LoadBankFile(path.toStdString(), plugin, reason);
        error = QString::fromStdString(reason);
        return loaded;
    });
}

bool CWorkstation::LoadProgram(const SlotPlace& place, const QString& path, QString& error) {
    return ChangeState(place, Text("Load program"), [&](CPlugin& plugin) {
        std::string reason;
        const bool loaded = LoadProgramFile(path.toStdString(), plugin, reason);
        error = QString::fromStdString(reason);
        return loaded;
    });
}

bool CWorkstation::SaveBank(const SlotPlace& place, const QString& path, QString& error) {
    const auto slot = Slot(place);
    if (!slot || !slot->plugin) return false;
    std::string reason;
    const bool saved = SaveBankFile(path.toStdString(), *slot->plugin, reason);
    error = QString::fromStdString(reason);
    return saved;
}

bool CWorkstation::SaveProgram(const SlotPlace& place, const QString& path, QString& error) {
    const auto slot = Slot(place);
    if (!slot || !slot->plugin) return false;
    std::string reason;
    const bool saved = SaveProgramFile(path.toStdString(), *slot->plugin, reason);
    error = QString::fromStdString(reason);
    return saved;
}

void CWorkstation::SelectProgram(const std::shared_ptr<CPlugin>& plugin, int program) {
    SlotPlace place;
    if (!FindPlugin(plugin.get(), place)) return;
    if (plugin->CurrentProgram() == program) return;
    ChangeState(place, Text("Select program"), [program](CPlugin& owner) { return owner.SelectProgram(program); });
}

void CWorkstation::ParameterEdited(const std::shared_ptr<CPlugin>& plugin, int parameter, float before, float after) {
    if (!plugin || before == after) return;
    undo.push(new CGestureCommand(Text("Plug-in parameter"), plugin.get(), parameter, before, after,
                                  [this, plugin, parameter](float value) {
                                      plugin->SetParameter(parameter, value);
                                      Q_EMIT ParameterMoved(plugin.get(), parameter);
                                  }));
    Q_EMIT ParameterMoved(plugin.get(), parameter);
}

void CWorkstation::WatchParameters(const std::shared_ptr<CPlugin>& plugin) {
    std::vector<float>& values = watched[plugin.get()];
    values.resize(plugin->Parameters().size());
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = plugin->Parameter(static_cast<int>(i));
}

void CWorkstation::UnwatchParameters(const CPlugin* plugin) { watched.erase(plugin); }

void CWorkstation::ParameterMovedInWindow(CPlugin& plugin, int parameter, float value) {
    const auto known = watched.find(&plugin);
    const auto shared = Shared(plugin);
    if (!shared) return;
    if (known == watched.end() || parameter >= static_cast<int>(known->second.size())) return Touch();
    float& last = known->second[static_cast<std::size_t>(parameter)];
    ParameterEdited(shared, parameter, std::exchange(last, value), value);
}

}  // namespace quib
