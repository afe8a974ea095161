// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A stereo sound file of any of the formats, written through libsndfile under a temporary name: it is
// there, whole, after Keep, and otherwise never was. One thread at a time, never a render thread.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "export/CQuantizer.h"
#include "export/ExportSettings.h"
#include "platform/CPendingFile.h"

struct sf_private_tag;

namespace quib {

// "wav", "flac", "ogg", "opus", "mp3".
const char* ExtensionOf(ESoundFormat format);
// The format that a name ends in, in large or small letters.
std::optional<ESoundFormat> FormatOf(const std::filesystem::path& path);
// Why a format cannot be written, in English; empty when it can.
std::string RefusalOf(const SoundFormat& format);

class CSoundFile {
public:
    CSoundFile(std::filesystem::path path, const SoundFormat& soundFormat, const SoundTags& soundTags);
    ~CSoundFile();
    CSoundFile(const CSoundFile&) = delete;
    CSoundFile& operator=(const CSoundFile&) = delete;

    // Each of these is false on an error, which Error() tells with the path.
    bool Open();
    // What is beyond full scale is clipped, but not in 32 bits.
    bool Write(const float* left, const float* right, int frames);
    bool Finish();
    bool Keep();

    const std::string& Error() const noexcept { return error; }
    // Whether sound beyond full scale came, which no format but the one of 32 bits keeps.
    bool HasClipped() const noexcept { return clipped; }
    const std::filesystem::path& Path() const noexcept { return file.FinalPath(); }

private:
    struct CClose {
        void operator()(sf_private_tag* handle) const noexcept;
    };

    void Configure();
    void WriteTags();
    void WriteLoop();
    void NoteClipping(const float* samples, int frames) noexcept;
    bool Fail(const std::string& reason);

    SoundFormat format;
    SoundTags tags;
    CPendingFile file;
    std::unique_ptr<sf_private_tag, CClose> sound;
    CQuantizer quantizer;
    std::vector<std::int16_t> words;  // interleaved
    std::vector<float> interleaved;
    std::array<std::byte, 24> tempoChunk{};
    std::uint64_t bytes = 0;  // of sound, in Wave files
    bool clipped = false;
    std::string error;
};

}  // namespace quib
