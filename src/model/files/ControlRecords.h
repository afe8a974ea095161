// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The records of what MIDI controllers are bound to, in projects and in the map for all projects. Editing thread.

#include <optional>

#include "model/control/ControlBinding.h"
#include "model/files/CRecordReader.h"
#include "model/files/CRecordWriter.h"

namespace quib {

inline constexpr std::string_view kBindingKey = "MIDI_BINDING";

void WriteBinding(CRecordWriter& writer, const ControlBinding& binding);
// The binding of the current line, whatever its key; nothing where a field is missing or out of range.
std::optional<ControlBinding> ReadBinding(const CRecordReader& line);

}  // namespace quib
