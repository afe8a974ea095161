// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/midi/MidiExport.h"

#include <algorithm>
#include <cmath>

#include "model/MixLanes.h"
#include "model/PlaylistSpans.h"
#include "project/ProjectEngine.h"

namespace quib {

namespace {

constexpr std::uint8_t kNoteOffStatus = 0x80;
constexpr std::uint8_t kNoteOnStatus = 0x90;
constexpr double kMicrosecondsPerMinute = 60e6;

// What one instrument plays, as messages.
class CTrackScore {
public:
    CTrackScore(const CInstrument& from, const MidiExportSettings& wanted, MidiExportCounts& told)
        : instrument(from),
          counts(told),
          ticksPerStep(double{kMidiTicksPerQuarter} / std::max(1, wanted.stepsPerBeat)) {
        if (wanted.swing) swing = std::clamp(static_cast<double>(from.swing.Get()), 0.0, 1.0);
    }

    // The steps [first, end) of the song, or of patterns that repeat, play `pattern` since `origin`.
    void Play(int pattern, std::int64_t first, std::int64_t end, std::int64_t origin) {
        const CPattern& notes = *instrument.patterns[static_cast<std::size_t>(pattern)].ForEdit();
        for (std::int64_t step = first; step < end; ++step) {
            const int inside = static_cast<int>((step - origin) % notes.LoopLength());
            for (const std::uint32_t index : notes.NotesOfStep(inside)) {
                PlayNote(notes.Notes()[index], step - inside, notes.LoopLength());
            }
        }
    }

    // Ends come before beginnings at the same tick, but each behind its own beginning.
    std::vector<MidiEvent> Take(int channel) {
        std::stable_sort(events.begin(), events.end(), [](const MidiEvent& a, const MidiEvent& b) {
            return a.tick != b.tick ? a.tick < b.tick : a.status < b.status;
        });
        for (MidiEvent& event : events) event.status = static_cast<std::uint8_t>(event.status | channel);
        return std::move(events);
    }
    bool IsEmpty() const noexcept { return events.empty(); }

private:
    void PlayNote(const Note& note, std::int64_t patternStart, int loopLength) {
        if (note.velocity <= 0 || note.key < 0 || note.key > 127) {
            ++counts.silent;
            return;
        }
        const double late = static_cast<int>(note.position) % 2 != 0 ? swing : 0.0;
        const double start = static_cast<double>(patternStart) + static_cast<double>(note.position) + late;
        const double length =
            std::min(static_cast<double>(note.length), static_cast<double>(note.position) + loopLength);
        const std::uint32_t on = TickOf(start);
        const std::uint32_t off = std::max(on + 1, TickOf(start + length));
        const auto key = static_cast<std::uint8_t>(note.key);
        events.push_back({on, kNoteOnStatus, key, static_cast<std::uint8_t>(std::min(note.velocity, 127))});
        events.push_back({off, kNoteOffStatus, key, 0});
        ++counts.notes;
    }
    std::uint32_t TickOf(double step) const {
        return static_cast<std::uint32_t>(std::lround(std::max(0.0, step) * ticksPerStep));
    }

    const CInstrument& instrument;
    MidiExportCounts& counts;
    std::vector<MidiEvent> events;
    double ticksPerStep;
    double swing = 0;
};

class CMidiExport {
public:
    CMidiExport(const ProjectState& project, const MidiExportSettings& wanted, MidiExportCounts& told)
        : state(project), settings(wanted), counts(told) {}

    MidiFile Run() {
        file.ticksPerQuarter = kMidiTicksPerQuarter;
        steps = settings.song ? SongSteps(state) : LongestPattern();
        PutMaster();
        for (std::size_t index = 0; index < state.instruments.size(); ++index) {
            if (IsWanted(index)) PutInstrument(*state.instruments[index]);
        }
        counts.tracks = file.tracks.size() - 1;
        return std::move(file);
    }

private:
    bool IsWanted(std::size_t index) const {
        return settings.instrument < 0 || index == static_cast<std::size_t>(settings.instrument);
    }
    int PatternOf(const CInstrument& instrument) const {
        return std::clamp(settings.pattern >= 0 ? settings.pattern : instrument.patternSelected.Get(), 0,
                          kPatternCount - 1);
    }
    const CPattern& ShownPattern(const CInstrument& instrument) const {
        return *instrument.patterns[static_cast<std::size_t>(PatternOf(instrument))].ForEdit();
    }
    int LongestPattern() const {
        int longest = 0;
        for (std::size_t index = 0; index < state.instruments.size(); ++index) {
            if (IsWanted(index)) longest = std::max(longest, ShownPattern(*state.instruments[index]).LoopLength());
        }
        return longest;
    }
    std::uint32_t TickOf(std::int64_t step) const {
        return static_cast<std::uint32_t>(step * kMidiTicksPerQuarter / std::max(1, settings.stepsPerBeat));
    }

