// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The byte layout of a plug-in's saved state, for the host's threads. Little-endian: "QUIB", layout
// version, plug-in identifier, kind (1 bank, 0 program), chosen program, number of programs, number
// of parameters, then each program as 24 bytes of name and its values as 32-bit floats, and last
// the CRC-32 of everything before it.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quibplug {

struct ChunkProgram {
    std::string name;           // up to 23 characters
    std::vector<float> values;  // normalised, 0..1
};

struct ChunkContent {
    std::int32_t pluginId = 0;
    bool wholeBank = false;
    std::uint32_t chosen = 0;
    std::vector<ChunkProgram> programs;  // all with the same number of values
};

std::vector<std::uint8_t> WriteChunk(const ChunkContent& content);

// Nothing when the length, the checksum, the version or any value is not as WriteChunk makes it.
std::optional<ChunkContent> ReadChunk(std::span<const std::uint8_t> bytes);

}  // namespace quibplug
