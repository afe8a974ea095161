// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/PluginBank.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "model/plugin/BankImage.h"
#include "model/plugin/CPlugin.h"

namespace quib {

using namespace vst2;

namespace {

constexpr std::intptr_t kLargestChunk = std::intptr_t{1} << 30;
constexpr std::size_t kChunkPadding = 16;

using Parameters = std::vector<float>;

Parameters CurrentParameters(CPlugin& plugin) {
    Parameters values(plugin.Parameters().size());
    AEffect& effect = plugin.Effect();
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = effect.getParameter(&effect, static_cast<int>(i));
    return values;
}

// Sets what differs, so that a plug-in that is as wanted already is left in peace.
void RestoreParameters(CPlugin& plugin, const Parameters& wanted) {
    const Parameters present = CurrentParameters(plugin);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (present[i] != wanted[i]) plugin.SetParameter(static_cast<int>(i), wanted[i]);
    }
}

std::intptr_t CurrentProgram(CPlugin& plugin) { return plugin.Dispatch(effGetProgram); }

// Zeros follow the chunk: plug-ins that take it for text read on until they find one.
void SetChunk(CPlugin& plugin, std::int32_t scope, std::span<const std::byte> chunk) {
    if (chunk.empty()) return;
    StateImage copy(chunk.size() + kChunkPadding);
    std::copy(chunk.begin(), chunk.end(), copy.begin());
    const CPlugin::CExclusive exclusive(plugin);
    plugin.Dispatch(effBeginSetProgram);
    plugin.Dispatch(effSetChunk, scope, static_cast<std::intptr_t>(chunk.size()), copy.data());
    plugin.Dispatch(effEndSetProgram);
}

std::span<const std::byte> GetChunk(CPlugin& plugin, std::int32_t scope) {
    void* data = nullptr;
    const std::intptr_t size = plugin.Dispatch(effGetChunk, scope, 0, &data);
    if (data == nullptr || size <= 0 || size > kLargestChunk) return {};
    return {static_cast<const std::byte*>(data), static_cast<std::size_t>(size)};
}

BankResult LoadChunk(CPlugin& plugin, std::int32_t scope, const CImageNumbers& numbers, std::size_t offset) {
    if (!plugin.HasChunks()) return BankResult::Unsuited;
    std::span<const std::byte> chunk;
    if (!ReadChunk(numbers, offset, chunk)) return BankResult::Damaged;
    SetChunk(plugin, scope, chunk);
    return BankResult::Done;
}

// Name and parameters of the program record at `offset` go to the current program.
void ApplyProgramRecord(CPlugin& plugin, const CImageNumbers& numbers, std::size_t offset, int parameters) {
    std::string name = numbers.Name(offset + kProgramHeader - kProgramNameSize);
    name.resize(kProgramNameSize);
    plugin.Dispatch(effSetProgramName, 0, 0, name.data());
    for (int i = 0; i < parameters; ++i) {
        plugin.SetParameter(i, numbers.Real(offset + kProgramHeader + 4 * static_cast<std::size_t>(i)));
    }
}

// Parameters of the record at `offset`, or -1 when the record is not whole.
int RecordParameters(const CImageNumbers& numbers, std::size_t offset) {
    const std::size_t size = numbers.Bytes().size();
    if (size < offset + kProgramHeader) return -1;
    const std::int32_t count = numbers.Integer(offset + 24);
    if (count < 0 || static_cast<std::size_t>(count) > (size - offset - kProgramHeader) / 4) return -1;
    return count;
}

BankResult LoadPrograms(CPlugin& plugin, const CImageNumbers& numbers, std::int32_t programs) {
    if (programs <= 0) return BankResult::Done;
    const int parameters = RecordParameters(numbers, kBankProgramsHeader);
    if (parameters < 0) return BankResult::Damaged;
    const std::size_t stride = kProgramHeader + 4 * static_cast<std::size_t>(parameters);
    const CPlugin::CExclusive exclusive(plugin);
    if (plugin.Identity().programCount == 0) {  // one state, no program to select
        ApplyProgramRecord(plugin, numbers, kBankProgramsHeader, parameters);
        return BankResult::Done;
    }
    // A plug-in is asked for no program that it did not have when it was loaded.
    const int count = std::min(programs, plugin.Identity().programCount);
    const std::intptr_t current = CurrentProgram(plugin);
    plugin.Effect().numPrograms = count;
    std::size_t offset = kBankProgramsHeader;
    for (int program = 0; program < count && offset + stride <= numbers.Bytes().size(); ++program, offset += stride) {
        plugin.Dispatch(effSetProgram, 0, program);
        ApplyProgramRecord(plugin, numbers, offset, parameters);
    }
    plugin.Dispatch(effSetProgram, 0, current);
    return BankResult::Done;
}

BankResult CheckHeader(const CPlugin& plugin, std::span<const std::byte> image, ImageHeader& header) {
    if (!ReadImageHeader(image, header)) return BankResult::Incompatible;
    return header.uniqueId == plugin.Effect().uniqueId ? BankResult::Done : BankResult::Incompatible;
}

void WriteProgramRecord(CImageWriter& writer, CPlugin& plugin, const Parameters& values) {
    writer.Header(ImageKind::ProgramParameters, plugin.Effect(), static_cast<std::int32_t>(values.size()));
    writer.Name(plugin.Text(effGetProgramName));
    for (const float value : values) writer.Real(value);
}

StateImage SavePrograms(CPlugin& plugin) {
    CImageWriter writer;
    const int programs = std::clamp(plugin.Effect().numPrograms, 1, std::max(1, plugin.Identity().programCount));
    writer.Header(ImageKind::BankPrograms, plugin.Effect(), programs);
    writer.Zeros(kBankProgramsHeader - 28);
    // Read before any other program is selected: some plug-ins forget edits that leave the current one.
    const Parameters edited = CurrentParameters(plugin);
    if (programs == 1) {
        WriteProgramRecord(writer, plugin, edited);
        return writer.Finish();
    }
    const CPlugin::CExclusive exclusive(plugin);
    const std::intptr_t current = CurrentProgram(plugin);
    for (int program = 0; program < programs; ++program) {
        plugin.Dispatch(effSetProgram, 0, program);
        WriteProgramRecord(writer, plugin, program == current ? edited : CurrentParameters(plugin));
    }
    plugin.Dispatch(effSetProgram, 0, current);
    RestoreParameters(plugin, edited);
    return writer.Finish();
}

}  // namespace

