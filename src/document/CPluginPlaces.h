// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The plug-ins of the project: where they stand, loading and clearing, banks, programs and parameters.
// User-interface thread.

#include <QObject>
#include <map>
#include <vector>

#include "document/DocumentContext.h"
#include "model/files/LoadContext.h"
#include "model/plugin/CPluginFinder.h"

namespace quib {

// A place for a plug-in. `instrument`: its id, for the first two kinds; for an effect the one whose send is meant,
// or 0. `index`: 0.., but for kInstrument.
struct SlotPlace {
    enum class EKind { kInstrument, kInsert, kMasterInsert, kEffect };
    EKind kind = EKind::kInstrument;
    std::uint32_t instrument = 0;
    int index = 0;
};

// What MIDI may move in the plug-in of a place.
EControlTarget TargetKindOf(const SlotPlace& place) noexcept;

class CControllers;

class CPluginPlaces : public QObject {
    Q_OBJECT

public:
    CPluginPlaces(const DocumentContext& document, CControllers& controllerMap);

    // Null for a place that does not exist.
    std::shared_ptr<const PluginSlot> Slot(const SlotPlace& place) const;
    // An effect that is loaded is switched on in the same step.
    bool LoadPlugin(const SlotPlace& place, const QString& nameOrPath, QString& error);
    // The switch of an insert, a master insert, or an instrument's send; null for other places.
    std::shared_ptr<CValue> OnSwitch(const SlotPlace& place) const;
    void ClearPlugin(const SlotPlace& place);
    bool LoadBank(const SlotPlace& place, const QString& path, QString& error);
    bool SaveBank(const SlotPlace& place, const QString& path, QString& error);
    bool LoadProgram(const SlotPlace& place, const QString& path, QString& error);
    bool SaveProgram(const SlotPlace& place, const QString& path, QString& error);
    void SelectProgram(const std::shared_ptr<CPlugin>& plugin, int program);
    // Sets parameters, from the first on (0..1), in one step of that name.
    void SetParameters(const std::shared_ptr<CPlugin>& plugin, const QString& name, const std::vector<float>& values);
    // A parameter (0..1) was moved in a page of ours.
    void ParameterEdited(const std::shared_ptr<CPlugin>& plugin, int parameter, float before, float after);
    // Where a loaded plug-in stands; false when it stands nowhere.
    bool FindPlugin(const CPlugin* plugin, SlotPlace& place) const;
    void ForEachSlot(const std::function<void(const PluginSlot&, const SlotPlace&)>& visit) const;
    // From now on the parameters that the user moves in the plug-in's own window are steps of undo.
    void WatchParameters(const std::shared_ptr<CPlugin>& plugin);
    void UnwatchParameters(const CPlugin* plugin);

    // Loads a library by its name in the lists or by its path. Null: `error` says why, or is empty when the
    // user has been told already.
    std::shared_ptr<CPlugin> LoadLibrary(const QString& nameOrPath, ESlotKind kind, QString& error);
    PluginLoader Loader();
    // Loads what a project names, for another engine. Null with the reason in `error`.
    std::shared_ptr<CPlugin> LoadFor(PluginEnvironment& environment, const PluginReference& wanted, ESlotKind kind,
                                     std::string& error);
    // Asked before a library is loaded; false, with the reason, keeps it out. Unset: each is let in.
    std::function<bool(const QString& library, QString& error)> admit;
    // Puts a library that could not be loaded into the places that want it, with the settings kept there; a step of
    // undo. False, with the reason, when it cannot be loaded still.
    bool LoadMissing(const QString& library, QString& error);
    // Finds again what the plug-in folders hold.
    void RefreshPlugins() { finder.Refresh(); }
    // Follows a change of the folders that the user has added.
    void ReadPluginFolders();
    // What libraries hold, by which a project's plug-ins are found whose libraries have other names here.
    void SetPluginIdentities(CPluginFinder::Identities known) { finder.SetIdentities(std::move(known)); }
    // Forgets what belongs to the steps of the last project.
    void Clear() { watched.clear(); }
    // Gives plug-ins that ask for it their idle time, and tells of those that gave no sound; from the timer.
    void Tick();

Q_SIGNALS:
    // Parameter -1: all of them.
    void ParameterMoved(const void* plugin, int parameter);
    // The user takes hold of a parameter in the plug-in's own window or lets it go.
    void ParameterTouched(const void* plugin, int parameter, bool held);
    // A plug-in asks for another size of its window (pixels).
    void EditorSizeWanted(const void* plugin, int width, int height);

private:
    struct State;

    void ConnectEnvironment();
    std::shared_ptr<CPublished<PluginSlot>> PublishedSlot(const SlotPlace& place) const;
    std::shared_ptr<CPlugin> LoadAdmitted(PluginEnvironment& environment, const QString& library, ESlotKind kind,
                                          std::string& error);
    void PublishSlot(const SlotPlace& place, std::shared_ptr<const PluginSlot> next, const QString& name);
    static State StateOf(CPlugin& plugin);
    static void SetState(CPlugin& plugin, const State& state);
    bool ChangeState(const SlotPlace& place, const QString& name, const std::function<bool(CPlugin&)>& change);
    void ParameterMovedInWindow(CPlugin& plugin, int parameter, float value);
    std::shared_ptr<CPlugin> Shared(const CPlugin& plugin) const;
    void IdlePlugins();
    void ReportFaults();

    // What MIDI moves of the plug-in there, in the step in which it goes.
    void DropControllers(const SlotPlace& place, const QString& name);

    const DocumentContext& context;
    CControllers& controllers;
    CPluginFinder finder;
    std::map<const CPlugin*, std::vector<float>> watched;  // values of parameters
    bool messageShown = false;                             // a plug-in's loading told the user why it failed
    bool idling = false;
};

}  // namespace quib
