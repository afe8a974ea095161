// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Writes what each instrument's strip gives, beside the master: one Wave file an instrument, of the same
// length and the same instant. The thread that renders offline.

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "devices/CWaveSink.h"
#include "engine/CAudio.h"

namespace quib {

class CStemWriter {
public:
    explicit CStemWriter(const CAudio& engine) : audio(engine) {}

    // Creates "01 Title.wav" and so on in `folder`, which is made where it is missing, for every instrument
    // that sounds.
    bool Open(const std::filesystem::path& folder, std::string& error);
    // After each block.
    bool WriteBlock(std::string& error);
    // Ends the files. Nothing happens unless they were opened.
    bool Close(std::string& error);

private:
    bool Write(CWaveSink& file, const StripJob& strip);

    const CAudio& audio;
    std::vector<std::unique_ptr<CWaveSink>> files;  // in the order of the strips
    std::vector<float> left, right;
    std::vector<std::int16_t> interleaved;
};

}  // namespace quib
