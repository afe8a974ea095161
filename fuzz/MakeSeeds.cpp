// SPDX-License-Identifier: GPL-3.0-or-later
// Writes whole files of every kind into FOLDER/<target>/, from which the fuzzers start.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>

#include "export/CSoundFile.h"
#include "model/files/InstrumentFile.h"
#include "model/files/PatternRecords.h"
#include "project/GeneratedProject.h"
#include "project/midi/MidiFile.h"

namespace {

void Save(const std::filesystem::path& path, std::span<const char> bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void Save(const std::filesystem::path& path, const quib::StateImage& image) {
    Save(path, {reinterpret_cast<const char*>(image.data()), image.size()});
}

// A tenth of a second of a tone in each of the formats.
void SaveSounds(const std::filesystem::path& folder) {
    using quib::ESoundFormat;
    std::vector<float> tone(4410);
    for (std::size_t i = 0; i < tone.size(); ++i)
        tone[i] = static_cast<float>(0.5 * std::sin(0.05 * static_cast<double>(i)));
    const std::pair<quib::SoundFormat, const char*> sounds[] = {
        {{ESoundFormat::kWave, 22050, 16}, "16.wav"},    {{ESoundFormat::kWave, 44100, 24}, "24.wav"},
        {{ESoundFormat::kWave, 44100, 32}, "float.wav"}, {{ESoundFormat::kFlac, 44100, 16}, "16.flac"},
        {{ESoundFormat::kOgg, 44100}, "sound.ogg"},      {{ESoundFormat::kOpus, 48000}, "sound.opus"},
        {{ESoundFormat::kMp3, 44100}, "sound.mp3"}};
    for (const auto& [format, name] : sounds) {
        quib::SoundTags tags{"Tone", "Nobody", 124};
        tags.loopBeats = 4;
        tags.loopFrames = static_cast<std::int64_t>(tone.size());
        tags.strokes = {0, 2205};
        quib::CSoundFile file(folder / name, format, tags);
        file.Open() && file.Write(tone.data(), tone.data(), static_cast<int>(tone.size())) && file.Finish() &&
            file.Keep();
    }
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    using namespace quib;
    const std::filesystem::path folder = arguments[1];
    const ProjectState state = generated::EveryRecord();
    Save(folder / "project" / "every-record.prg", generated::BytesOf(state));
    ProjectState empty;
    Save(folder / "project" / "empty.prg", generated::BytesOf(empty));
    CInstrument& instrument = *state.instruments.front();
    CRecordWriter writer;
    WriteInstrument(writer, instrument, instrument.play.heldKeys.Items());
    Save(folder / "instrument" / "every-record.ist", writer.Bytes());
    writer.Clear();
    WritePatternBlock(writer, instrument);
    Save(folder / "pattern" / "every-record.ptn", writer.Bytes());
    CPlugin& chunks = *instrument.plugin.ForEdit()->plugin;
    CPlugin& parameters = *instrument.inserts[0].ForEdit()->plugin;
    Save(folder / "bank" / "chunk.fxb", chunks.SaveBank());
    Save(folder / "bank" / "parameters.fxb", parameters.SaveBank());
    Save(folder / "program" / "chunk.fxp", chunks.SaveProgram());
    Save(folder / "program" / "parameters.fxp", parameters.SaveProgram());
    MidiFile midi;
    midi.tempos = {{0, 500000}, {960, 400000}};
    midi.signatures = {{0, 6, 8}};
    midi.markers = {{1920, "Chorus"}};
    midi.tracks = {{"Song", "", 3840, {}},
                   {"Bass", "QUIB synth", 3840, {{0, 0x90, 36, 100}, {480, 0x80, 36, 0}, {480, 0xC0, 5, 0}}},
                   {"Drums", "", 3840, {{0, 0x99, 36, 100}, {240, 0x99, 36, 0}, {240, 0xE9, 0, 64}}}};
    const std::string song = WriteMidi(midi);
    Save(folder / "midi" / "song.mid", std::span<const char>(song));
    SaveSounds(folder / "audio");
    return 0;
}
