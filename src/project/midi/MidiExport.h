// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The notes of a project as a MIDI file: the song as its playlists play it with the tempo of its automation, or
// patterns. Editing thread; only reads what is published.

#include <cstdint>
#include <string>

#include "project/ProjectState.h"
#include "project/midi/MidiFile.h"

namespace quib {

constexpr int kMidiTicksPerQuarter = 960;

struct MidiExportSettings {
    bool song = true;     // else the selected patterns, up to the end of the longest
    int instrument = -1;  // the only one; -1: all
    int pattern = -1;     // that one in place of the selected ones; -1: those
    bool swing = true;    // notes as late as they sound, else as they are written
    int stepsPerBeat = 4;
};

struct MidiExportCounts {
    std::size_t tracks = 0;
    std::size_t notes = 0;
    std::size_t silent = 0;  // of velocity 0 or beyond the end of their pattern: nobody hears them
};

// False with the reason when there is no note.
bool ExportMidi(const ProjectState& state, const MidiExportSettings& settings, MidiFile& file, MidiExportCounts& counts,
                std::string& error);

}  // namespace quib
