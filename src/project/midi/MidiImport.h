// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a MIDI file becomes here: an instrument for each channel of each track, with its notes in patterns of the
// greatest length at which positions hold to the tick. Pure, any thread; what does not fit is counted.

#include <array>
#include <vector>

#include "model/CEventLanes.h"
#include "model/CPattern.h"
#include "model/Playlist.h"
#include "model/SongMarker.h"
#include "project/midi/MidiFile.h"

namespace quib {

constexpr std::size_t kMostMidiParts = 64;

enum class EMidiPlayer { kSynth, kDrums, kLoops };
// The plug-in that is meant.
const char* PluginOf(EMidiPlayer player);

struct MidiPart {
    std::string title;  // may be empty
    int channel = 0;    // 0..15
    EMidiPlayer player = EMidiPlayer::kSynth;
    std::vector<CPattern> patterns;  // 1..16, one behind the other
    Playlist playlist;
};

struct MidiImportCounts {
    std::size_t notes = 0;       // imported
    std::size_t lateNotes = 0;   // left out: beyond the last pattern
    std::size_t extraParts = 0;  // left out: more than kMostMidiParts
    std::size_t extraNotes = 0;  // of those
    std::size_t unended = 0;     // end with their track, since nothing else ends them
    std::size_t movedDrums = 0;  // keys that the drum kit does not have, moved to one that is like it
    std::size_t messages = 0;    // left out: controllers, programs, system exclusive
    std::size_t tempos = 0;      // beyond 20 to 300 BPM: limited
    std::size_t signatures = 0;  // after the first: became markers
};

struct MidiSong {
    std::vector<MidiPart> parts;
    float tempo = 120;               // where it begins
    PointList tempoPoints;           // lane of the song's tempo; empty when it stays the same
    std::array<int, 2> signature{};  // beats, unit; 0: none told
    SongMarkers markers;
    int steps = 0;  // where the last note ends, up to the bar
    MidiImportCounts counts;
};

// `stepsPerBeat`: 1.., of a quarter note.
MidiSong ConvertMidi(const MidiFile& file, int stepsPerBeat);

}  // namespace quib
