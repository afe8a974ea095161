// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/CSoundFile.h"

#include <fmt/format.h>
#include <sndfile.h>

#include <algorithm>
#include <bit>
#include <cctype>
#include <cmath>
#include <cstring>
#include <limits>

#include "engine/Int16Frames.h"

namespace quib {

namespace {

constexpr int kChannels = 2;
constexpr int kLowestBitRate = 32;  // kbit/s, of an MP3 file
constexpr int kHighestBitRate = 320;
constexpr std::uint64_t kMostWaveBytes = std::numeric_limits<std::uint32_t>::max() - 4096ULL;

struct Kind {
    const char* extension;
    int major;
};
// In the order of ESoundFormat.
constexpr Kind kKinds[] = {{"wav", SF_FORMAT_WAV},
                           {"flac", SF_FORMAT_FLAC},
                           {"ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
                           {"opus", SF_FORMAT_OGG | SF_FORMAT_OPUS},
                           {"mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III}};

const Kind& KindOf(ESoundFormat format) { return kKinds[static_cast<std::size_t>(format)]; }

bool HasBits(const SoundFormat& format) {
    return format.kind == ESoundFormat::kWave || format.kind == ESoundFormat::kFlac;
}

SF_INFO InfoOf(const SoundFormat& format) {
    SF_INFO info{};
    info.samplerate = format.sampleRate;
    info.channels = kChannels;
    info.format = KindOf(format.kind).major;
    if (!HasBits(format)) return info;
    info.format |= format.bits == 16 ? SF_FORMAT_PCM_16 : format.bits == 24 ? SF_FORMAT_PCM_24 : SF_FORMAT_FLOAT;
    return info;
}

void Put(std::array<std::byte, 24>& chunk, std::size_t offset, auto value) {
    static_assert(std::endian::native == std::endian::little);
    std::memcpy(chunk.data() + offset, &value, sizeof value);
}

// What loop players read the tempo from: no loop, no root note, the time signature and the tempo.
std::array<std::byte, 24> TempoChunk(const SoundTags& tags) {
    std::array<std::byte, 24> chunk{};
    Put(chunk, 0, std::uint32_t{tags.loopBeats > 0 ? 0U : 1U});  // 1: plays once
    Put(chunk, 4, std::uint16_t{60});
    Put(chunk, 6, std::uint16_t{0x8000});
    Put(chunk, 12, static_cast<std::uint32_t>(tags.loopBeats));
    Put(chunk, 16, std::uint16_t{4});  // quarter notes
    Put(chunk, 18, static_cast<std::uint16_t>(tags.beatsPerBar));
    Put(chunk, 20, static_cast<float>(tags.tempo));
    return chunk;
}

}  // namespace

const char* ExtensionOf(ESoundFormat format) { return KindOf(format).extension; }

std::optional<ESoundFormat> FormatOf(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    for (std::size_t index = 0; index < std::size(kKinds); ++index) {
        if (extension == std::string(".") + kKinds[index].extension) return static_cast<ESoundFormat>(index);
    }
    return std::nullopt;
}

std::string RefusalOf(const SoundFormat& format) {
    const int rate = format.sampleRate;
    if (format.kind == ESoundFormat::kMp3) {
        if (rate != 32000 && rate != 44100 && rate != 48000)
            return fmt::format("an MP3 file takes 32000, 44100 or 48000 Hz, not {}", rate);
        if (!format.variable && (format.bitRate < kLowestBitRate || format.bitRate > kHighestBitRate))
            return fmt::format("an MP3 file takes {} to {} kbit/s", kLowestBitRate, kHighestBitRate);
    }
    if (format.kind == ESoundFormat::kOpus && rate != kOpusRate) return "an Opus file takes 48000 Hz only";
    if (format.kind == ESoundFormat::kFlac && format.bits != 16 && format.bits != 24)
        return "a FLAC file takes 16 or 24 bits";
    if (format.kind == ESoundFormat::kWave && format.bits != 16 && format.bits != 24 && format.bits != 32)
        return "a Wave file takes 16, 24 or 32 bits";
    SF_INFO info = InfoOf(format);
    if (sf_format_check(&info) == 0) return fmt::format("this machine writes no {} files", ExtensionOf(format.kind));
    return {};
}

void CSoundFile::CClose::operator()(sf_private_tag* handle) const noexcept { sf_close(handle); }

CSoundFile::CSoundFile(std::filesystem::path path, const SoundFormat& soundFormat, const SoundTags& soundTags)
    : format(soundFormat), tags(soundTags), file(std::move(path)) {}

CSoundFile::~CSoundFile() = default;

bool CSoundFile::Open() {
    if (const std::string refusal = RefusalOf(format); !refusal.empty()) return Fail(refusal);
    if (!file.Create(error)) return false;
    SF_INFO info = InfoOf(format);
    sound.reset(sf_open(file.WorkingPath().c_str(), SFM_WRITE, &info));
    if (!sound) return Fail(sf_strerror(nullptr));
    Configure();
    WriteTags();
    return true;
}

void CSoundFile::Configure() {
    sf_command(sound.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    double quality = format.quality;
    double compression = 1.0 - format.quality;
    int mode = format.variable ? SF_BITRATE_MODE_VARIABLE : SF_BITRATE_MODE_CONSTANT;
    switch (format.kind) {
        case ESoundFormat::kOgg:
            sf_command(sound.get(), SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
            break;
        case ESoundFormat::kOpus:
            sf_command(sound.get(), SFC_SET_COMPRESSION_LEVEL, &compression, sizeof compression);
            break;
        case ESoundFormat::kMp3:
            if (!format.variable) {
                compression = 1.0 * (kHighestBitRate - format.bitRate) / (kHighestBitRate - kLowestBitRate);
            }
            sf_command(sound.get(), SFC_SET_BITRATE_MODE, &mode, sizeof mode);
            sf_command(sound.get(), SFC_SET_COMPRESSION_LEVEL, &compression, sizeof compression);
            break;
        default:
            break;
    }
}

void CSoundFile::WriteTags() {
    if (!tags.title.empty()) sf_set_string(sound.get(), SF_STR_TITLE, tags.title.c_str());
    if (!tags.artist.empty()) sf_set_string(sound.get(), SF_STR_ARTIST, tags.artist.c_str());
    if (tags.tempo <= 0) return;
    if (format.kind != ESoundFormat::kWave) {
        sf_set_string(sound.get(), SF_STR_COMMENT, fmt::format("{:g} BPM", tags.tempo).c_str());
        return;
    }
    tempoChunk = TempoChunk(tags);
    SF_CHUNK_INFO chunk{};
    std::memcpy(chunk.id, "acid", 4);
    chunk.id_size = 4;
    chunk.datalen = static_cast<unsigned>(tempoChunk.size());
    chunk.data = tempoChunk.data();
    sf_set_chunk(sound.get(), &chunk);
    if (tags.loopBeats > 0) WriteLoop();
}

// The whole file as a loop without an end, and where strokes begin.
void CSoundFile::WriteLoop() {
    SF_INSTRUMENT instrument{};
    instrument.gain = 1;
    instrument.basenote = 60;
    instrument.velocity_hi = 127;
    instrument.key_hi = 127;
    instrument.loop_count = 1;
    instrument.loops[0].mode = SF_LOOP_FORWARD;
    instrument.loops[0].end = static_cast<std::uint32_t>(tags.loopFrames);
    sf_command(sound.get(), SFC_SET_INSTRUMENT, &instrument, sizeof instrument);
    if (tags.strokes.empty()) return;
    auto cues = std::make_unique<SF_CUES>();
    cues->cue_count = static_cast<std::uint32_t>(std::min(tags.strokes.size(), std::size(cues->cue_points)));
    for (std::uint32_t i = 0; i < cues->cue_count; ++i) {
        cues->cue_points[i].indx = static_cast<std::int32_t>(i + 1);
        cues->cue_points[i].position = static_cast<std::uint32_t>(tags.strokes[i]);
        cues->cue_points[i].fcc_chunk = 0x61746164;  // "data"
        cues->cue_points[i].sample_offset = static_cast<std::uint32_t>(tags.strokes[i]);
    }
    sf_command(sound.get(), SFC_SET_CUE, cues.get(), sizeof *cues);
}

bool CSoundFile::Write(const float* left, const float* right, int frames) {
    const auto values = static_cast<std::size_t>(frames) * kChannels;
    for (const float* const samples : {left, right}) NoteClipping(samples, frames);
    if (format.kind == ESoundFormat::kWave) {
        bytes += values * static_cast<std::size_t>(format.bits / 8);
        if (bytes > kMostWaveBytes) return Fail("a Wave file ends at 4 GiB");
    }
    if (HasBits(format) && format.bits == 16) {
        words.resize(values);
        if (format.dither) {
            quantizer.Dither(left, right, words.data(), frames);
        } else {
            ToInt16Frames(left, right, words.data(), frames);
        }
        return sf_writef_short(sound.get(), words.data(), frames) == frames || Fail(sf_strerror(sound.get()));
    }
    interleaved.resize(values);
    for (std::size_t i = 0; i < values; i += kChannels) {
        interleaved[i] = left[i / kChannels];
        interleaved[i + 1] = right[i / kChannels];
    }
    return sf_writef_float(sound.get(), interleaved.data(), frames) == frames || Fail(sf_strerror(sound.get()));
}

void CSoundFile::NoteClipping(const float* samples, int frames) noexcept {
    if (format.kind == ESoundFormat::kWave && format.bits == 32) return;
    clipped = clipped || std::any_of(samples, samples + frames, [](float value) { return std::abs(value) > 1.0F; });
}

bool CSoundFile::Finish() {
    const int failed = sf_close(sound.release());
    return failed == 0 || Fail(sf_error_number(failed));
}

bool CSoundFile::Keep() { return file.Keep(error); }

bool CSoundFile::Fail(const std::string& reason) {
    if (error.empty()) error = fmt::format("Cannot write \"{}\": {}", file.FinalPath().string(), reason);
    return false;
}

}  // namespace quib
