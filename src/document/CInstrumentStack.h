// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The stack of instruments: adding, removing, order, names and looks, instrument files, solo.
// User-interface thread.

#include <QColor>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "document/CPluginPlaces.h"
#include "document/CSelection.h"
#include "document/DocumentContext.h"

namespace quib {

// The settings of one band of an equaliser, in the ranges of the channel strip.
struct EqBandSettings {
    float frequency = 0;
    float resonance = 0;
    float gain = 0;
};

class CInstrumentStack {
public:
    CInstrumentStack(const DocumentContext& document, CPluginPlaces& pluginPlaces, CSelection& currentOne,
                     CControllers& controllerMap)
        : context(document), places(pluginPlaces), selection(currentOne), controllers(controllerMap) {}

    const InstrumentList& Instruments() const { return context.Instruments(); }
    // Null for an index or id that is not there.
    std::shared_ptr<CInstrument> Instrument(int index) const { return context.Instrument(index); }
    std::shared_ptr<CInstrument> InstrumentById(std::uint32_t id) const { return context.InstrumentById(id); }
    int IndexOf(std::uint32_t id) const { return context.IndexOf(id); }  // -1: not there

    // A plug-in by its name in the lists or by its path, or an instrument file. Gives its index, or -1;
    // `error` is then empty when the user has been told already.
    int AddInstrument(const QString& nameOrPath, QString& error);
    // Made elsewhere, at the end of the list; one step of undo. False with `error` when there would be too many.
    bool AddInstruments(const InstrumentList& added, const QString& name, QString& error);
    void RemoveInstrument(int index);
    void MoveInstrument(int from, int to);
    void DuplicateInstrument(int index);
    void ResetInstrument(int index);
    void RenameInstrument(int index, const QString& title);
    void SetIcon(int index, int icon);
    bool LoadInstrument(int index, const QString& path, QString& error);
    bool SaveInstrument(int index, const QString& path, QString& error);
    // Look of the strip. An invalid colour: the skin's own.
    QColor StripColour(int index) const;
    void SetStripColour(int index, const QColor& colour);
    bool IsCollapsed(int index) const;
    void SetCollapsed(int index, bool collapsed);

    // Solo is a way of listening: it is neither saved nor a step of undo. Exclusive, or adding up when
    // "SoloCumulMode" is on.
    bool IsSolo(int index) const;
    void ToggleSolo(int index);
    // The first instrument in solo; 0 when there is none.
    std::uint32_t SoloedId() const;

    // Lets the engine follow an equaliser band that has moved.
    void FollowEqualizer(const std::shared_ptr<CInstrument>& instrument, int band) const;
    // A gesture on a band has ended: becomes a step of undo.
    void EqualizerEdited(const std::shared_ptr<CInstrument>& instrument, int band, const EqBandSettings& before);
    // Keys that sound now; for instruments that do not play, those that they were loaded with.
    std::vector<std::int32_t> HeldKeysOf(const CInstrument& instrument);
    // What was left out at the last loading of an instrument, one line each.
    std::vector<std::string> TakeWarnings() { return std::exchange(warnings, {}); }

    // Another project has been published: what belonged to the last one is forgotten.
    void ProjectReplaced();

private:
    void SetInstruments(InstrumentList list, int nextCurrent, const QString& name);
    void PublishInstruments(const InstrumentList& list, int nextCurrent);
    void ReplaceInstrument(int index, std::shared_ptr<CInstrument> next, const QString& name);
    std::shared_ptr<CInstrument> MakeInstrument(const QString& nameOrPath, QString& error);
    void KeepKeys(const CInstrument& loaded) { loadedKeys[loaded.Id()] = loaded.play.heldKeys.Items(); }
    // What MIDI moves of an instrument, in the step in which it goes.
    void DropControllers(const CInstrument& instrument, const QString& name);
    // As the setting "LevelOffWhenLoadingInst" wants it.
    void StartSilent(CInstrument& loaded) const;
    void ApplySolo();
    std::string FreshTitle(const std::string& title) const;

    const DocumentContext& context;
    CPluginPlaces& places;
    CSelection& selection;
    CControllers& controllers;
    std::set<std::uint32_t> soloed;
    std::map<std::uint32_t, std::vector<std::int32_t>> loadedKeys;  // held when the instrument was loaded
    std::vector<std::string> warnings;
};

}  // namespace quib
