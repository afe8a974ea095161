// SPDX-License-Identifier: GPL-3.0-or-later
// States as images in the published layouts of bank files (.fxb) and program files (.fxp): an opaque chunk, or
// the parameters of every program.
#include <algorithm>
#include <string>

#include "model/plugin/BankUnheard.h"
#include "model/plugin/vst2/BankImage.h"
#include "model/plugin/vst2/CVst2Plugin.h"

namespace quib {

using namespace vst2;

namespace {

constexpr std::intptr_t kLargestChunk = std::intptr_t{1} << 30;
constexpr std::size_t kChunkPadding = 16;

// Parameters of the record at `offset`, or -1 when the record is not whole.
int RecordParameters(const CImageNumbers& numbers, std::size_t offset) {
    const std::size_t size = numbers.Bytes().size();
    if (size < offset + kProgramHeader) return -1;
    const std::int32_t count = numbers.Integer(offset + 24);
    if (count < 0 || static_cast<std::size_t>(count) > (size - offset - kProgramHeader) / 4) return -1;
    return count;
}

}  // namespace

CVst2Plugin::Values CVst2Plugin::CurrentValues() {
    Values values(Parameters().size());
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = ReadParameter(static_cast<int>(i));
    return values;
}

// Sets what differs, so that a plug-in that is as wanted already is left in peace.
void CVst2Plugin::RestoreValues(const Values& wanted) {
    const Values present = CurrentValues();
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (present[i] != wanted[i]) SetParameter(static_cast<int>(i), wanted[i]);
    }
}

// Zeros follow the chunk: plug-ins that take it for text read on until they find one.
void CVst2Plugin::SetChunk(std::int32_t scope, std::span<const std::byte> chunk) {
    if (chunk.empty()) return;
    StateImage copy(chunk.size() + kChunkPadding);
    std::copy(chunk.begin(), chunk.end(), copy.begin());
    const CExclusive exclusive(*this);
    Dispatch(effBeginSetProgram);
    Dispatch(effSetChunk, scope, static_cast<std::intptr_t>(chunk.size()), copy.data());
    Dispatch(effEndSetProgram);
}

std::span<const std::byte> CVst2Plugin::GetChunk(std::int32_t scope) {
    void* data = nullptr;
    const std::intptr_t size = Dispatch(effGetChunk, scope, 0, &data);
    if (data == nullptr || size <= 0 || size > kLargestChunk) return {};
    return {static_cast<const std::byte*>(data), static_cast<std::size_t>(size)};
}

EBankResult CVst2Plugin::LoadChunk(std::int32_t scope, const CImageNumbers& numbers, std::size_t offset) {
    if (!HasChunks()) return EBankResult::kUnsuited;
    std::span<const std::byte> chunk;
    if (!ReadChunk(numbers, offset, chunk)) return EBankResult::kDamaged;
    SetChunk(scope, chunk);
    return EBankResult::kDone;
}

// Name and parameters of the program record at `offset` go to the current program.
void CVst2Plugin::ApplyProgramRecord(const CImageNumbers& numbers, std::size_t offset, int count) {
    std::string name = numbers.Name(offset + kProgramHeader - kProgramNameSize);
    name.resize(kProgramNameSize);
    Dispatch(effSetProgramName, 0, 0, name.data());
    for (int i = 0; i < count; ++i) {
        SetParameter(i, numbers.Real(offset + kProgramHeader + 4 * static_cast<std::size_t>(i)));
    }
}

EBankResult CVst2Plugin::LoadPrograms(const CImageNumbers& numbers, std::int32_t programs) {
    if (programs <= 0) return EBankResult::kDone;
    const int values = RecordParameters(numbers, kBankProgramsHeader);
    if (values < 0) return EBankResult::kDamaged;
    const std::size_t stride = kProgramHeader + 4 * static_cast<std::size_t>(values);
    const CExclusive exclusive(*this);
    if (Identity().programCount == 0) {  // one state, no program to select
        ApplyProgramRecord(numbers, kBankProgramsHeader, values);
        return EBankResult::kDone;
    }
    // A plug-in is asked for no program that it did not have when it was loaded.
    const int count = std::min(programs, Identity().programCount);
    const int current = CurrentProgram();
    effect->numPrograms = count;
    std::size_t offset = kBankProgramsHeader;
    for (int program = 0; program < count && offset + stride <= numbers.Bytes().size(); ++program, offset += stride) {
        Dispatch(effSetProgram, 0, program);
        ApplyProgramRecord(numbers, offset, values);
    }
    Dispatch(effSetProgram, 0, current);
    return EBankResult::kDone;
}

