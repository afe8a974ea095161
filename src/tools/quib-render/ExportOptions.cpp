// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/ExportOptions.h"

#include <CLI/CLI.hpp>

namespace quib {

void AddExportOptions(CLI::App& app, ExportOptions& options) {
    const auto note = [&options](CLI::Option* option) {
        return option->each([&options](const std::string&) { options.isAsked = true; });
    };
    const auto add = [&](const char* name, auto& value, const char* text) {
        return note(app.add_option(name, value, text));
    };
    const auto addFlag = [&](const char* name, bool& value, const char* text) {
        return note(app.add_flag(name, value, text));
    };
    add("--bits", options.format.bits, "16, 24 or, of a Wave file, 32 (float) bits a sample")
        ->check(CLI::IsMember({16, 24, 32}));
    addFlag("--dither", options.format.dither, "Dither 16 bits");
    add("--quality", options.format.quality, "0 to 1: of an Ogg or Opus file, or of an MP3 file with --vbr")
        ->check(CLI::Range(0.0, 1.0));
    add("--bitrate", options.bitRate, "Constant rate of an MP3 file in kbit/s")->check(CLI::Range(32, 320));
    addFlag("--vbr", options.format.variable, "Variable rate of an MP3 file")->excludes("--bitrate");
    add("--loudness", options.loudness, "Loudness to bring the mix to, in LUFS; one gain for all files")
        ->check(CLI::Range(-40.0, 0.0));
    add("--true-peak", options.truePeak, "Highest true peak that the loudness may lead to, in dB")
        ->check(CLI::Range(-20.0, 0.0))
        ->needs("--loudness");
    add("--tail", options.tailSeconds, "Longest tail until silence in seconds; 0 cuts where playing ends")
        ->check(CLI::Range(0.0, 600.0));
    addFlag("--loop", options.loop, "Play the loop region once")->excludes("--steps")->excludes("--seconds");
    addFlag("--markers", options.markers, "Play from the first marker to the last")
        ->excludes("--steps")
        ->excludes("--seconds")
        ->excludes("--loop");
    add("--from", options.from, "Step of the song to begin with")
        ->check(CLI::Range(0, 1 << 20))
        ->excludes("--loop")
        ->excludes("--markers");
    addFlag("--stems-after-master", options.afterMaster, "Each stem alone through the master and all effects")
        ->needs("--stems");
    add("--name", options.namePattern, "Names of the stems: {title} {artist} {bpm} {stem} {number}")->needs("--stems");
    add("--title", options.tags.title, "Title to write into the file");
    add("--artist", options.tags.artist, "Artist to write into the file");
    add("--bpm", options.tags.tempo, "Tempo to write into the file")->check(CLI::Range(1.0, 1000.0));
}

}  // namespace quib
