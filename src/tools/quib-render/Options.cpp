// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/Options.h"

#include <CLI/CLI.hpp>

#include "export/CSoundFile.h"
#include "platform/ThreadPriority.h"

namespace quib {

namespace {

namespace fs = std::filesystem;

bool IsSame(const fs::path& one, const fs::path& other) {
    std::error_code error;
    return fs::absolute(one).lexically_normal() == fs::absolute(other).lexically_normal() ||
           fs::equivalent(one, other, error);
}

// Wrong usage that the form of the words does not show.
void CheckPaths(const std::string& project, const std::string& output, std::vector<std::string> written) {
    written.push_back(output);
    for (const std::string& path : written) {
        if (!path.empty() && IsSame(path, project)) {
            throw CLI::ValidationError(path, "would be written over the project that is read");
        }
    }
    if (!output.empty() && !FormatOf(output)) {
        throw CLI::ValidationError(output,
                                   "is no name of a sound file; it has to end in .wav, .mp3, .flac, .ogg or .opus");
    }
}

}  // namespace

std::optional<int> ParseOptions(int argc, char** argv, RenderOptions& options) {
    CLI::App app{"Renders a project to a sound file, or plays it on a sound device", "quib-render"};
    options.format.threads = AvailableProcessors();
    std::string mode;
    std::string project;
    std::string output;
    std::string resave;
    std::string stems;
    std::string midi;
    std::vector<std::string> folders;
    app.set_version_flag("--version", "QUIB Sequencer " QUIB_VERSION);
    auto* const in = app.add_option("PROJECT", project, "Project file (.prg)");
    auto* const out = app.add_option("OUT", output, "Sound file to write (.wav, .mp3, .flac, .ogg or .opus)");
    app.add_option("--resave", resave, "Load the project and save it to this file, without rendering")->excludes(out);
    auto* const steps =
        app.add_option("--steps", options.steps, "Length in steps")->check(CLI::Range(1, kMaximumStepCount));
    app.add_option("--seconds", options.seconds, "Length in seconds, without the tail")
        ->check(CLI::Range(0.001, 86400.0))
        ->excludes(steps);
    auto* const rate = app.add_option("--rate", options.format.sampleRate, "Sample rate in hertz")
                           ->check(CLI::Range(22050, 192000))
                           ->capture_default_str();
    app.add_option("--block", options.format.blockSize, "Block size in frames")
        ->check(CLI::Range(1, RenderFormat::kMaximumBlockSize))
        ->capture_default_str();
    app.add_option("--threads", options.format.threads, "Render threads (default: all processors)")
        ->check(CLI::Range(1, 256));
    app.add_option("--plugins", folders, "Further folder to look for plug-ins in; may repeat")->allow_extra_args(false);
    app.add_option("--mode", mode, "Play the song or the selected patterns (default: as the project says)")
        ->check(CLI::IsMember({"pattern", "song"}));
    app.add_option("--seed", options.seed, "Seed of random playback")->capture_default_str();
    app.add_flag("--json", options.json, "Print one JSON object about the render");
    auto* const stemsOption = app.add_option("--stems", stems, "Folder for one file of each instrument's strip output");
    auto* const play = app.add_flag("--play", options.play, "Play in real time until Ctrl+C; OUT records it");
    play->excludes(stemsOption);
    app.add_option("--device", options.outputDevice, "Sound device to play on: JACK, Silent or a name of ALSA")
        ->needs(play);
    app.add_option("--midi-in", options.midiDevice, "MIDI port to listen to while playing")->needs(play);
    app.add_option("--midi", midi, "Write the notes to this MIDI file (.mid), without rendering")
        ->excludes(out)
        ->excludes(play);
    AddExportOptions(app, options.exporting);
    app.add_flag("--list", options.list, "Print the names of the sound devices and MIDI ports");
    try {
        app.parse(argc, argv);
        if (options.list) return std::nullopt;
        if (in->count() == 0) throw CLI::RequiredError("PROJECT");
        if (output.empty() && resave.empty() && midi.empty() && !options.play) throw CLI::RequiredError("OUT");
        CheckPaths(project, output, {resave, midi});
        if (FormatOf(output) == ESoundFormat::kOpus && rate->count() == 0) options.format.sampleRate = kOpusRate;
    } catch (const CLI::ParseError& stop) {
        return app.exit(stop) == 0 ? kDone : kWrongUsage;
    }
    // Plug-ins may change the current folder while they load.
    options.project = std::filesystem::absolute(project);
    if (!output.empty()) options.output = std::filesystem::absolute(output);
    if (!resave.empty()) options.resave = std::filesystem::absolute(resave);
    if (!midi.empty()) options.midiFile = std::filesystem::absolute(midi);
    if (!stems.empty()) options.stems = std::filesystem::absolute(stems);
    for (const std::string& folder : folders) options.pluginFolders.push_back(std::filesystem::absolute(folder));
    if (!mode.empty()) options.songMode = mode == "song";
    return std::nullopt;
}

}  // namespace quib
