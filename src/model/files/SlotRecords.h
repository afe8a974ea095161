// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The records of one plug-in place: its library, its state block and its automation block. Used for
// instruments, inserts, master inserts and shared effects alike. Editing thread; what is read stays
// unpublished until its owner publishes it.

#include <memory>
#include <string>
#include <string_view>

#include "model/files/CRecordReader.h"
#include "model/files/CRecordWriter.h"
#include "model/files/LoadContext.h"
#include "model/plugin/PluginSlot.h"

namespace quib {

// "START" or "END" of a bracket.
bool OpensBracket(const CRecordReader& line) noexcept;
bool ClosesBracket(const CRecordReader& line) noexcept;

class CSlotReader {
public:
    // Loads the plug-in that the current line names, with the line of its identity if that comes next; one
    // that cannot be loaded is remembered as missing.
    void Load(CRecordReader& reader, ESlotKind kind, LoadContext& context);
    bool IsEmpty() const noexcept { return plugin == nullptr && missing == nullptr; }

    // The name that the file shows for the plug-in; kept for a missing one.
    void SetDisplayName(std::string_view name);
    // The lines of a state block up to its end; the state goes to the plug-in or is kept.
    void ReadState(CRecordReader& reader, LoadContext& context);
    // The lines of an automation block up to its end.
    void ReadEvents(CRecordReader& reader, LoadContext& context);

    // Automation gathered so far, and how many lanes there may be.
    CEventLanesBuilder& Lanes() noexcept { return lanes; }
    int LaneCount() const noexcept;

    // The slot with all that was read; leaves the reader empty. Warns of a plug-in that is missing in `place`.
    std::shared_ptr<const PluginSlot> Finish(LoadContext& context, const std::string& place);

private:
    void ApplyState(std::string_view image, LoadContext& context);
    void ApplyProgram(int program, LoadContext& context);

    std::string fileName;
    std::string reason;  // why it is missing
    std::shared_ptr<CPlugin> plugin;
    std::shared_ptr<MissingPlugin> missing;
    CEventLanesBuilder lanes;
};

// Name of the library that a slot has or misses; empty for an empty slot.
std::string SlotFileName(const PluginSlot& slot);
bool IsEmpty(const PluginSlot& slot) noexcept;
// The line "`key`;name;" of a slot, and the line of its identity. In lists of names these have no extension.
enum class ESlotName { kFile, kListed };
void WriteSlotName(CRecordWriter& writer, std::string_view key, const PluginSlot& slot,
                   ESlotName form = ESlotName::kFile);
// Automation of a slot's plug-in, loaded or missing.
const CEventLanes& SlotLanes(const PluginSlot& slot);

// A state block between "`openKey`;START;" and "PRESET;END;".
void WriteState(CRecordWriter& writer, std::string_view openKey, const PluginSlot& slot);
// An automation block between "`openKey`;START;" and "PARAM_EVENTS;END;".
void WriteEvents(CRecordWriter& writer, std::string_view openKey, const PluginSlot& slot);

}  // namespace quib
