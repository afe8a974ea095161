// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Standard MIDI files between bytes and plain values. No plug-in, no project: any thread. Reading needs memory
// in proportion to the file, never more than the limits below allow.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quib {

constexpr std::size_t kLongestMidiFile = 100'000'000;  // bytes
constexpr std::size_t kMostMidiEvents = 4'000'000;
constexpr std::size_t kLongestMidiText = 255;  // bytes of a name

constexpr int kMidiDrumChannel = 9;  // counted from 0
constexpr std::uint32_t kUsualMidiTempo = 500'000;

// A message of a channel; `second` is 0 for those with one data byte.
struct MidiEvent {
    std::uint32_t tick = 0;
    std::uint8_t status = 0;  // 0x80..0xEF
    std::uint8_t first = 0;
    std::uint8_t second = 0;

    int Kind() const noexcept { return status & 0xF0; }
    int Channel() const noexcept { return status & 0x0F; }
    friend bool operator==(const MidiEvent&, const MidiEvent&) = default;
};

struct MidiTempo {
    std::uint32_t tick = 0;
    std::uint32_t microseconds = kUsualMidiTempo;  // of a quarter note, 1..0xFFFFFF

    friend bool operator==(const MidiTempo&, const MidiTempo&) = default;
};

struct MidiSignature {
    std::uint32_t tick = 0;
    int beats = 4;
    int unit = 4;  // a power of two, 1..128

    friend bool operator==(const MidiSignature&, const MidiSignature&) = default;
};

struct MidiMarker {
    std::uint32_t tick = 0;
    std::string name;

    friend bool operator==(const MidiMarker&, const MidiMarker&) = default;
};

struct MidiTrack {
    std::string name;
    std::string instrument;  // what plays it, as the file says
    std::uint32_t end = 0;   // tick
    std::vector<MidiEvent> events;

    friend bool operator==(const MidiTrack&, const MidiTrack&) = default;
};

// Everything in the order of time.
struct MidiFile {
    int format = 1;
    double ticksPerQuarter = 960;
    bool isTimecode = false;  // ticks of a clock: its tempos mean nothing, a quarter is half a second
    std::vector<MidiTrack> tracks;
    std::vector<MidiTempo> tempos;
    std::vector<MidiSignature> signatures;
    std::vector<MidiMarker> markers;
    std::uint64_t skipped = 0;  // system exclusive messages
};

// False with the reason, which names the place, for a file that is damaged, too long or of another kind;
// `file` is as before then.
bool ReadMidi(std::string_view bytes, MidiFile& file, std::string& error);

// The same from a file on disk; `error` names it.
bool ReadMidiFile(const std::filesystem::path& path, MidiFile& file, std::string& error);

// A file of format 1 (or 0, with one track): the first track has tempos, signatures and markers too.
std::string WriteMidi(const MidiFile& file);

}  // namespace quib
