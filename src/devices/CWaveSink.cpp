// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CWaveSink.h"

#include <array>
#include <bit>
#include <limits>
#include <string_view>

namespace quib {

namespace {

constexpr std::uint32_t kChannels = 2;
constexpr std::uint32_t kBytesPerFrame = kChannels * sizeof(std::int16_t);
constexpr std::uint32_t kFormatChunkBytes = 18;
constexpr std::uint32_t kRiffSizeOffset = 4;
constexpr std::uint32_t kFormatOffset = 12;
constexpr std::uint32_t kDataOffset = kFormatOffset + 8 + kFormatChunkBytes;
constexpr std::uint32_t kDataSizeOffset = kDataOffset + 4;
constexpr std::uint32_t kHeadBytes = kDataOffset + 8;
// What the RIFF size counts besides the sound: everything after the size field itself.
constexpr std::uint32_t kRiffSizeOfHead = kHeadBytes - 8;
static_assert(CWaveSink::kMostSoundBytes == std::numeric_limits<std::uint32_t>::max() - kRiffSizeOfHead);

static_assert(std::endian::native == std::endian::little, "samples and fields are written as they stand in memory");

using Head = std::array<std::uint8_t, kHeadBytes>;

void PutName(Head& head, std::size_t offset, std::string_view name) {
    for (const char character : name) head[offset++] = static_cast<std::uint8_t>(character);
}

template <class Integer>
void PutInteger(Head& head, std::size_t offset, Integer value) {
    for (const auto byte : std::bit_cast<std::array<std::uint8_t, sizeof(Integer)>>(value)) head[offset++] = byte;
}

Head MakeHead(std::uint32_t sampleRate) {
    Head head{};
    PutName(head, 0, "RIFF");
    PutInteger(head, kRiffSizeOffset, kRiffSizeOfHead);
    PutName(head, 8, "WAVE");
    PutName(head, kFormatOffset, "fmt ");
    PutInteger(head, kFormatOffset + 4, kFormatChunkBytes);
    PutInteger(head, kFormatOffset + 8, std::uint16_t{1});  // PCM
    PutInteger(head, kFormatOffset + 10, static_cast<std::uint16_t>(kChannels));
    PutInteger(head, kFormatOffset + 12, sampleRate);
    PutInteger(head, kFormatOffset + 16, sampleRate * kBytesPerFrame);
    PutInteger(head, kFormatOffset + 20, static_cast<std::uint16_t>(kBytesPerFrame));
    PutInteger(head, kFormatOffset + 22, std::uint16_t{16});  // bits per sample; the extra size after it stays 0
    PutName(head, kDataOffset, "data");
    return head;
}

}  // namespace

bool CWaveSink::Open() {
    if (sampleRate <= 0) return file.Fail("there is no such sample rate");
    return file.Open() && file.Append(MakeHead(static_cast<std::uint32_t>(sampleRate)));
}

bool CWaveSink::HasRoomFor(std::size_t values) const noexcept {
    return BytesWritten() + values * sizeof(std::int16_t) <= mostSoundBytes;
}

bool CWaveSink::Write(std::span<const std::int16_t> values) {
    if (!HasRoomFor(values.size())) return file.Fail("a Wave file ends at 4 GiB");
    return file.Append({reinterpret_cast<const std::uint8_t*>(values.data()), values.size_bytes()});
}

bool CWaveSink::Settle() {
    if (file.Size() < kHeadBytes) return false;
    const auto soundBytes = static_cast<std::uint32_t>(BytesWritten());
    const auto field = [](std::uint32_t value) { return std::bit_cast<std::array<std::uint8_t, 4>>(value); };
    const bool dataDone = file.Overwrite(kDataSizeOffset, field(soundBytes));
    return file.Overwrite(kRiffSizeOffset, field(soundBytes + kRiffSizeOfHead)) && dataDone;
}

bool CWaveSink::Close() {
    const bool settled = Settle();
    return file.Close() && settled;
}

std::uint64_t CWaveSink::BytesWritten() const noexcept {
    if (file.Size() < kHeadBytes) return 0;
    const std::uint64_t soundBytes = file.Size() - kHeadBytes;
    return soundBytes - soundBytes % kBytesPerFrame;
}

}  // namespace quib
