// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The byte layout of bank and program images: reading with every length checked, and writing. Knows no
// plug-in. Numbers are big-endian; an image whose magic stands in the other byte order is read too.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "model/Preset.h"
#include "model/plugin/vst2/Vst2.h"

namespace quib {

constexpr std::size_t kBankChunkHeader = 160;
constexpr std::size_t kBankProgramsHeader = 156;
constexpr std::size_t kProgramHeader = 56;
constexpr std::size_t kProgramChunkHeader = 60;
constexpr std::size_t kProgramNameSize = 28;

enum class EImageKind : std::int32_t {
    kBankChunk = vst2::FourCharacters('F', 'B', 'C', 'h'),
    kBankPrograms = vst2::FourCharacters('F', 'x', 'B', 'k'),
    kProgramChunk = vst2::FourCharacters('F', 'P', 'C', 'h'),
    kProgramParameters = vst2::FourCharacters('F', 'x', 'C', 'k'),
};

// Takes numbers out of an image. The caller has checked that they lie inside.
class CImageNumbers {
public:
    CImageNumbers(std::span<const std::byte> image, bool reversedBytes) noexcept
        : bytes(image), reversed(reversedBytes) {}
    std::int32_t Integer(std::size_t offset) const noexcept;
    float Real(std::size_t offset) const noexcept;
    // The name of a program: up to kProgramNameSize characters, ended by NUL if shorter.
    std::string Name(std::size_t offset) const;
    std::span<const std::byte> Bytes() const noexcept { return bytes; }

private:
    std::span<const std::byte> bytes;
    bool reversed;
};

// The fields that all four kinds share.
struct ImageHeader {
    EImageKind kind{};
    std::int32_t version = 0;  // of the layout
    std::int32_t uniqueId = 0;
    std::int32_t pluginVersion = 0;
    std::int32_t count = 0;  // programs of a bank, parameters of a program
    bool reversed = false;
};

// False when the bytes do not begin like an image.
bool ReadImageHeader(std::span<const std::byte> image, ImageHeader& header) noexcept;

// The chunk whose size stands right before `offset`. False when the image is too short for it.
bool ReadChunk(const CImageNumbers& numbers, std::size_t offset, std::span<const std::byte>& chunk) noexcept;

// Builds images.
class CImageWriter {
public:
    // The five shared fields after a magic and the byte count, which Finish sets.
    void Header(EImageKind kind, const vst2::AEffect& effect, std::int32_t count);
    void Integer(std::int32_t value);
    void Real(float value);
    void Name(const std::string& name);
    void Zeros(std::size_t count);
    void Bytes(std::span<const std::byte> bytes);
    StateImage Finish();

private:
    void SetInteger(std::size_t offset, std::int32_t value);

    StateImage image;
    std::vector<std::size_t> headers;
};

}  // namespace quib
