// SPDX-License-Identifier: GPL-3.0-or-later
// Writes whole files of every kind into FOLDER/<target>/, from which the fuzzers start.
#include <filesystem>
#include <fstream>
#include <span>
#include <string>

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
    return 0;
}