    void PutMaster() {
        MidiTrack& track = file.tracks.emplace_back();
        track.end = TickOf(steps);
        const auto [beats, unit] = state.master.timeSignature;
        if (beats > 0) file.signatures.push_back({0, std::min(beats, 255), unit});
        PutTempo(0, state.master.tempo);
        if (!settings.song) return;
        for (const SongMarker& marker : state.markers) file.markers.push_back({TickOf(marker.step), marker.name});
        const PointList* const points = state.masterLanes.Find(CEventLanes::kSongSlot, kTempoLane);
        const LaneDescription& lane = MasterLanes()[kTempoLane];
        for (int step = 0; points != nullptr && step < steps; ++step) {
            const auto tempo = ValueAt(*points, static_cast<float>(step), lane.kind);
            PutTempo(step, tempo ? std::clamp(*tempo, lane.minimum, lane.maximum) : state.master.tempo);
        }
    }

    // Where it is another.
    void PutTempo(int step, float tempo) {
        const double wanted = std::round(kMicrosecondsPerMinute / static_cast<double>(std::max(tempo, 4.0F)));
        const MidiTempo next{TickOf(step), static_cast<std::uint32_t>(wanted)};
        if (!file.tempos.empty() && file.tempos.back().microseconds == next.microseconds) return;
        if (!file.tempos.empty() && file.tempos.back().tick == next.tick) file.tempos.pop_back();
        file.tempos.push_back(next);
    }

    void PutInstrument(const CInstrument& instrument) {
        CTrackScore score(instrument, settings, counts);
        if (settings.song) {
            for (const PlaylistSpan& span :
                 PlaylistSpans(*instrument.playlist.ForEdit(), PatternLengthsForEdit(instrument))) {
                score.Play(span.pattern, span.first, std::min(span.end, steps), span.origin);
            }
        } else {
            score.Play(PatternOf(instrument), 0, steps, 0);
            const CPattern& shown = ShownPattern(instrument);
            counts.silent += static_cast<std::size_t>(std::ranges::count_if(
                shown.Notes(), [&](const Note& note) { return StepOfPosition(note.position) >= shown.LoopLength(); }));
        }
        if (score.IsEmpty()) return;
        MidiTrack& track = file.tracks.emplace_back();
        const auto& plugin = instrument.plugin.ForEdit()->plugin;
        track.name = instrument.title.substr(0, kLongestMidiText);
        track.end = TickOf(steps);
        if (plugin) track.instrument = plugin->Identity().displayName.substr(0, kLongestMidiText);
        track.events = score.Take(plugin && plugin->Identity().isDrumMachine ? kMidiDrumChannel : NextChannel());
    }

    // All but that of the drums, around.
    int NextChannel() {
        const int channel = nextChannel;
        nextChannel = (nextChannel + 1) % 16;
        if (nextChannel == kMidiDrumChannel) ++nextChannel;
        return channel;
    }

    const ProjectState& state;
    const MidiExportSettings& settings;
    MidiExportCounts& counts;
    MidiFile file;
    int steps = 0;
    int nextChannel = 0;
};

}  // namespace

bool ExportMidi(const ProjectState& state, const MidiExportSettings& settings, MidiFile& file, MidiExportCounts& counts,
                std::string& error) {
    counts = {};
    MidiFile made = CMidiExport(state, settings, counts).Run();
    if (counts.notes == 0) {
        error = settings.song ? "The song has no notes." : "The patterns have no notes.";
        return false;
    }
    file = std::move(made);
    return true;
}

}  // namespace quib
