// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/vst2/BankImage.h"

#include <algorithm>
#include <array>
#include <bit>

namespace quib {

namespace {

constexpr std::int32_t kMagic = vst2::FourCharacters('C', 'c', 'n', 'K');
constexpr std::int32_t kReversedMagic = vst2::FourCharacters('K', 'n', 'c', 'C');
constexpr std::int32_t kLayoutVersion = 1;
constexpr std::size_t kSharedHeader = 28;

}  // namespace

std::int32_t CImageNumbers::Integer(std::size_t offset) const noexcept {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = (value << 8) | std::to_integer<std::uint32_t>(bytes[offset + (reversed ? 3 - i : i)]);
    }
    return static_cast<std::int32_t>(value);
}

float CImageNumbers::Real(std::size_t offset) const noexcept { return std::bit_cast<float>(Integer(offset)); }

std::string CImageNumbers::Name(std::size_t offset) const {
    std::string name;
    for (std::size_t i = 0; i < kProgramNameSize; ++i) {
        const auto character = std::to_integer<char>(bytes[offset + i]);
        if (character == '\0') break;
        name.push_back(character);
    }
    return name;
}

bool ReadImageHeader(std::span<const std::byte> image, ImageHeader& header) noexcept {
    if (image.size() < kSharedHeader) return false;
    const std::int32_t magic = CImageNumbers(image, false).Integer(0);
    if (magic != kMagic && magic != kReversedMagic) return false;
    // Some programs turn the magic only; the version tells which order the rest has.
    header.reversed = magic == kReversedMagic && CImageNumbers(image, true).Integer(12) == kLayoutVersion;
    const CImageNumbers numbers(image, header.reversed);
    header.kind = static_cast<EImageKind>(numbers.Integer(8));
    header.version = numbers.Integer(12);
    header.uniqueId = numbers.Integer(16);
    header.pluginVersion = numbers.Integer(20);
    header.count = numbers.Integer(24);
    return header.version == kLayoutVersion;
}

bool ReadChunk(const CImageNumbers& numbers, std::size_t offset, std::span<const std::byte>& chunk) noexcept {
    if (numbers.Bytes().size() < offset) return false;
    const std::int32_t size = numbers.Integer(offset - 4);
    if (size < 0 || static_cast<std::size_t>(size) > numbers.Bytes().size() - offset) return false;
    chunk = numbers.Bytes().subspan(offset, static_cast<std::size_t>(size));
    return true;
}

void CImageWriter::Header(EImageKind kind, const vst2::AEffect& effect, std::int32_t count) {
    headers.push_back(image.size());
    Integer(kMagic);
    Integer(0);
    Integer(static_cast<std::int32_t>(kind));
    Integer(kLayoutVersion);
    Integer(effect.uniqueId);
    Integer(effect.version);
    Integer(count);
}

void CImageWriter::Integer(std::int32_t value) {
    image.resize(image.size() + 4);
    SetInteger(image.size() - 4, value);
}

void CImageWriter::Real(float value) { Integer(std::bit_cast<std::int32_t>(value)); }

void CImageWriter::Name(const std::string& name) {
    const std::size_t length = std::min(name.size(), kProgramNameSize - 1);
    Bytes(std::as_bytes(std::span(name.data(), length)));
    Zeros(kProgramNameSize - length);
}

void CImageWriter::Zeros(std::size_t count) { image.resize(image.size() + count); }

void CImageWriter::Bytes(std::span<const std::byte> bytes) { image.insert(image.end(), bytes.begin(), bytes.end()); }

// The byte count of a header excludes itself and the magic before it. A program inside a bank ends
// where the next begins; the first header is that of the whole image.
StateImage CImageWriter::Finish() {
    for (std::size_t i = 0; i < headers.size(); ++i) {
        const std::size_t end = i == 0 || i + 1 == headers.size() ? image.size() : headers[i + 1];
        SetInteger(headers[i] + 4, static_cast<std::int32_t>(end - headers[i] - 8));
    }
    headers.clear();
    return std::move(image);
}

void CImageWriter::SetInteger(std::size_t offset, std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    for (std::size_t i = 0; i < 4; ++i) image[offset + i] = static_cast<std::byte>(bits >> (24 - 8 * i));
}

}  // namespace quib
