// SPDX-License-Identifier: GPL-3.0-or-later

#include "Testing.h"
#include "model/PlaylistSpans.h"
#include "model/plugin/CPluginFinder.h"
#include "project/GeneratedProject.h"
#include "project/ProjectEngine.h"
#include "project/ProjectFile.h"
#include "project/midi/MidiExport.h"
#include "project/midi/MidiImport.h"

namespace quib {
namespace {

std::string Bytes(std::initializer_list<int> values) {
    std::string bytes;
    for (const int value : values) bytes += static_cast<char>(value);
    return bytes;
}

std::string Head(int format, int tracks, int division) {
    return "MThd" + Bytes({0, 0, 0, 6, 0, format, 0, tracks, division >> 8, division & 0xFF});
}

std::string Track(const std::string& data) {
    const int size = static_cast<int>(data.size());
    return "MTrk" + Bytes({0, 0, size >> 8, size & 0xFF}) + data;
}

MidiFile ReadGood(const std::string& bytes) {
    MidiFile file;
    std::string error;
    EXPECT_TRUE(ReadMidi(bytes, file, error)) << error;
    return file;
}

TEST(MidiFile, RunningStatusFormatZeroAndWhatIsNoNoteAreUnderstood) {
    // Two channels on one track; the second note of each by running status, ended by velocity 0.
    const MidiFile file = ReadGood(Head(0, 1, 96) + Track(Bytes({0, 0x90, 60, 100, 48, 64, 90, 48, 60, 0, 0, 64, 0})) +
                                   "XFIH" + Bytes({0, 0, 0, 2, 1, 2}));
    const MidiSong song = ConvertMidi(file, 4);
    ASSERT_EQ(song.parts.size(), 1u);
    EXPECT_EQ(song.parts[0].patterns[0].Notes(), (std::vector<Note>{{0, 4, 60, 100}, {2, 2, 64, 90}}));
    EXPECT_EQ(song.parts[0].patterns[0].StepCount(), 16);

    const MidiSong mixed = ConvertMidi(
        ReadGood(Head(0, 1, 480) + Track(Bytes({0,    0xFF, 0x58, 4,    6,  3,   24,   8,    0,    0xFF, 0x51, 3, 6,
                                                0x1A, 0x80, 0,    0x99, 43, 100, 0x83, 0x60, 0x89, 43,   0,    0, 0xB0,
                                                7,    99,   0,    0xF0, 2,  1,   0xF7, 0,    0x91, 72,   1}))),
        4);
    ASSERT_EQ(mixed.parts.size(), 2u);
    EXPECT_EQ(mixed.parts[0].player, EMidiPlayer::kSynth);
    EXPECT_EQ(mixed.parts[1].player, EMidiPlayer::kDrums);
    EXPECT_EQ(mixed.parts[1].patterns[0].Notes()[0].key, 41) << "a tom that the kit has";
    EXPECT_EQ(mixed.signature, (std::array{6, 8}));
    EXPECT_EQ(mixed.parts[1].patterns[0].StepCount(), 12) << "a bar of 6/8";
    EXPECT_FLOAT_EQ(mixed.tempo, 150);
    const MidiImportCounts& counts = mixed.counts;
    EXPECT_EQ(std::tuple(counts.notes, counts.movedDrums, counts.messages, counts.unended), std::tuple(2u, 1u, 2u, 1u));
}

TEST(MidiFile, TempoMapMarkersAndSignaturesComeBackAfterARoundTrip) {
    MidiFile file;
    file.tempos = {{0, 500000}, {9600, 400000}, {9840, 390000}, {10080, 380000}, {99999, 10'000'000}};
    file.signatures = {{0, 3, 4}, {5760, 4, 4}};
    file.markers = {{960, "Verse"}};
    file.tracks = {{"A;B\n", "", 99999, {{0, 0x90, 1, 1}}}};
    const MidiFile again = ReadGood(WriteMidi(file));
    EXPECT_EQ(std::tie(again.tempos, again.signatures, again.markers, again.tracks),
              std::tie(file.tempos, file.signatures, file.markers, file.tracks));
    const MidiSong song = ConvertMidi(again, 4);
    EXPECT_EQ(song.tempoPoints[2], (Point{40, 150})) << "held, then another";
    EXPECT_EQ(song.tempoPoints[1], (Point{40, 120}));
    EXPECT_EQ(song.tempoPoints[3].x, 41) << "step by step: a line";
    EXPECT_EQ(song.tempoPoints.back().y, 20) << "limited";
    EXPECT_EQ(song.counts.tempos, 1u);
    EXPECT_EQ(song.markers, (SongMarkers{{4, "Verse"}, {24, "4/4"}}));
    EXPECT_EQ(song.parts[0].title, "AB");
}

TEST(MidiFile, LongTracksAreSplitAtTheGreatestLengthAndWhatDoesNotFitIsCounted) {
    MidiFile file;
    constexpr std::uint32_t kPatternTicks = 65536 * 240;
    const auto note = [&](std::uint32_t tick) {
        file.tracks[0].events.push_back({tick, 0x90, 60, 100});
        file.tracks[0].events.push_back({tick + 1, 0x80, 60, 0});
    };
    file.tracks.resize(1);
    for (std::uint32_t pattern = 0; pattern < 17; ++pattern) note((pattern + 1) * kPatternTicks - 1);
    for (std::size_t more = 0; more < kMostMidiParts; ++more) file.tracks.push_back({"", "", 9, {{0, 0x90, 60, 1}}});
    const MidiSong song = ConvertMidi(file, 4);
    ASSERT_EQ(song.parts.size(), kMostMidiParts);
    EXPECT_EQ(song.parts[0].patterns.size(), 16u);
    EXPECT_EQ(song.parts[0].playlist[15], (PlaylistEntry{15, 15 * 65536, 0}));
    EXPECT_EQ(song.counts.lateNotes, 1u);
    EXPECT_EQ(std::pair(song.counts.extraParts, song.counts.extraNotes), std::pair(std::size_t{1}, std::size_t{1}));
    for (const CPattern& pattern : song.parts[0].patterns) {
        EXPECT_EQ(std::lround(pattern.Notes()[0].position * 240), kPatternTicks - 1) << "kept to the tick";
    }
}

TEST(MidiFile, DamagedFilesAreRefusedWithTheirPlaceAndCutOnesNeverDoHarm) {
    const std::string good = Head(1, 1, 96) + Track(Bytes({0, 0x90, 60, 100, 48, 0x80, 60, 0, 0, 0xFF, 0x2F, 0}));
    const struct {
        std::string bytes;
        const char* told;
    } cases[] = {
        {"RIFFxxxx", "does not begin as one"},
        {Head(2, 1, 96) + Track(Bytes({0, 0xFF, 0x2F, 0})), "format 2"},
        {Head(1, 1, 0) + Track(Bytes({0, 0xFF, 0x2F, 0})), "no ticks"},
        {Head(1, 3, 96) + Track(Bytes({0, 0xFF, 0x2F, 0})), "1 of 3 tracks"},
        {good.substr(0, good.size() - 4), "track 1, 4 bytes too early"},
        {Head(1, 1, 96) + Track(Bytes({0, 60, 100})), "no message"},
        {Head(1, 1, 96) + Track(Bytes({0, 0x90, 60, 200})), "beyond 127"},
        {Head(1, 1, 96) + Track(Bytes({0x81, 0x82, 0x83, 0x84, 5, 0x90, 60, 100})), "track 1 at byte 22"},
        {std::string(kLongestMidiFile + 1, 'M'), "at most 100000000"},
    };
    for (const auto& damaged : cases) {
        MidiFile file;
        std::string error;
        EXPECT_FALSE(ReadMidi(damaged.bytes, file, error));
        EXPECT_NE(error.find(damaged.told), std::string::npos) << error;
        EXPECT_TRUE(file.tracks.empty());
    }
    MidiFile file;
    std::string error;
    ASSERT_TRUE(ReadMidi(good, file, error)) << error;
    for (std::size_t size = 0; size < good.size(); ++size) EXPECT_FALSE(ReadMidi(good.substr(0, size), file, error));
}

// Notes of a song, as ticks, in the order of time.
using Score = std::multiset<std::array<long, 4>>;

// By the playlists alone, step for step.
Score ScoreOf(const CInstrument& instrument, int steps) {
    Score score;
    const PatternLengths lengths = PatternLengthsForEdit(instrument);
    for (int step = 0; step < steps; ++step) {
        const SongPlace place = PlaylistPlaceAt(*instrument.playlist.ForEdit(), lengths, step);
        if (place.entry < 0) continue;
        const auto number = (*instrument.playlist.ForEdit())[static_cast<std::size_t>(place.entry)].pattern;
        const CPattern& pattern = *instrument.patterns[static_cast<std::size_t>(number)].ForEdit();
        for (const Note& note : pattern.Notes()) {
            if (StepOfPosition(note.position) != place.step || note.velocity == 0) continue;
            const float start = static_cast<float>(step - place.step) + note.position;
            score.insert(
                {std::lround(start * 240), std::max(1L, std::lround(note.length * 240)), note.key, note.velocity});
        }
    }
    return score;
}

class MidiOfExamples : public testing::TestWithParam<const char*> {};

TEST_P(MidiOfExamples, HasTheSameNotesAfterExportImportSaveAndLoad) {
    PluginEnvironment environment;
    CPluginFinder finder(QUIB_BIN_DIR, {}, {});
    const PluginLoader load = [&](const PluginReference& wanted, ESlotKind kind, std::string& error) {
        const auto library = finder.Find(wanted, kind);
        return library ? CPlugin::Load(*library, kind, environment, error) : nullptr;
    };
    ProjectState state;
    std::string error;
    ASSERT_TRUE(ReadProjectFile(std::string(QUIB_SOURCE_DIR "/examples/") + GetParam() + ".prg", load, state, error));
    MidiExportSettings settings;
    settings.swing = false;
    MidiFile file;
    MidiExportCounts exported;
    ASSERT_TRUE(ExportMidi(state, settings, file, exported, error)) << error;
    const MidiSong song = ConvertMidi(ReadGood(WriteMidi(file)), 4);
    EXPECT_EQ(song.counts.notes, exported.notes);
    EXPECT_EQ(song.counts.movedDrums + song.counts.unended + song.counts.lateNotes, 0u);
    EXPECT_FLOAT_EQ(song.tempo, file.tempos.empty() ? 120 : state.master.tempo);

    // As a project that is saved and loaded.
    ProjectState imported;
    for (const MidiPart& part : song.parts) {
        auto instrument = std::make_shared<CInstrument>();
        instrument->title = part.title;
        for (std::size_t index = 0; index < part.patterns.size(); ++index) {
            instrument->patterns[index].Prepare(std::make_shared<const CPattern>(part.patterns[index]));
        }
        instrument->playlist.Prepare(std::make_shared<const Playlist>(part.playlist));
        imported.instruments.push_back(instrument);
    }
    ProjectState loaded;
    ASSERT_TRUE(ReadProject(generated::BytesOf(imported), load, loaded, error)) << error;

    constexpr int kSongSteps = 1 << 13;
    std::size_t notes = 0;
    auto after = loaded.instruments.begin();
    for (const auto& instrument : state.instruments) {
        const Score score = ScoreOf(*instrument, std::min(kSongSteps, SongSteps(state)));
        if (score.empty()) continue;
        ASSERT_NE(after, loaded.instruments.end());
        EXPECT_EQ(ScoreOf(**after, kSongSteps), score) << instrument->title;
        notes += score.size();
        ++after;
    }
    EXPECT_EQ(notes, exported.notes);
}

INSTANTIATE_TEST_SUITE_P(All, MidiOfExamples,
                         testing::Values("HouseMusic", "HouseYa", "Siren", "Tempo100", "BassDrums"));

}  // namespace
}  // namespace quib
