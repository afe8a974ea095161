// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The files that load and save on their own: instruments (.ist), patterns (.ptn), banks (.fxb) and
// programs (.fxp) of plug-ins. Editing thread. Every function returns false (or null) with `error` set
// when it could not; what it was to change is as before then. Saving replaces a file in one step.

#include <filesystem>
#include <memory>
#include <span>
#include <string>

#include "model/files/InstrumentFile.h"
#include "model/files/PatternRecords.h"

namespace quib {

// A new instrument, to take the place of another one.
std::shared_ptr<CInstrument> LoadInstrumentFile(const std::filesystem::path& path, LoadContext& context,
                                                std::string& error);
bool SaveInstrumentFile(const std::filesystem::path& path, CInstrument& instrument,
                        std::span<const std::int32_t> heldKeys, std::string& error);

// To be given to ReplacePatterns.
bool LoadPatternFile(const std::filesystem::path& path, PatternSet& set, std::string& error);
bool SavePatternFile(const std::filesystem::path& path, const CInstrument& instrument, std::string& error);

// `error` is the text of the message to the user where the file does not fit the plug-in.
bool LoadBankFile(const std::filesystem::path& path, CPlugin& plugin, std::string& error);
bool SaveBankFile(const std::filesystem::path& path, CPlugin& plugin, std::string& error);
bool LoadProgramFile(const std::filesystem::path& path, CPlugin& plugin, std::string& error);
bool SaveProgramFile(const std::filesystem::path& path, CPlugin& plugin, std::string& error);

}  // namespace quib
