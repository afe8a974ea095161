// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/SlotRecords.h"
#include "model/plugin/PluginFormats.h"

#include <optional>
#include <span>
#include <utility>

#include "model/files/EventRecords.h"

namespace quib {

namespace {

const CEventLanes noLanes;

// No block holds a line with this key: where one comes, the end of the block got lost.
bool BelongsOutside(const CRecordReader& line) noexcept { return line.Key() == "PLUGIN" && line.HasFields(2); }

// Beside the name of a plug-in stands, under a key of its own that programs which do not know it pass over,
// who it is.
std::string IdentityKey(std::string_view nameKey) { return std::string(nameKey) + "_ID"; }

// The identity in the line after the current one, which names the plug-in; the line is left to others if it is
// none.
std::string ReadIdentity(CRecordReader& reader) {
    const std::string key = IdentityKey(reader.Key());
    if (!reader.NextLine()) return {};
    if (reader.Key() == key) return std::string(reader.Text(1));
    reader.RepeatLine();
    return {};
}

std::shared_ptr<const StateImage> CopyOf(std::string_view bytes) {
    const auto image = std::as_bytes(std::span(bytes.data(), bytes.size()));
    return std::make_shared<const StateImage>(image.begin(), image.end());
}

}  // namespace

bool OpensBracket(const CRecordReader& line) noexcept { return line.Text(1) == "START"; }
bool ClosesBracket(const CRecordReader& line) noexcept { return line.Text(1) == "END"; }

void CSlotReader::Load(CRecordReader& reader, ESlotKind kind, LoadContext& context) {
    *this = CSlotReader();
    fileName = reader.Text(1);
    PluginReference wanted{fileName, ReadIdentity(reader)};
    if (fileName.empty()) return;
    reason = "cannot be loaded here";
    if (context.load) plugin = context.load(wanted, kind, reason);
    if (plugin) return;
    missing = std::make_shared<MissingPlugin>();
    missing->fileName = fileName;
    missing->identity = std::move(wanted.identity);
}

void CSlotReader::SetDisplayName(std::string_view name) {
    if (missing) missing->displayName = name;
}

int CSlotReader::LaneCount() const noexcept {
    if (plugin) return static_cast<int>(plugin->Parameters().size());
    return missing ? CPlugin::kMaximumParameters : 0;
}

void CSlotReader::ReadState(CRecordReader& reader, LoadContext& context) {
    std::optional<int> program;
    std::optional<std::string_view> image;
    bool ended = false;
    while (!ended && reader.NextLine()) {
        const std::string_view key = reader.Key();
        ended = key == "PRESET";
        if (BelongsOutside(reader)) {
            reader.RepeatLine();
            break;
        }
        if (key == "PRESET_SIZE" && reader.HasFields(2)) {
            image = reader.TakeBytes(reader.Integer(1));
            if (!image) context.Warn(fileName, "the stored state is damaged");
        } else if (key == "PRESET_INDEX" && reader.HasFields(2)) {
            program = reader.Integer(1);
        }
    }
    if (!ended) context.Warn(fileName, "the end of its state is missing");
    // The program first: selecting one afterwards would make some plug-ins forget the edits in the image.
    if (program) ApplyProgram(*program, context);
    if (image) ApplyState(*image, context);
}

void CSlotReader::ApplyState(std::string_view image, LoadContext& context) {
    if (image.empty()) return;
    if (missing) missing->state = CopyOf(image);
    if (!plugin) return;
    const EBankResult result = plugin->LoadBank(std::as_bytes(std::span(image.data(), image.size())));
    if (result != EBankResult::kDone) context.Warn(fileName, Describe(result));
}

void CSlotReader::ApplyProgram(int program, LoadContext& context) {
    if (missing) missing->program = program;
    // A plug-in without programs writes program 0 all the same.
    if (plugin && !plugin->SelectProgram(program) && program != 0) {
        context.Warn(fileName, "there is no program " + std::to_string(program));
    }
}

void CSlotReader::ReadEvents(CRecordReader& reader, LoadContext& context) {
    while (reader.NextLine()) {
        if (BelongsOutside(reader)) {
            reader.RepeatLine();
            break;
        }
        if (reader.Key() != "PARAM_EVENTS") continue;
        if (ClosesBracket(reader)) return;
        ReadSongPoints(reader, LaneCount(), lanes);
    }
    context.Warn(fileName, "the end of its automation is missing");
}

std::shared_ptr<const PluginSlot> CSlotReader::Finish(LoadContext& context, const std::string& place) {
    if (missing) context.WarnMissing(fileName, reason, place);
    auto slot = std::make_shared<PluginSlot>();
    if (plugin) plugin->lanes.Prepare(std::make_shared<const CEventLanes>(lanes.Build()));
    if (missing) missing->lanes = lanes.Build();
    slot->plugin = std::move(plugin);
    slot->missing = std::move(missing);
    *this = CSlotReader();
    return slot;
}

bool IsEmpty(const PluginSlot& slot) noexcept { return slot.plugin == nullptr && slot.missing == nullptr; }

std::string SlotFileName(const PluginSlot& slot) {
    if (slot.plugin) return slot.plugin->Identity().fileName;
    return slot.missing ? slot.missing->fileName : std::string();
}

void WriteSlotName(CRecordWriter& writer, std::string_view key, const PluginSlot& slot, ESlotName form) {
    const std::string name = SlotFileName(slot);
    writer.TextLine(key, form == ESlotName::kListed ? WithoutPluginExtension(name) : std::string_view(name));
    std::string identity;
    if (slot.plugin) identity = slot.plugin->Identity().Key();
    if (slot.missing) identity = slot.missing->identity;
    if (!identity.empty()) writer.TextLine(IdentityKey(key), identity);
}

const CEventLanes& SlotLanes(const PluginSlot& slot) {
    if (slot.plugin) return *slot.plugin->lanes.ForEdit();
    return slot.missing ? slot.missing->lanes : noLanes;
}

void WriteState(CRecordWriter& writer, std::string_view openKey, const PluginSlot& slot) {
    writer.TextLine(openKey, "START");
    StateImage image;
    std::int32_t program = 0;
    if (slot.plugin) {
        image = slot.plugin->SaveBank();
        program = slot.plugin->CurrentProgram();
    } else if (slot.missing) {
        if (slot.missing->state) image = *slot.missing->state;
        program = slot.missing->program;
    }
    writer.SizedBytes("PRESET_SIZE", image);
    writer.IntegerLine("PRESET_INDEX", program);
    writer.TextLine("PRESET", "END");
}

void WriteEvents(CRecordWriter& writer, std::string_view openKey, const PluginSlot& slot) {
    writer.TextLine(openKey, "START");
    WriteSongPoints(writer, "PARAM_EVENTS", SlotLanes(slot));
    writer.TextLine("PARAM_EVENTS", "END");
}

}  // namespace quib
