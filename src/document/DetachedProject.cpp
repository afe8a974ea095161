// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DetachedProject.h"

#include "model/files/InstrumentFields.h"
#include "model/files/SlotRecords.h"
#include "project/ProjectFile.h"

namespace quib {

namespace {

void CopyFields(std::span<const InstrumentField> fields, CInstrument& from, CInstrument& to) {
    for (const InstrumentField& field : fields) {
        if (field.integer != nullptr) {
            field.integer(to).Set(field.integer(from).Get());
        } else {
            field.real(to).Set(field.real(from).Get());
        }
    }
}

// All that files hold but plug-ins.
void CopySettings(CInstrument& from, CInstrument& to) {
    for (const auto& fields : {MidiInputFields(), StepFields(), ArpeggiatorFields()}) CopyFields(fields, from, to);
    SetValues(to.strip, ValuesOf(from.strip));
    to.swing.Set(from.swing.Get());
    to.keyboardOn.Set(from.keyboardOn.Get());
    SelectStepNumberMode(to, SelectedStepNumberMode(from));
    for (std::size_t i = 0; i < from.patterns.size(); ++i) {
        to.patterns[i].Prepare(from.patterns[i].ForEdit());
        to.patternUsed[i].Set(from.patternUsed[i].Get());
    }
    to.midiLanes.Prepare(from.midiLanes.ForEdit());
    to.mixLanes.Prepare(from.mixLanes.ForEdit());
    to.playlist.Prepare(from.playlist.ForEdit());
    to.ballSounds.Prepare(from.ballSounds.ForEdit());
    to.title = from.title;
    to.icon = from.icon;
    to.keyboardPosition = from.keyboardPosition;
    to.stripColour = from.stripColour;
    to.stripCollapsed = from.stripCollapsed;
    to.isFrozen = from.isFrozen;
    to.arpeggiator.latch.Set(from.arpeggiator.latch.Get());
    to.eventPluginParameters = from.eventPluginParameters;
    to.presets = from.presets;
}

// As of a plug-in that is missing, which files write just so.
std::shared_ptr<const PluginSlot> Detached(const PluginSlot& slot, const StateOfPlugin& stateOf) {
    auto detached = std::make_shared<PluginSlot>();
    detached->missing = slot.missing;
    if (!slot.plugin) return detached;
    const PluginIdentity& identity = slot.plugin->Identity();
    const CPlugin::StoredState stored = stateOf(slot.plugin);
    detached->missing = std::make_shared<const MissingPlugin>(
        MissingPlugin{identity.fileName, identity.Key(), identity.displayName, stored.image, stored.program,
                      *slot.plugin->lanes.ForEdit()});
    return detached;
}

}  // namespace

std::shared_ptr<CInstrument> Detached(CInstrument& instrument, const StateOfPlugin& stateOf,
                                      const std::vector<std::int32_t>& heldKeys) {
    auto copy = std::make_shared<CInstrument>();
    CopySettings(instrument, *copy);
    copy->plugin.Prepare(Detached(*instrument.plugin.ForEdit(), stateOf));
    for (std::size_t i = 0; i < instrument.inserts.size(); ++i) {
        copy->inserts[i].Prepare(Detached(*instrument.inserts[i].ForEdit(), stateOf));
    }
    for (const std::int32_t key : heldKeys) copy->play.heldKeys.Add(key);
    return copy;
}

void DetachMaster(ProjectState& state, const StateOfPlugin& stateOf) {
    for (MasterInsert& insert : state.masterInserts) insert.slot = Detached(*insert.slot, stateOf);
    for (auto& effect : state.effects) effect = Detached(*effect, stateOf);
}

std::string BytesOf(const ProjectState& state) {
    CRecordWriter writer;
    WriteProject(writer, state);
    return {writer.Bytes().data(), writer.Bytes().size()};
}

}  // namespace quib
