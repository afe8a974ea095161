// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/midi/MidiImport.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>

#include "model/MixLanes.h"
#include "project/midi/CNotePairs.h"

namespace quib {

namespace {

constexpr int kFinestTick = 960;            // a quarter note has so many
constexpr int kUnits[] = {1, 2, 4, 8, 16};  // that a time signature has here

// Drums of the General MIDI kit from key 27 on, as the drum machine has them.
constexpr std::uint8_t kFirstDrum = 27;
constexpr std::uint8_t kDrums[] = {37, 37, 37, 37, 37, 37, 37, 37, 35, 36, 37, 38, 39, 40, 41, 42, 41, 44, 45,
                                   46, 45, 48, 49, 48, 51, 49, 51, 54, 49, 56, 49, 56, 51, 48, 45, 48, 48, 45,
                                   48, 45, 56, 56, 70, 70, 75, 75, 70, 70, 75, 75, 75, 70, 70, 51, 51, 70};

int DrumOf(int key) noexcept {
    const int last = kFirstDrum + static_cast<int>(std::size(kDrums)) - 1;
    return kDrums[static_cast<std::size_t>(std::clamp<int>(key, kFirstDrum, last) - kFirstDrum)];
}

// What a line of a file can hold.
std::string UsableText(std::string text) {
    std::erase_if(text, [](char letter) { return static_cast<unsigned char>(letter) < ' ' || letter == ';'; });
    return text;
}

// The roundest tempo that a file writes so.
double TempoOf(std::uint32_t microseconds) {
    constexpr double kMinute = 60e6;
    for (const double digits : {1.0, 10.0, 100.0, 1000.0}) {
        const double tempo = std::round(kMinute / microseconds * digits) / digits;
        if (tempo > 0 && std::lround(kMinute / tempo) == static_cast<long>(microseconds)) return tempo;
    }
    return kMinute / microseconds;
}

EMidiPlayer PlayerOf(const MidiTrack& track, int channel) {
    for (const EMidiPlayer player : {EMidiPlayer::kSynth, EMidiPlayer::kDrums, EMidiPlayer::kLoops}) {
        if (track.instrument == PluginOf(player)) return player;
    }
    return channel == kMidiDrumChannel ? EMidiPlayer::kDrums : EMidiPlayer::kSynth;
}

class CMidiImport {
public:
    CMidiImport(const MidiFile& from, int stepsPerBeat)
        : file(from),
          stepsPerTick(std::max(1, stepsPerBeat) / from.ticksPerQuarter),
          perBeat(std::max(1, stepsPerBeat)) {}

    MidiSong Run() {
        song.counts.messages = file.skipped;
        TakeSignatures();
        TakeTempos();
        for (const MidiMarker& marker : file.markers) Mark(marker.tick, marker.name);
        for (const MidiTrack& track : file.tracks) TakeTrack(track);
        for (const MidiPart& part : song.parts) {
            const PlaylistEntry& last = part.playlist.back();
            song.steps = std::max(song.steps, last.start + part.patterns.back().StepCount());
        }
        return std::move(song);
    }

private:
    double StepOf(std::uint32_t tick) const { return tick * stepsPerTick; }

    // In steps; at least one.
    int Bar() const {
        const auto [beats, unit] = song.signature;
        return beats > 0 ? std::max(1, 4 * perBeat * beats / unit) : 4 * perBeat;
    }

    // Beyond this a position would be rounded to another tick.
    int GreatestLength() const {
        const auto exact =
            std::bit_floor(static_cast<std::uint32_t>((1U << 24U) / kFinestTick * static_cast<unsigned>(perBeat)));
        const int steps = static_cast<int>(std::min<std::uint32_t>(exact, kMaximumStepCount));
        return std::max(1, steps / Bar() * Bar());
    }

    void Mark(std::uint32_t tick, const std::string& name) {
        const double step = std::round(StepOf(tick));
        const std::string usable = UsableText(name);
        if (step > kMaximumSongStep || usable.empty() || song.markers.size() >= kMostSongMarkers) return;
        if (!song.markers.empty() && song.markers.back().step == static_cast<std::int32_t>(step)) return;
        song.markers = WithMarker(song.markers, static_cast<std::int32_t>(step), usable);
    }

