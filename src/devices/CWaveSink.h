// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A Wave file: 16-bit stereo PCM in a RIFF form of a "fmt " chunk of 18 bytes and a "data" chunk.
// Used by CLame on the thread that flushes.

#include <filesystem>
#include <utility>

#include "devices/CGrowingFile.h"
#include "devices/CRecordingSink.h"

namespace quib {

class CWaveSink final : public CRecordingSink {
public:
    // `rate` in Hz.
    CWaveSink(std::filesystem::path path, int rate) : file(std::move(path)), sampleRate(rate) {}

    bool Open() override;
    // Fails when the file would pass 4 GiB, the most that its size fields can say.
    bool Write(std::span<const std::int16_t> values) override;
    bool Settle() override;
    bool Close() override;
    std::uint64_t BytesWritten() const noexcept override;
    const std::string& Error() const noexcept override { return file.Error(); }

private:
    CGrowingFile file;
    int sampleRate;
};

}  // namespace quib
