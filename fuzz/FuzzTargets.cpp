// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/FuzzTargets.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <span>
#include <string>

#include "export/SoundClip.h"
#include "export/loops/LoopCut.h"
#include "model/files/InstrumentFile.h"
#include "model/files/PatternRecords.h"
#include "project/GeneratedProject.h"
#include "project/midi/MidiImport.h"

namespace quib::fuzz {

namespace {

void Require(bool holds, const char* promise) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", promise);
    std::abort();
}

// One plug-in of each kind, loaded once. It also keeps its library in memory, which makes the loading of
// further ones fast.
CPlugin& PluginNamed(const char* name, ESlotKind kind) {
    std::string error;
    static std::map<std::string, std::shared_ptr<CPlugin>> loaded;
    auto& plugin = loaded[name];
    if (!plugin) plugin = generated::TestPluginLoader()({name, {}}, kind, error);
    Require(plugin != nullptr, "the test plug-ins are there");
    return *plugin;
}
CPlugin& ChunkPlugin() { return PluginNamed("ChunkSynth", ESlotKind::kInstrument); }
CPlugin& ParameterPlugin() { return PluginNamed("ParameterBank", ESlotKind::kEffect); }

PluginLoader Loader() {
    ChunkPlugin();
    ParameterPlugin();
    return generated::TestPluginLoader();
}

// What `save` makes of `bytes`, of that, and of that again: the last two are the same. The first may
// differ, as saving leaves out what it can leave out (the length of an empty pattern, for one).
template <class Resave>
void RequireStable(std::string_view bytes, Resave resave) {
    std::string saved;
    if (!resave(bytes, saved)) return;
    std::string again;
    Require(resave(saved, again), "what was saved is read");
    Require(resave(again, saved), "what was saved is read");
    Require(saved == again, "what is saved twice is the same");
}

std::string Taken(const CRecordWriter& writer) { return {writer.Bytes().data(), writer.Bytes().size()}; }

template <class Load, class Save>
void LoadInto(std::string_view bytes, Load load, Save save) {
    const auto image = std::as_bytes(std::span(bytes.data(), bytes.size()));
    for (CPlugin* const plugin : {&ChunkPlugin(), &ParameterPlugin()}) {
        const StateImage before = (plugin->*save)();
        if ((plugin->*load)(image) != EBankResult::kDone) {
            Require((plugin->*save)() == before, "a refused image changes nothing");
            continue;
        }
        const StateImage first = (plugin->*save)();
        Require((plugin->*load)(first) == EBankResult::kDone, "an image of our own loads");
        Require((plugin->*save)() == first, "an image of our own gives the same state");
    }
}

}  // namespace

void Project(std::string_view bytes) {
    RequireStable(bytes, [](std::string_view from, std::string& to) {
        ProjectState state;
        std::string error;
        if (!ReadProject(from, Loader(), state, error)) return false;
        to = generated::BytesOf(state);
        return true;
    });
}

void Instrument(std::string_view bytes) {
    RequireStable(bytes, [](std::string_view from, std::string& to) {
        LoadContext context;
        context.load = Loader();
        std::string error;
        const auto instrument = ReadInstrumentFile(from, context, error);
        if (!instrument) return false;
        CRecordWriter writer;
        WriteInstrument(writer, *instrument, instrument->play.heldKeys.Items());
        to = Taken(writer);
        return true;
    });
}

void Pattern(std::string_view bytes) {
    RequireStable(bytes, [](std::string_view from, std::string& to) {
        PatternSet set;
        std::string error;
        if (!ReadPatternFile(from, set, error)) return false;
        CInstrument instrument;
        CRenderClock clock;
        CGraveyard graveyard(clock);
        ReplacePatterns(instrument, set, graveyard);
        CRecordWriter writer;
        WritePatternBlock(writer, instrument);
        to = Taken(writer);
        return true;
    });
}

void Bank(std::string_view bytes) { LoadInto(bytes, &CPlugin::LoadBank, &CPlugin::SaveBank); }
void Program(std::string_view bytes) { LoadInto(bytes, &CPlugin::LoadProgram, &CPlugin::SaveProgram); }

void Midi(std::string_view bytes) {
    MidiFile file;
    std::string error;
    if (!ReadMidi(bytes, file, error)) return Require(!error.empty() && file.tracks.empty(), "a refusal has a reason");
    const MidiSong song = ConvertMidi(file, 4);
    std::size_t begun = 0;
    for (const MidiTrack& track : file.tracks) {
        for (const MidiEvent& event : track.events) begun += event.Kind() == 0x90 && event.second > 0 ? 1 : 0;
    }
    std::size_t taken = 0;
    for (const MidiPart& part : song.parts) {
        for (const CPattern& pattern : part.patterns) {
            taken += pattern.Notes().size();
            for (const Note& note : pattern.Notes()) {
                Require(note.position >= 0 && note.position <= static_cast<float>(pattern.StepCount()),
                        "notes lie inside");
                Require(note.length > 0 && note.velocity > 0, "notes are heard");
            }
        }
    }
    const MidiImportCounts& counts = song.counts;
    Require(taken == counts.notes && taken + counts.lateNotes + counts.extraNotes == begun, "each note is counted");
    if (file.isTimecode) return;
    // What other tracks say of the song is written to the first one, which lasts as long then.
    std::uint32_t& end = file.tracks.front().end;
    if (!file.tempos.empty()) end = std::max(end, file.tempos.back().tick);
    if (!file.signatures.empty()) end = std::max(end, file.signatures.back().tick);
    if (!file.markers.empty()) end = std::max(end, file.markers.back().tick);
    MidiFile again;
    Require(ReadMidi(WriteMidi(file), again, error), "what was written is read");
    Require(again.tracks == file.tracks && again.tempos == file.tempos && again.signatures == file.signatures &&
                again.markers == file.markers,
            "what was written is the same");
}

// A sound file, read as a whole, cut and written as a loop that is read again.
void Audio(std::string_view bytes) {
    namespace fs = std::filesystem;
    const fs::path folder = fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
    const std::string name = "quib-fuzz-" + std::to_string(getpid());
    const fs::path path = folder / name;
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    SoundClip clip;
    std::string error;
    const bool isRead = ReadClip(path, clip, error);
    fs::remove(path);
    if (!isRead) return Require(error.find(name) != std::string::npos, "a refusal names the file");
    Require(clip.Frames() > 0 && clip.left.size() == clip.right.size(), "there is a sound");
    const auto isFinite = [](float sample) { return std::isfinite(sample); };
    Require(std::all_of(clip.left.begin(), clip.left.end(), isFinite), "samples are numbers");
    Require(std::all_of(clip.right.begin(), clip.right.end(), isFinite), "samples are numbers");
    LoopCut cut{clip.Frames() / 3, 1, 2000};  // short: what is read counts
    cut.start = BestStart(clip, cut);
    const SoundClip loop = CutLoop(clip, cut);
    Require(loop.Frames() == FramesOf(cut, clip.sampleRate), "the length is exact");
    const fs::path written = folder / (name + ".wav");
    SoundClip again;
    Require(WriteLoopFile(written, loop, cut, true, error) && ReadClip(written, again, error), "a loop is read");
    fs::remove(written);
    Require(again.Frames() == loop.Frames(), "the whole loop is read");
}

}  // namespace quib::fuzz
