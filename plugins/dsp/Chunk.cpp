// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/Chunk.h"

#include <algorithm>
#include <bit>

namespace quibplug {

namespace {

constexpr std::uint32_t kMagic = 0x42495551;  // "QUIB" in file order
constexpr std::uint32_t kLayoutVersion = 1;
constexpr std::size_t kHeaderBytes = 28;  // seven numbers
constexpr std::size_t kChecksumBytes = 4;
constexpr std::size_t kNameBytes = 24;
constexpr std::uint32_t kMostPrograms = 1024;
constexpr std::uint32_t kMostParameters = 4096;

void Append(std::vector<std::uint8_t>& bytes, std::uint32_t number) {
    for (unsigned shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

std::uint32_t NumberAt(std::span<const std::uint8_t> bytes, std::size_t position) {
    std::uint32_t number = 0;
    for (unsigned i = 0; i < 4; ++i) number |= static_cast<std::uint32_t>(bytes[position + i]) << (8 * i);
    return number;
}

// CRC-32 of IEEE 802.3, reflected, bit by bit: some ten kilobytes, now and then.
std::uint32_t Checksum(std::span<const std::uint8_t> bytes) {
    std::uint32_t crc = 0xffffffffu;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

std::optional<ChunkProgram> ReadProgram(std::span<const std::uint8_t> bytes) {
    ChunkProgram program;
    const auto name = bytes.first(kNameBytes);
    program.name.assign(name.begin(), std::find(name.begin(), name.end() - 1, std::uint8_t{0}));
    for (std::size_t position = kNameBytes; position < bytes.size(); position += 4) {
        const float value = std::bit_cast<float>(NumberAt(bytes, position));
        if (!(value >= 0.0f && value <= 1.0f)) return std::nullopt;
        program.values.push_back(value);
    }
    return program;
}

}  // namespace

std::vector<std::uint8_t> WriteChunk(const ChunkContent& content) {
    std::vector<std::uint8_t> bytes;
    Append(bytes, kMagic);
    Append(bytes, kLayoutVersion);
    Append(bytes, static_cast<std::uint32_t>(content.pluginId));
    Append(bytes, content.wholeBank ? 1 : 0);
    Append(bytes, content.chosen);
    Append(bytes, static_cast<std::uint32_t>(content.programs.size()));
    Append(bytes, static_cast<std::uint32_t>(content.programs.empty() ? 0 : content.programs.front().values.size()));
    for (const ChunkProgram& program : content.programs) {
        std::string name = program.name.substr(0, kNameBytes - 1);
        name.resize(kNameBytes, '\0');
        bytes.insert(bytes.end(), name.begin(), name.end());
        for (const float value : program.values) Append(bytes, std::bit_cast<std::uint32_t>(value));
    }
    Append(bytes, Checksum(bytes));
    return bytes;
}

std::optional<ChunkContent> ReadChunk(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kHeaderBytes + kChecksumBytes) return std::nullopt;
    if (NumberAt(bytes, 0) != kMagic || NumberAt(bytes, 4) != kLayoutVersion) return std::nullopt;
    const std::uint32_t programs = NumberAt(bytes, 20);
    const std::uint32_t parameters = NumberAt(bytes, 24);
    if (programs > kMostPrograms || parameters > kMostParameters) return std::nullopt;
    const std::size_t programBytes = kNameBytes + 4 * static_cast<std::size_t>(parameters);
    const auto checked = bytes.first(bytes.size() - kChecksumBytes);
    if (checked.size() != kHeaderBytes + programs * programBytes) return std::nullopt;
    if (Checksum(checked) != NumberAt(bytes, checked.size())) return std::nullopt;

    ChunkContent content{
        static_cast<std::int32_t>(NumberAt(bytes, 8)), NumberAt(bytes, 12) == 1, NumberAt(bytes, 16), {}};
    for (std::size_t p = 0; p < programs; ++p) {
        std::optional<ChunkProgram> program = ReadProgram(bytes.subspan(kHeaderBytes + p * programBytes, programBytes));
        if (!program) return std::nullopt;
        content.programs.push_back(std::move(*program));
    }
    return content;
}

}  // namespace quibplug
