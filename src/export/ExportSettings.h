// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What an export is asked for, as plain values.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quib {

enum class ESoundFormat { kWave, kFlac, kOgg, kOpus, kMp3 };

constexpr int kOpusRate = 48000;  // Hz, the only one of Opus files

struct SoundFormat {
    ESoundFormat kind = ESoundFormat::kWave;
    int sampleRate = 44100;  // Hz
    int bits = 16;           // Wave and FLAC: 16, 24; Wave also 32, which are float
    bool dither = false;     // at 16 bits: triangular, two steps wide
    double quality = 0.6;    // 0..1: Ogg, Opus, and MP3 at a variable rate
    bool variable = false;   // MP3
    int bitRate = 192;       // kbit/s, 32..320: MP3 at a constant rate
};

struct SoundTags {
    std::string title;
    std::string artist;
    double tempo = 0;     // beats per minute; 0: the project's
    int beatsPerBar = 4;  // beats of a bar, of quarter notes
    // Of a loop, told in Wave files.
    int loopBeats = 0;              // quarter notes; 0: it is none
    std::int64_t loopFrames = 0;    // the whole length
    std::vector<int> strokes = {};  // frames at which they begin, at most a hundred
};

// Markers: from the first to the last one, or to the end of the song after a single one.
enum class EExportRange { kSong, kLoop, kPatterns, kMarkers };

// Before the master: what a strip, or a shared effect, gives into the mix. After it: the instrument alone
// with all that it sends, through everything.
enum class EStemPoint { kBeforeMaster, kAfterMaster };

struct LoudnessTarget {
    double loudness = -14;   // LUFS
    double truePeak = -1.0;  // dBTP, the most that the gain may lead to
};

struct ExportSettings {
    std::optional<EExportRange> range;  // none: song or patterns, as the project is set
    int firstStep = 0;                  // of the song; patterns begin at 0
    int endStep = 0;                    // where playing ends, counted as firstStep is; 0: all of the range
    std::int64_t frames = 0;            // length in place of endStep; 0: none
    double tailSeconds = 10;            // at most, until silence; 0: cut where playing ends

    SoundFormat format;
    std::optional<LoudnessTarget> loudness;  // none: as it is
    SoundTags tags;

    bool stems = false;             // in place of the mix
    std::filesystem::path mixPath;  // of the mix, beside any stems; empty: named like all
    EStemPoint stemPoint = EStemPoint::kBeforeMaster;
    bool effectStems = true;   // before the master: the shared effects as stems of their own
    std::vector<int> leftOut;  // instruments, by their place in the project, that get no stem

    std::filesystem::path folder;
    std::string namePattern = "{title}";
    std::string date;  // for names

    // How it is computed.
    std::uint32_t seed = 1;
    int blockSize = 2048;  // frames
    int threads = 1;
    // What the project file does not hold.
    int stepsPerBeat = 4;
};

}  // namespace quib
