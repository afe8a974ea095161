// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// All records of one instrument: an instrument file (.ist), or a section of a project. Editing thread.
// Reading builds a new instrument that nobody else sees; writing reads one that may be playing.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "model/CInstrument.h"
#include "model/files/CRecordReader.h"
#include "model/files/CRecordWriter.h"
#include "model/files/LoadContext.h"

namespace quib {

constexpr std::size_t kMaximumPresets = 1000;  // of one instrument; further ones in a file are left out

// Reads from the next line, which names the plug-in, up to "PLUGIN;END;" (`ended` is then true), to
// the line before the next instrument, or to the end of the bytes. Null when no record was known.
std::shared_ptr<CInstrument> ReadInstrument(CRecordReader& reader, LoadContext& context, bool& ended);

// Appends the records. `heldKeys`: the on-screen keyboard's, which only the render thread knows of an
// instrument that plays.
void WriteInstrument(CRecordWriter& writer, CInstrument& instrument, std::span<const std::int32_t> heldKeys,
                     bool withPresets = true);

// The content of an instrument file. Null when the bytes hold no record of an instrument.
std::shared_ptr<CInstrument> ReadInstrumentFile(std::string_view bytes, LoadContext& context, std::string& error);

}  // namespace quib