const char* Describe(BankResult result) noexcept {
    switch (result) {
        case BankResult::Incompatible:
            return "No Compatible File !";
        case BankResult::Damaged:
            return "the stored state is damaged";
        case BankResult::Unsuited:
            return "the stored state is of a kind that the plug-in does not take";
        case BankResult::Done:
            break;
    }
    return "";
}

BankResult LoadBank(CPlugin& plugin, std::span<const std::byte> image) {
    ImageHeader header;
    if (const BankResult result = CheckHeader(plugin, image, header); result != BankResult::Done) return result;
    const CImageNumbers numbers(image, header.reversed);
    if (header.kind == ImageKind::BankChunk) return LoadChunk(plugin, 0, numbers, kBankChunkHeader);
    if (header.kind == ImageKind::BankPrograms) return LoadPrograms(plugin, numbers, header.count);
    return BankResult::Unsuited;
}

BankResult LoadProgram(CPlugin& plugin, std::span<const std::byte> image) {
    ImageHeader header;
    if (const BankResult result = CheckHeader(plugin, image, header); result != BankResult::Done) return result;
    const CImageNumbers numbers(image, header.reversed);
    if (header.kind == ImageKind::ProgramChunk) return LoadChunk(plugin, 1, numbers, kProgramChunkHeader);
    if (header.kind != ImageKind::ProgramParameters) return BankResult::Unsuited;
    const int parameters = RecordParameters(numbers, 0);
    if (parameters < 0) return BankResult::Damaged;
    const CPlugin::CExclusive exclusive(plugin);
    ApplyProgramRecord(plugin, numbers, 0, parameters);
    return BankResult::Done;
}

StateImage SaveBank(CPlugin& plugin) {
    if (!plugin.HasChunks()) return SavePrograms(plugin);
    const auto chunk = GetChunk(plugin, 0);
    CImageWriter writer;
    writer.Header(ImageKind::BankChunk, plugin.Effect(), plugin.Effect().numPrograms);
    writer.Zeros(kBankChunkHeader - 32);
    writer.Integer(static_cast<std::int32_t>(chunk.size()));
    writer.Bytes(chunk);
    return writer.Finish();
}

StateImage SaveProgram(CPlugin& plugin) {
    CImageWriter writer;
    if (!plugin.HasChunks()) {
        WriteProgramRecord(writer, plugin, CurrentParameters(plugin));
        return writer.Finish();
    }
    const auto chunk = GetChunk(plugin, 1);
    writer.Header(ImageKind::ProgramChunk, plugin.Effect(), static_cast<std::int32_t>(plugin.Parameters().size()));
    writer.Name(plugin.Text(effGetProgramName));
    writer.Integer(static_cast<std::int32_t>(chunk.size()));
    writer.Bytes(chunk);
    return writer.Finish();
}

bool SelectProgram(CPlugin& plugin, int program) {
    if (program < 0 || program >= plugin.Effect().numPrograms) return false;
    if (CurrentProgram(plugin) == program) return true;
    const CPlugin::CExclusive exclusive(plugin);
    plugin.Dispatch(effSetProgram, 0, program);
    return true;
}

}  // namespace quib
