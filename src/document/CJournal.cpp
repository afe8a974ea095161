// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CJournal.h"

#include <utility>

#include "model/files/InstrumentFields.h"
#include "model/files/SlotRecords.h"
#include "model/plugin/BankUnheard.h"
#include "platform/Clock.h"

namespace quib {

namespace {

constexpr std::uint64_t kInterval = 4'000'000'000;  // nanoseconds between the beginnings of two passes
constexpr std::uint64_t kBudget = 400'000;          // nanoseconds of a tick
// A plug-in that needs long for its state is asked so rarely that it takes no more than this part of the time.
constexpr std::uint64_t kPatience = 500;

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
    to.arpeggiator.latch.Set(from.arpeggiator.latch.Get());
    to.eventPluginParameters = from.eventPluginParameters;
    to.presets = from.presets;
}

std::string Bytes(const ProjectState& state) {
    CRecordWriter writer;
    WriteProject(writer, state);
    return {writer.Bytes().data(), writer.Bytes().size()};
}

}  // namespace

void CJournal::Tick(const std::filesystem::path& path) {
    const std::uint64_t now = Nanoseconds();
    if (!passing) {
        if (!IsDue(now)) return;
        Begin(now);
    }
    do {
        if (Step()) continue;
        return Finish(path);
    } while (Nanoseconds() - now < kBudget);
}

void CJournal::Restart() {
    passing = false;
    state = {};
    plugins.clear();
    known.clear();
    written = changes.Revision();
}

bool CJournal::IsDue(std::uint64_t now) const { return changes.Revision() != written && now - begun >= kInterval; }

void CJournal::Begin(std::uint64_t now) {
    begun = now;
    passing = true;
    passed = changes.Revision();
    state = gather();
    plugins.clear();
    nextPlugin = nextInstrument = 0;
    ForEachSlot(state, [this](const PluginSlot& slot) {
        if (slot.plugin) plugins.push_back(slot.plugin);
    });
    std::erase_if(known, [](const auto& entry) { return entry.second.plugin.expired(); });
}

// One thing that cannot be divided; false when nothing is left.
bool CJournal::Step() {
    if (nextPlugin < plugins.size()) {
        Look(plugins[nextPlugin++]);
        return true;
    }
    if (nextInstrument == state.instruments.size()) return false;
    auto& instrument = state.instruments[nextInstrument++];
    instrument = Detached(*instrument);
    return true;
}

void CJournal::Look(const std::shared_ptr<CPlugin>& plugin) {
    Known& entry = known[plugin.get()];
    const std::uint64_t start = Nanoseconds();
    if (entry.image && start - entry.time < entry.cost * kPatience) return;
    const StateImage none;
    entry.image = std::make_shared<const StateImage>(SaveBankUnheard(*plugin, entry.image ? *entry.image : none));
    entry.program = plugin->CurrentProgram();
    entry.plugin = plugin;
    entry.time = Nanoseconds();
    entry.cost = entry.time - start;
}

// As of a plug-in that is missing, which files write just so.
std::shared_ptr<const PluginSlot> CJournal::Detached(const PluginSlot& slot) {
    auto detached = std::make_shared<PluginSlot>();
    detached->missing = slot.missing;
    if (!slot.plugin) return detached;
    if (!known.contains(slot.plugin.get())) Look(slot.plugin);
    const PluginIdentity& identity = slot.plugin->Identity();
    const Known& entry = known[slot.plugin.get()];
    detached->missing =
        std::make_shared<const MissingPlugin>(MissingPlugin{identity.fileName, identity.Key(), identity.displayName,
                                                            entry.image, entry.program, *slot.plugin->lanes.ForEdit()});
    return detached;
}

std::shared_ptr<CInstrument> CJournal::Detached(CInstrument& instrument) {
    auto copy = std::make_shared<CInstrument>();
    CopySettings(instrument, *copy);
    copy->plugin.Prepare(Detached(*instrument.plugin.ForEdit()));
    for (std::size_t i = 0; i < instrument.inserts.size(); ++i) {
        copy->inserts[i].Prepare(Detached(*instrument.inserts[i].ForEdit()));
    }
    for (const std::int32_t key : heldKeys(instrument)) copy->play.heldKeys.Add(key);
    return copy;
}

void CJournal::Finish(const std::filesystem::path& path) {
    for (MasterInsert& insert : state.masterInserts) insert.slot = Detached(*insert.slot);
    for (auto& effect : state.effects) effect = Detached(*effect);
    passing = false;
    written = passed;
    plugins.clear();
    auto whole = std::make_shared<const ProjectState>(std::exchange(state, {}));
    saver.Write(
        path, [whole] { return Bytes(*whole); }, done);
}

}  // namespace quib