    void TakeSignatures() {
        for (const MidiSignature& next : file.signatures) {
            const bool isFirst = song.signature[0] == 0;
            const bool isPossible = std::ranges::find(kUnits, next.unit) != std::end(kUnits) && next.beats <= 16;
            if (isFirst && next.tick == 0 && isPossible) {
                song.signature = {next.beats, next.unit};
                continue;
            }
            ++song.counts.signatures;
            Mark(next.tick, fmt::format("{}/{}", next.beats, next.unit));
        }
    }

    // A tempo holds until the next one, but those that follow each other step by step are a line.
    void TakeTempos() {
        const LaneDescription& lane = MasterLanes()[kTempoLane];
        double before = 120;
        double reached = 0;
        for (const MidiTempo& next : file.tempos) {
            const double told = TempoOf(next.microseconds);
            const double tempo =
                std::clamp<double>(told, static_cast<double>(lane.minimum), static_cast<double>(lane.maximum));
            song.counts.tempos += tempo != told ? 1 : 0;
            const double step = StepOf(next.tick);
            if (step > kMaximumSongStep) break;
            if (next.tick == 0) {
                song.tempo = static_cast<float>(tempo);
            } else {
                if (song.tempoPoints.empty()) AddTempo(0, before);
                if (step - reached > 1.0) AddTempo(step, before);
                AddTempo(step, tempo);
            }
            reached = step;
            before = tempo;
        }
    }
    void AddTempo(double step, double tempo) {
        song.tempoPoints.push_back({static_cast<float>(step), static_cast<float>(tempo)});
    }

    void TakeTrack(const MidiTrack& track) {
        pairs.Read(track);
        song.counts.messages += pairs.OtherMessages();
        song.counts.unended += pairs.Unended();
        for (int channel = 0; channel < 16; ++channel) {
            if (!pairs.Notes(channel).empty()) TakePart(track, channel);
        }
    }

    void TakePart(const MidiTrack& track, int channel) {
        const std::vector<MidiNote>& notes = pairs.Notes(channel);
        if (song.parts.size() >= kMostMidiParts) {
            ++song.counts.extraParts;
            song.counts.extraNotes += notes.size();
            return;
        }
        MidiPart part{UsableText(track.name), channel, PlayerOf(track, channel), {}, {}};
        const int greatest = GreatestLength();
        std::array<std::vector<Note>, kPatternCount> patterns;
        double end = 0;
        for (const MidiNote& note : notes) {
            const double start = StepOf(note.start);
            const auto place = static_cast<std::size_t>(std::min(start / greatest, 1e6));
            if (place >= patterns.size()) {
                ++song.counts.lateNotes;
                continue;
            }
            end = std::max(end, StepOf(note.end));
            const double inside = start - static_cast<double>(place) * greatest;
            patterns[place].push_back({static_cast<float>(inside), static_cast<float>(StepOf(note.end) - start),
                                       KeyFor(part, note.key), note.velocity});
            ++song.counts.notes;
        }
        if (end > 0) AddPatterns(std::move(part), patterns, end, greatest);
    }

    int KeyFor(const MidiPart& part, int key) {
        if (part.player != EMidiPlayer::kDrums) return key;
        const int drum = DrumOf(key);
        song.counts.movedDrums += drum != key ? 1 : 0;
        return drum;
    }

    void AddPatterns(MidiPart part, std::array<std::vector<Note>, kPatternCount>& patterns, double end, int greatest) {
        std::size_t count = patterns.size();
        while (count > 1 && patterns[count - 1].empty()) --count;
        for (std::size_t index = 0; index < count; ++index) {
            const int start = static_cast<int>(index) * greatest;
            int length = greatest;
            if (index + 1 == count) {
                const double bars = std::ceil((end - start) / Bar());
                length = static_cast<int>(
                    std::clamp(bars * Bar(), static_cast<double>(Bar()), static_cast<double>(greatest)));
            }
            part.patterns.emplace_back(length, std::move(patterns[index]));
            part.playlist.push_back({static_cast<std::int32_t>(index), start, 0});
        }
        song.parts.push_back(std::move(part));
    }

    const MidiFile& file;
    double stepsPerTick;
    int perBeat;
    CNotePairs pairs;
    MidiSong song;
};

}  // namespace

const char* PluginOf(EMidiPlayer player) {
    switch (player) {
        case EMidiPlayer::kDrums:
            return "QUIB drums";
        case EMidiPlayer::kLoops:
            return "QUIB Loops";
        default:
            return "QUIB synth";
    }
}

MidiSong ConvertMidi(const MidiFile& file, int stepsPerBeat) { return CMidiImport(file, stepsPerBeat).Run(); }

}  // namespace quib
