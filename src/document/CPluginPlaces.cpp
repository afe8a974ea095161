// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CPluginPlaces.h"

#include <QFile>
#include <QFileInfo>
#include <utility>

#include "document/CControllers.h"
#include "model/files/ContentFiles.h"
#include "model/plugin/PluginMarks.h"
#include "platform/Paths.h"
#include "texts/Texts.h"

namespace quib {

namespace fs = std::filesystem;

namespace {

bool IsSameFile(const fs::path& one, const QString& other) {
    return QFileInfo(QString::fromStdString(one.string())).canonicalFilePath() == QFileInfo(other).canonicalFilePath();
}

ESlotKind KindOf(const SlotPlace& place) {
    return place.kind == SlotPlace::EKind::kInstrument ? ESlotKind::kInstrument : ESlotKind::kEffect;
}

// The built-in plug-ins are found wherever the program's folder is.
CPluginFinder MakeFinder(const Folders& folders, const CSettings& settings) {
    const fs::path shipped = ShippedLibraries();
    std::vector<fs::path> users = {shipped / "PluginInstruments", shipped / "PluginEffects"};
    for (const QString& folder : AddedPluginFolders(settings)) users.emplace_back(folder.toStdString());
    return CPluginFinder(folders.program.toStdString(), std::move(users), SystemPluginFolders());
}

}  // namespace

EControlTarget TargetKindOf(const SlotPlace& place) noexcept {
    const auto from = [&place](EControlTarget first) {
        return static_cast<EControlTarget>(static_cast<int>(first) + place.index);
    };
    switch (place.kind) {
        case SlotPlace::EKind::kInsert:
            return from(EControlTarget::kInsert1);
        case SlotPlace::EKind::kMasterInsert:
            return from(EControlTarget::kMasterInsert1);
        case SlotPlace::EKind::kEffect:
            return from(EControlTarget::kEffect1);
        case SlotPlace::EKind::kInstrument:
            break;
    }
    return EControlTarget::kPlugin;
}

// The whole state of a plug-in, to go back to.
struct CPluginPlaces::State {
    std::shared_ptr<const StateImage> bank;
    int program = 0;
};

CPluginPlaces::CPluginPlaces(const DocumentContext& document, CControllers& controllerMap)
    : context(document), controllers(controllerMap), finder(MakeFinder(document.folders, document.settings)) {
    ConnectEnvironment();
}

void CPluginPlaces::ConnectEnvironment() {
    PluginEnvironment& environment = context.audio.environment;
    environment.applicationFolder = context.folders.program.toStdString();
    environment.showMessage = [this](const std::string& text, const std::string& caption) {
        messageShown = true;
        context.tell(QString::fromStdString(caption), QString::fromStdString(text));
    };
    environment.idle = [this] { IdlePlugins(); };
    environment.parameterChanged = [this](CPlugin& plugin, int parameter, float value) {
        ParameterMovedInWindow(plugin, parameter, value);
    };
    environment.parameterTouched = [this](CPlugin& plugin, int parameter, bool held) {
        Q_EMIT ParameterTouched(&plugin, parameter, held);
    };
    environment.sizeWindow = [this](CPlugin& plugin, int width, int height) {
        Q_EMIT EditorSizeWanted(&plugin, width, height);
        return true;
    };
    environment.currentTime = [this](PlayTime& time) { time = context.audio.Picture().time; };
}

void CPluginPlaces::ReadPluginFolders() {
    CPluginFinder next = MakeFinder(context.folders, context.settings);
    next.SetIdentities(finder.KnownIdentities());
    finder = std::move(next);
}

void CPluginPlaces::Tick() {
    MarkSuspect(0, EPluginCall::kNone);
    IdlePlugins();
    ReportFaults();
}

std::shared_ptr<CPublished<PluginSlot>> CPluginPlaces::PublishedSlot(const SlotPlace& place) const {
    const auto index = static_cast<std::size_t>(place.index);
    const auto owner = context.InstrumentById(place.instrument);
    switch (place.kind) {
        case SlotPlace::EKind::kInstrument:
            return owner ? Part(owner, owner->plugin) : nullptr;
        case SlotPlace::EKind::kInsert:
            return owner && index < owner->inserts.size() ? Part(owner, owner->inserts[index]) : nullptr;
        case SlotPlace::EKind::kMasterInsert:
            return index < context.audio.masterInserts.size() ? EnginePart(context.audio.masterInserts[index])
                                                              : nullptr;
        case SlotPlace::EKind::kEffect:
            return index < context.audio.sharedEffects.size() ? EnginePart(context.audio.sharedEffects[index])
                                                              : nullptr;
    }
    return nullptr;
}

std::shared_ptr<const PluginSlot> CPluginPlaces::Slot(const SlotPlace& place) const {
    const auto slot = PublishedSlot(place);
    return slot ? slot->ForEdit() : nullptr;
}

void CPluginPlaces::ForEachSlot(const std::function<void(const PluginSlot&, const SlotPlace&)>& visit) const {
    for (const auto& instrument : context.Instruments()) {
        const std::uint32_t id = instrument->Id();
        visit(*instrument->plugin.ForEdit(), {SlotPlace::EKind::kInstrument, id, 0});
        for (int i = 0; i < kInsertCount; ++i) {
            visit(*instrument->inserts[static_cast<std::size_t>(i)].ForEdit(), {SlotPlace::EKind::kInsert, id, i});
        }
    }
    for (int i = 0; i < kInsertCount; ++i) {
        visit(*context.audio.masterInserts[static_cast<std::size_t>(i)].ForEdit(),
              {SlotPlace::EKind::kMasterInsert, 0, i});
    }
    for (int i = 0; i < kSendCount; ++i) {
        visit(*context.audio.sharedEffects[static_cast<std::size_t>(i)].ForEdit(), {SlotPlace::EKind::kEffect, 0, i});
    }
}

bool CPluginPlaces::FindPlugin(const CPlugin* plugin, SlotPlace& place) const {
    bool found = false;
    ForEachSlot([&](const PluginSlot& slot, const SlotPlace& at) {
        if (found || plugin == nullptr || slot.plugin.get() != plugin) return;
        place = at;
        found = true;
    });
    return found;
}

std::shared_ptr<CPlugin> CPluginPlaces::Shared(const CPlugin& plugin) const {
    std::shared_ptr<CPlugin> found;
    ForEachSlot([&](const PluginSlot& slot, const SlotPlace&) {
        if (slot.plugin.get() == &plugin) found = slot.plugin;
    });
    return found;
}

std::shared_ptr<CPlugin> CPluginPlaces::LoadAdmitted(PluginEnvironment& environment, const QString& library,
                                                     ESlotKind kind, std::string& error) {
    QString reason;
    if (admit && !admit(library, reason)) {
        error = reason.toStdString();
        return nullptr;
    }
    const std::string path = library.toStdString();
    MarkSuspect(MarkedLibrary(path), EPluginCall::kLoad);  // threads of its own may end the program a little later
    auto plugin = CPlugin::Load(path, kind, environment, error);
    // Those that come with the program have none: whoever kills it then must not have them left out.
    if (plugin && plugin->Identity().effectName.starts_with("QUIB ")) MarkSuspect(0, EPluginCall::kNone);
    return plugin;
}

std::shared_ptr<CPlugin> CPluginPlaces::LoadFor(PluginEnvironment& environment, const PluginReference& wanted,
                                                ESlotKind kind, std::string& error) {
    const auto library = finder.Find(wanted, kind);
    if (library) return LoadAdmitted(environment, QString::fromStdString(library->string()), kind, error);
    error = Text("not found in any plug-in folder").toStdString();
    return nullptr;
}

PluginLoader CPluginPlaces::Loader() {
    return [this](const PluginReference& wanted, ESlotKind kind, std::string& error) {
        return LoadFor(context.audio.environment, wanted, kind, error);
    };
}

std::shared_ptr<CPlugin> CPluginPlaces::LoadLibrary(const QString& nameOrPath, ESlotKind kind, QString& error) {
    std::string reason;
    messageShown = false;
    const bool isPath = nameOrPath.contains(QLatin1Char('/')) && QFileInfo::exists(nameOrPath);
    PluginEnvironment& environment = context.audio.environment;
    auto plugin = isPath ? LoadAdmitted(environment, nameOrPath, kind, reason)
                         : LoadFor(environment, {nameOrPath.toStdString(), {}}, kind, reason);
    error = plugin || messageShown ? QString() : nameOrPath + QStringLiteral(": ") + QString::fromStdString(reason);
    return plugin;
}

// A plug-in that comes back may have missed a change of the sound device, and must not sound on where it
// was taken away.
void CPluginPlaces::PublishSlot(const SlotPlace& place, std::shared_ptr<const PluginSlot> next, const QString& name) {
    const auto slot = PublishedSlot(place);
    const bool isMaster = place.kind == SlotPlace::EKind::kMasterInsert || place.kind == SlotPlace::EKind::kEffect;
    const auto publish = [this, slot,
                          id = isMaster ? 0U : place.instrument](const std::shared_ptr<const PluginSlot>& content) {
        if (content->plugin) content->plugin->Prepare();
        slot->Publish(content, context.changes.Graveyard());
        context.changes.Tell({EChange::kSlot, id});
    };
    context.changes.Push(
        name, [publish, next = std::move(next)] { publish(next); },
        [publish, before = slot->ForEdit()] { publish(before); });
}

bool CPluginPlaces::LoadPlugin(const SlotPlace& place, const QString& nameOrPath, QString& error) {
    if (!PublishedSlot(place)) return false;
    const auto plugin = LoadLibrary(nameOrPath, KindOf(place), error);
    if (!plugin) return false;
    auto next = std::make_shared<PluginSlot>();
    next->plugin = plugin;
    const CChanges::CMacro step(context.changes, Text("Load plug-in"));
    DropControllers(place, Text("Load plug-in"));
    PublishSlot(place, std::move(next), Text("Load plug-in"));
    if (const auto on = OnSwitch(place); on && !on->IsOn()) {
        on->Set(1.0F);
        context.changes.ValueEdited(on, 0.0F, 1.0F, Text("Load plug-in"));
    }
    return true;
}

std::shared_ptr<CValue> CPluginPlaces::OnSwitch(const SlotPlace& place) const {
    const auto index = static_cast<std::size_t>(place.index);
    const auto owner = context.InstrumentById(place.instrument);
    switch (place.kind) {
        case SlotPlace::EKind::kInsert:
            return owner ? Part(owner, owner->strip.insertOn[index]) : nullptr;
        case SlotPlace::EKind::kMasterInsert:
            return EnginePart(context.audio.settings.masterInsertOn[index]);
        case SlotPlace::EKind::kEffect:
            return owner ? Part(owner, owner->strip.sendOn[index]) : nullptr;
        case SlotPlace::EKind::kInstrument:
            return nullptr;
    }
    return nullptr;
}

bool CPluginPlaces::LoadMissing(const QString& library, QString& error) {
    std::vector<std::pair<SlotPlace, std::shared_ptr<const MissingPlugin>>> wanting;
    ForEachSlot([&](const PluginSlot& slot, const SlotPlace& place) {
        if (!slot.missing) return;
        const PluginReference wanted{slot.missing->fileName, slot.missing->identity};
        const auto found = finder.Find(wanted, KindOf(place));
        if (found && IsSameFile(*found, library)) wanting.emplace_back(place, slot.missing);
    });
    const CChanges::CMacro step(context.changes, Text("Load plug-in"));
    for (const auto& [place, missing] : wanting) {
        auto next = std::make_shared<PluginSlot>();
        next->plugin = LoadLibrary(library, KindOf(place), error);
        if (!next->plugin) return false;
        SetState(*next->plugin, {missing->state ? missing->state : std::make_shared<const StateImage>(),
                                 static_cast<int>(missing->program)});
        next->plugin->lanes.Prepare(std::make_shared<const CEventLanes>(missing->lanes));
        PublishSlot(place, std::move(next), Text("Load plug-in"));
    }
    return true;
}

void CPluginPlaces::ClearPlugin(const SlotPlace& place) {
    const auto slot = Slot(place);
    if (!slot || (!slot->plugin && !slot->missing)) return;
    const CChanges::CMacro step(context.changes, Text("Clear plug-in"));
    DropControllers(place, Text("Clear plug-in"));
    PublishSlot(place, std::make_shared<const PluginSlot>(), Text("Clear plug-in"));
}

// A shared effect is the same one whichever instrument's send names it.
void CPluginPlaces::DropControllers(const SlotPlace& place, const QString& name) {
    const bool isShared = place.kind == SlotPlace::EKind::kMasterInsert || place.kind == SlotPlace::EKind::kEffect;
    const ControlTarget gone{TargetKindOf(place), isShared ? 0 : place.instrument, 0};
    controllers.Drop(
        [&](const ControlTarget& target) { return target.kind == gone.kind && target.instrument == gone.instrument; },
        name);
}

CPluginPlaces::State CPluginPlaces::StateOf(CPlugin& plugin) {
    return {std::make_shared<const StateImage>(plugin.SaveBank()), plugin.CurrentProgram()};
}

// The program first: selecting one afterwards would make some plug-ins forget the edits in the image.
void CPluginPlaces::SetState(CPlugin& plugin, const State& state) {
    plugin.SelectProgram(state.program);
    if (!state.bank->empty()) plugin.LoadBank(*state.bank);
}

bool CPluginPlaces::ChangeState(const SlotPlace& place, const QString& name,
                                const std::function<bool(CPlugin&)>& change) {
    const auto slot = Slot(place);
    if (!slot || !slot->plugin) return false;
    const auto plugin = slot->plugin;
    const State before = StateOf(*plugin);
    if (!change(*plugin)) return false;
    const auto set = [this, plugin](const State& state) {
        SetState(*plugin, state);
        Q_EMIT ParameterMoved(plugin.get(), -1);
    };
    context.changes.PushDone(
        name, [set, after = StateOf(*plugin)] { set(after); }, [set, before] { set(before); });
    Q_EMIT ParameterMoved(plugin.get(), -1);
    return true;
}

bool CPluginPlaces::LoadBank(const SlotPlace& place, const QString& path, QString& error) {
    return ChangeState(place, Text("Load bank"), [&](CPlugin& plugin) {
        std::string reason;
        const bool loaded = LoadBankFile(path.toStdString(), plugin, reason);
        error = QString::fromStdString(reason);
        return loaded;
    });
}

bool CPluginPlaces::LoadProgram(const SlotPlace& place, const QString& path, QString& error) {
    return ChangeState(place, Text("Load program"), [&](CPlugin& plugin) {
        std::string reason;
        const bool loaded = LoadProgramFile(path.toStdString(), plugin, reason);
        error = QString::fromStdString(reason);
        return loaded;
    });
}

bool CPluginPlaces::SaveBank(const SlotPlace& place, const QString& path, QString& error) {
    const auto slot = Slot(place);
    if (!slot || !slot->plugin) return false;
    std::string reason;
    const bool saved = SaveBankFile(path.toStdString(), *slot->plugin, reason);
    error = QString::fromStdString(reason);
    return saved;
}

bool CPluginPlaces::SaveProgram(const SlotPlace& place, const QString& path, QString& error) {
    const auto slot = Slot(place);
    if (!slot || !slot->plugin) return false;
    std::string reason;
    const bool saved = SaveProgramFile(path.toStdString(), *slot->plugin, reason);
    error = QString::fromStdString(reason);
    return saved;
}

void CPluginPlaces::SelectProgram(const std::shared_ptr<CPlugin>& plugin, int program) {
    SlotPlace place;
    if (!FindPlugin(plugin.get(), place)) return;
    if (plugin->CurrentProgram() == program) return;
    ChangeState(place, Text("Select program"), [program](CPlugin& owner) { return owner.SelectProgram(program); });
}

void CPluginPlaces::SetParameters(const std::shared_ptr<CPlugin>& plugin, const QString& name,
                                  const std::vector<float>& values) {
    SlotPlace place;
    if (!FindPlugin(plugin.get(), place)) return;
    ChangeState(place, name, [&values](CPlugin& owner) {
        for (std::size_t index = 0; index < values.size(); ++index)
            owner.SetParameter(static_cast<int>(index), values[index]);
        return true;
    });
}

void CPluginPlaces::ParameterEdited(const std::shared_ptr<CPlugin>& plugin, int parameter, float before, float after) {
    if (!plugin || before == after) return;
    context.changes.PushValue(Text("Plug-in parameter"), plugin.get(), parameter, before, after,
                              [this, plugin, parameter](float value) {
                                  plugin->SetParameter(parameter, value);
                                  Q_EMIT ParameterMoved(plugin.get(), parameter);
                              });
    Q_EMIT ParameterMoved(plugin.get(), parameter);
}

void CPluginPlaces::WatchParameters(const std::shared_ptr<CPlugin>& plugin) {
    std::vector<float>& values = watched[plugin.get()];
    values.resize(plugin->Parameters().size());
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = plugin->Parameter(static_cast<int>(i));
}

void CPluginPlaces::UnwatchParameters(const CPlugin* plugin) { watched.erase(plugin); }

void CPluginPlaces::ParameterMovedInWindow(CPlugin& plugin, int parameter, float value) {
    const auto known = watched.find(&plugin);
    const auto shared = Shared(plugin);
    if (!shared) return;
    if (known == watched.end() || parameter >= static_cast<int>(known->second.size())) return context.changes.Touch();
    float& last = known->second[static_cast<std::size_t>(parameter)];
    ParameterEdited(shared, parameter, std::exchange(last, value), value);
}

void CPluginPlaces::IdlePlugins() {
    if (std::exchange(idling, true)) return;  // a plug-in that idles may ask for more of it
    ForEachSlot([](const PluginSlot& slot, const SlotPlace&) {
        if (slot.plugin && slot.plugin->NeedsIdle()) slot.plugin->Idle();
    });
    idling = false;
}

void CPluginPlaces::ReportFaults() {
    ForEachSlot([this](const PluginSlot& slot, const SlotPlace&) {
        if (!slot.plugin) return;
        const bool muted = slot.plugin->TakeFaultReport();
        const EPluginCall call = slot.plugin->TakeThrown();
        if (!muted && call == EPluginCall::kNone) return;
        const QString name = QString::fromStdString(slot.plugin->Identity().displayName);
        if (call != EPluginCall::kNone) {
            context.tell(QStringLiteral("QUIB"),
                         Text("\"%1\" threw an exception while %2.").arg(name, Text(Describe(call))));
        } else {
            context.tell(
                QStringLiteral("QUIB"),
                name + QStringLiteral(": ") + Text("gave samples that are no sound; it is muted while it does."));
        }
    });
}

}  // namespace quib
