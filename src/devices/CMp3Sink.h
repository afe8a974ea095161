// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// An MP3 file: stereo at a constant 192 kbit/s, with the information frame at its start that tells
// players the exact length. Used by CLame on the thread that flushes.

#include <filesystem>
#include <utility>
#include <vector>

#include "devices/CGrowingFile.h"
#include "devices/CMp3Encoder.h"
#include "devices/CRecordingSink.h"

namespace quib {

class CMp3Sink final : public CRecordingSink {
public:
    // Values of both channels that one Write() takes at most: whole frames of the format.
    static constexpr std::size_t kMaxValues = std::size_t{3} * 1152 * 2;

    // `loaded` is available and outlives the sink. `rate` in Hz: 32000, 44100 or 48000, or Open() fails.
    CMp3Sink(std::filesystem::path path, int rate, const CMp3Encoder& loaded)
        : encoder(loaded), sampleRate(rate), file(std::move(path)) {}
    ~CMp3Sink() override;

    // Prepares the encoder before the file: a refused rate leaves an existing file alone.
    bool Open() override;
    bool Write(std::span<const std::int16_t> values) override;
    bool Settle() override { return true; }
    bool Close() override;
    std::uint64_t BytesWritten() const noexcept override { return file.Size(); }
    const std::string& Error() const noexcept override { return file.Error(); }

private:
    bool Configure();
    bool AppendEncoded(int byteCount);
    bool WriteInfoTag();

    const CMp3Encoder& encoder;
    int sampleRate;
    CMp3Encoder::Stream stream = nullptr;
    std::vector<std::int16_t> input;
    std::vector<std::uint8_t> output;
    CGrowingFile file;
};

}  // namespace quib
