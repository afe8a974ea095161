// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CMidiExchange.h"

#include <algorithm>
#include <cmath>

#include "document/CWorkstation.h"
#include "model/MixLanes.h"
#include "platform/CAtomicFile.h"
#include "texts/Texts.h"

namespace quib {

bool CMidiExchange::Read(const QString& path, MidiSong& song, QString& error) const {
    MidiFile file;
    std::string reason;
    if (!ReadMidiFile(path.toStdString(), file, reason)) {
        error = QString::fromStdString(reason);
        return false;
    }
    song = ConvertMidi(file, document.Audio().settings.stepsPerBeat.Get());
    if (song.parts.empty()) error = Text("There are no notes in this file.");
    return !song.parts.empty();
}

// The drum kit and the synthesiser of the program stand for what the file meant.
std::shared_ptr<CInstrument> CMidiExchange::MakeInstrument(const MidiPart& part, QString& error) {
    const auto plugin =
        document.Places().LoadLibrary(QLatin1String(PluginOf(part.player)), ESlotKind::kInstrument, error);
    if (!plugin) return nullptr;
    auto instrument = std::make_shared<CInstrument>();
    auto slot = std::make_shared<PluginSlot>();
    slot->plugin = plugin;
    instrument->plugin.Prepare(std::move(slot));
    const QString name = part.title.empty()
                             ? Text("Channel %1").arg(part.channel + 1)
                             : QString::fromUtf8(part.title.data(), static_cast<qsizetype>(part.title.size()));
    instrument->title = name.toStdString();
    for (std::size_t index = 0; index < part.patterns.size(); ++index) {
        instrument->patterns[index].Prepare(std::make_shared<const CPattern>(part.patterns[index]));
        instrument->patternUsed[index].Set(part.patterns[index].Notes().empty() ? 0 : 1);
    }
    instrument->stepNumber.Set(part.patterns.front().StepCount());
    instrument->playlist.Prepare(std::make_shared<const Playlist>(part.playlist));
    return instrument;
}

bool CMidiExchange::Import(const MidiSong& song, QStringList& told, QString& error) {
    InstrumentList added;
    for (const MidiPart& part : song.parts) {
        auto instrument = MakeInstrument(part, error);
        if (!instrument) return false;
        added.push_back(std::move(instrument));
    }
    const bool isFresh = document.Stack().Instruments().empty();
    const CChanges::CMacro step(document.Changes(), Text("Import MIDI"));
    if (!document.Stack().AddInstruments(added, Text("Import MIDI"), error)) return false;
    if (isFresh) TakeTime(song);
    if (song.steps > document.Contents().PlaylistSteps()) document.Contents().SetPlaylistSteps(song.steps);
    told = Describe(song, isFresh);
    return true;
}

void CMidiExchange::TakeTime(const MidiSong& song) {
    EngineSettings& settings = document.Audio().settings;
    const auto set = [this](CValue& value, float next) {
        const float before = value.Get();
        value.Set(next);
        document.Changes().ValueEdited(EnginePart(value), before, next, Text("Import MIDI"));
    };
    set(settings.tempo, song.tempo);
    set(settings.songMode, 1.0F);
    if (song.signature[0] > 0) SetSignature(song.signature);
    const auto lanes = document.Audio().masterLanes.ForEdit();
    document.Contents().SetMasterLanes(
        std::make_shared<const CEventLanes>(lanes->With(CEventLanes::kSongSlot, kTempoLane, song.tempoPoints)),
        Text("Import MIDI"));
    for (const SongMarker& marker : song.markers) {
        document.Song().SetMarker(marker.step, QString::fromStdString(marker.name));
    }
}

void CMidiExchange::SetSignature(std::array<int, 2> signature) {
    EngineSettings& settings = document.Audio().settings;
    const std::array before{settings.beatsPerBar.Get(), settings.beatUnit.Get()};
    const auto set = [this, &settings](std::array<int, 2> next) {
        settings.beatsPerBar.Set(next[0]);
        settings.beatUnit.Set(next[1]);
        document.Changes().Tell({EChange::kProject});
    };
    document.Changes().Push(
        Text("Import MIDI"), [set, signature] { set(signature); }, [set, before] { set(before); });
}

QStringList CMidiExchange::Describe(const MidiSong& song, bool tookTime) const {
    const MidiImportCounts& counts = song.counts;
    QStringList lines{Text("%1 notes on %2 instruments.").arg(counts.notes).arg(song.parts.size())};
    const struct {
        std::size_t count;
        QString text;
    } rows[] = {
        {counts.lateNotes, Text("Left out: %1 notes beyond the last of 16 patterns.")},
        {counts.extraNotes, Text("Left out: %1 notes on further tracks than can be taken.")},
        {counts.unended, Text("%1 notes had no end; they end with their track.")},
        {counts.movedDrums, Text("%1 notes went to the drum of the kit that is nearest.")},
        {counts.messages, Text("Left out: %1 messages that are no notes (controllers, programs).")},
        {counts.tempos, Text("%1 tempos were brought within 20 to 300 BPM.")},
        {counts.signatures, Text("%1 further time signatures became markers.")},
    };
    for (const auto& row : rows) {
        if (row.count > 0) lines.append(row.text.arg(row.count));
    }
    if (!tookTime) lines.append(Text("Tempo and time signature stay those of the project."));
    return lines;
}

bool CMidiExchange::ImportInto(std::uint32_t id, int pattern, const MidiPart& part) {
    const auto instrument = document.Stack().InstrumentById(id);
    if (!instrument || pattern < 0 || pattern >= kPatternCount) return false;
    const auto before = instrument->patterns[static_cast<std::size_t>(pattern)].ForEdit();
    const CPattern& added = part.patterns.front();
    std::vector<Note> notes = before->Notes();
    notes.insert(notes.end(), added.Notes().begin(), added.Notes().end());
    const int steps = std::max(before->StepCount(), added.StepCount());
    document.Contents().SetPattern(id, pattern,
                                   std::make_shared<const CPattern>(steps, std::move(notes), before->LoopStart()),
                                   Text("Import MIDI"));
    return true;
}

bool CMidiExchange::Export(const QString& path, MidiExportSettings settings, MidiExportCounts& counts,
                           QString& error) const {
    settings.stepsPerBeat = document.Audio().settings.stepsPerBeat.Get();
    MidiFile file;
    std::string reason;
    const bool done = ExportMidi(document.Session().GatherState(), settings, file, counts, reason) &&
                      CAtomicFile().Replace(path.toStdString(), WriteMidi(file), reason);
    error = QString::fromStdString(reason);
    return done;
}

}  // namespace quib