EBankResult CVst2Plugin::CheckHeader(std::span<const std::byte> image, ImageHeader& header) const {
    if (!ReadImageHeader(image, header)) return EBankResult::kIncompatible;
    return header.uniqueId == effect->uniqueId ? EBankResult::kDone : EBankResult::kIncompatible;
}

void CVst2Plugin::WriteProgramRecord(CImageWriter& writer, const Values& values) {
    writer.Header(EImageKind::kProgramParameters, *effect, static_cast<std::int32_t>(values.size()));
    writer.Name(Text(effGetProgramName));
    for (const float value : values) writer.Real(value);
}

StateImage CVst2Plugin::SavePrograms() {
    CImageWriter writer;
    const int programs = std::clamp(effect->numPrograms, 1, std::max(1, Identity().programCount));
    writer.Header(EImageKind::kBankPrograms, *effect, programs);
    writer.Zeros(kBankProgramsHeader - 28);
    // Read before any other program is selected: some plug-ins forget edits that leave the current one.
    const Values edited = CurrentValues();
    if (programs == 1) {
        WriteProgramRecord(writer, edited);
        return writer.Finish();
    }
    const CExclusive exclusive(*this);
    const int current = CurrentProgram();
    for (int program = 0; program < programs; ++program) {
        Dispatch(effSetProgram, 0, program);
        WriteProgramRecord(writer, program == current ? edited : CurrentValues());
    }
    Dispatch(effSetProgram, 0, current);
    RestoreValues(edited);
    return writer.Finish();
}

EBankResult CVst2Plugin::TakeBank(std::span<const std::byte> image) {
    ImageHeader header;
    if (const EBankResult result = CheckHeader(image, header); result != EBankResult::kDone) return result;
    const CImageNumbers numbers(image, header.reversed);
    if (header.kind == EImageKind::kBankChunk) return LoadChunk(0, numbers, kBankChunkHeader);
    if (header.kind == EImageKind::kBankPrograms) return LoadPrograms(numbers, header.count);
    return EBankResult::kUnsuited;
}

EBankResult CVst2Plugin::LoadProgram(std::span<const std::byte> image) {
    CountEdit();
    ImageHeader header;
    if (const EBankResult result = CheckHeader(image, header); result != EBankResult::kDone) return result;
    const CImageNumbers numbers(image, header.reversed);
    if (header.kind == EImageKind::kProgramChunk) return LoadChunk(1, numbers, kProgramChunkHeader);
    if (header.kind != EImageKind::kProgramParameters) return EBankResult::kUnsuited;
    const int values = RecordParameters(numbers, 0);
    if (values < 0) return EBankResult::kDamaged;
    const CExclusive exclusive(*this);
    ApplyProgramRecord(numbers, 0, values);
    return EBankResult::kDone;
}

StateImage CVst2Plugin::MakeBank() {
    if (!HasChunks()) return SavePrograms();
    const auto chunk = GetChunk(0);
    CImageWriter writer;
    writer.Header(EImageKind::kBankChunk, *effect, effect->numPrograms);
    writer.Zeros(kBankChunkHeader - 32);
    writer.Integer(static_cast<std::int32_t>(chunk.size()));
    writer.Bytes(chunk);
    return writer.Finish();
}

StateImage SaveBankUnheard(CPlugin& plugin, const StateImage& last) {
    auto* const programs = dynamic_cast<CVst2Plugin*>(&plugin);
    return programs != nullptr ? programs->SaveBankUnheard(last) : plugin.SaveBank();
}

StateImage CVst2Plugin::SaveBankUnheard(const StateImage& last) {
    const int program = CurrentProgram();
    CImageWriter writer;
    WriteProgramRecord(writer, CurrentValues());
    const StateImage record = writer.Finish();
    const std::size_t offset = kBankProgramsHeader + static_cast<std::size_t>(std::max(program, 0)) * record.size();
    if (HasChunks() || effect->numPrograms <= 1 || program < 0 || last.size() < offset + record.size()) {
        return MakeBank();
    }
    StateImage image = last;
    std::copy(record.begin(), record.end(), image.begin() + static_cast<std::ptrdiff_t>(offset));
    return image;
}

StateImage CVst2Plugin::SaveProgram() {
    CImageWriter writer;
    if (!HasChunks()) {
        WriteProgramRecord(writer, CurrentValues());
        return writer.Finish();
    }
    const auto chunk = GetChunk(1);
    writer.Header(EImageKind::kProgramChunk, *effect, static_cast<std::int32_t>(Parameters().size()));
    writer.Name(Text(effGetProgramName));
    writer.Integer(static_cast<std::int32_t>(chunk.size()));
    writer.Bytes(chunk);
    return writer.Finish();
}

}  // namespace quib
