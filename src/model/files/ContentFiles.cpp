// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/ContentFiles.h"

#include "model/plugin/CPlugin.h"
#include "platform/CAtomicFile.h"
#include "platform/CFileBytes.h"

namespace quib {

namespace fs = std::filesystem;

namespace {

void NameFile(const fs::path& path, std::string& error) { error = path.string() + ": " + error; }

bool SaveImage(const fs::path& path, const StateImage& image, std::string& error) {
    return CAtomicFile().Replace(path, {reinterpret_cast<const char*>(image.data()), image.size()}, error);
}

bool LoadImage(const fs::path& path, CPlugin& plugin, EBankResult (CPlugin::*load)(std::span<const std::byte>),
               std::string& error) {
    CFileBytes file;
    if (!file.Read(path, error)) return false;
    const EBankResult result = (plugin.*load)(std::as_bytes(std::span(file.View().data(), file.View().size())));
    if (result != EBankResult::kDone) error = Describe(result);
    return result == EBankResult::kDone;
}

}  // namespace

std::shared_ptr<CInstrument> LoadInstrumentFile(const fs::path& path, LoadContext& context, std::string& error) {
    CFileBytes file;
    if (!file.Read(path, error)) return nullptr;
    auto instrument = ReadInstrumentFile(file.View(), context, error);
    if (!instrument) NameFile(path, error);
    return instrument;
}

bool SaveInstrumentFile(const fs::path& path, CInstrument& instrument, std::span<const std::int32_t> heldKeys,
                        std::string& error) {
    CRecordWriter writer;
    WriteInstrument(writer, instrument, heldKeys);
    return CAtomicFile().Replace(path, writer.Bytes(), error);
}

bool LoadPatternFile(const fs::path& path, PatternSet& set, std::string& error) {
    CFileBytes file;
    if (!file.Read(path, error)) return false;
    if (ReadPatternFile(file.View(), set, error)) return true;
    NameFile(path, error);
    return false;
}

bool SavePatternFile(const fs::path& path, const CInstrument& instrument, std::string& error) {
    CRecordWriter writer;
    WritePatternBlock(writer, instrument);
    return CAtomicFile().Replace(path, writer.Bytes(), error);
}

bool LoadBankFile(const fs::path& path, CPlugin& plugin, std::string& error) {
    return LoadImage(path, plugin, &CPlugin::LoadBank, error);
}

bool SaveBankFile(const fs::path& path, CPlugin& plugin, std::string& error) {
    return SaveImage(path, plugin.SaveBank(), error);
}

bool LoadProgramFile(const fs::path& path, CPlugin& plugin, std::string& error) {
    return LoadImage(path, plugin, &CPlugin::LoadProgram, error);
}

bool SaveProgramFile(const fs::path& path, CPlugin& plugin, std::string& error) {
    return SaveImage(path, plugin.SaveProgram(), error);
}

}  // namespace quib
