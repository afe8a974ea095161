// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A Wave file: 16-bit stereo PCM in a RIFF form of a "fmt " chunk of 18 bytes and a "data" chunk.
// Used by CLame on the thread that flushes.

#include <filesystem>
#include <limits>
#include <utility>

#include "devices/CGrowingFile.h"
#include "devices/CRecordingSink.h"

namespace quib {

class CWaveSink final : public CRecordingSink {
public:
    // The most that the size fields can say: 4 GiB with what stands before the sound.
    static constexpr std::uint32_t kMostSoundBytes = std::numeric_limits<std::uint32_t>::max() - 38;

    // `rate` in Hz. `mostBytes`: of sound, where less than the format holds is wanted.
    CWaveSink(std::filesystem::path path, int rate, std::uint32_t mostBytes = kMostSoundBytes)
        : file(std::move(path)), sampleRate(rate), mostSoundBytes(mostBytes) {}

    bool Open() override;
    bool HasRoomFor(std::size_t values) const noexcept override;
    // Fails when there is no room.
    bool Write(std::span<const std::int16_t> values) override;
    bool Settle() override;
    bool Close() override;
    std::uint64_t BytesWritten() const noexcept override;
    const std::string& Error() const noexcept override { return file.Error(); }

private:
    CGrowingFile file;
    int sampleRate;
    std::uint32_t mostSoundBytes;
};

}  // namespace quib
