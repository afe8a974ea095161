// SPDX-License-Identifier: GPL-3.0-or-later
// Exports of an example, read back by programs that are not ours.
#include <sndfile.h>
#include <sys/resource.h>

#include <csignal>

#include "CTemporaryFolder.h"
#include "Testing.h"
#include "export/CExport.h"
#include "model/plugin/CPluginFinder.h"

namespace quib {
namespace {

namespace fs = std::filesystem;
using Samples = std::vector<float>;

std::string OutputOf(const std::string& command) {
    std::string output;
    std::FILE* const pipe = popen(command.c_str(), "r");
    char part[4096];
    while (const std::size_t count = std::fread(part, 1, sizeof part, pipe)) output.append(part, count);
    return pclose(pipe) == 0 ? output : "failed: " + command;
}

Samples Read(const fs::path& path) {
    SF_INFO info{};
    SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr) return {};
    Samples samples(static_cast<std::size_t>(info.frames) * 2);
    samples.resize(static_cast<std::size_t>(sf_readf_float(file, samples.data(), info.frames)) * 2);
    sf_close(file);
    return samples;
}

double Largest(const Samples& one, const Samples& other) {
    double largest = one.size() == other.size() ? 0 : 9;
    for (std::size_t i = 0; i < std::min(one.size(), other.size()); ++i) {
        largest = std::max(largest, std::abs(static_cast<double>(one[i]) - static_cast<double>(other[i])));
    }
    return largest;
}

double Power(const Samples& samples) {
    double sum = 0;
    for (const float sample : samples) sum += static_cast<double>(sample) * static_cast<double>(sample);
    return 10 * std::log10(sum / static_cast<double>(samples.size()));
}

double After(const std::string& text, const std::string& key) {
    const std::size_t at = text.rfind(key);
    return at == std::string::npos ? 99 : std::atof(text.c_str() + at + key.size());
}

class ExportTest : public testing::Test {
protected:
    void SetUp() override {
        std::ifstream file(QUIB_SOURCE_DIR "/examples/HouseMusic.prg", std::ios::binary);
        song.assign(std::istreambuf_iterator<char>(file), {});
        settings.folder = folder;
        settings.range = EExportRange::kSong;
        settings.firstStep = 512;
        settings.endStep = 528;
        settings.tailSeconds = 0;
        settings.tags = {"A \"song\"", "Née", 124, 4};
    }

    // Empty when the files are there.
    std::string Run(double cancelAt = 2) {
        const auto load = [this](const PluginReference& wanted, ESlotKind kind, PluginEnvironment& environment,
                                 std::string& error) {
            const auto library = finder.Find(wanted, kind);
            return library ? CPlugin::Load(*library, kind, environment, error) : nullptr;
        };
        work = std::make_unique<CExport>(settings, song, load, [&](double share, int) { return share < cancelAt; });
        bool done = true;
        while (done && work->HasMorePasses()) done = work->Load() && work->Render();
        done = done && work->Write();
        std::string error = done ? "" : work->Error().empty() ? "cancelled" : work->Error();
        if (!done) work.reset();
        return error;
    }
    Samples RunMix() {
        EXPECT_EQ(Run(), "");
        return work ? Read(work->Files()[0].path) : Samples();
    }
    std::size_t FilesThere() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    const CTemporaryFolder temporary;
    const fs::path folder = temporary.Path() / "out";  // that is not there yet
    std::string song;
    CPluginFinder finder{QUIB_BIN_DIR, {}, {}};
    ExportSettings settings;
    std::unique_ptr<CExport> work;
};

TEST_F(ExportTest, EveryFormatIsReadBackWithItsLengthRateAndTags) {
    struct Row {
        SoundFormat format;
        const char* codec;
        double error;  // of samples; above 1: of the level, in dB
        int delay;     // most frames that a foreign reader sees more or less
    };
    const Row rows[] = {
        {{ESoundFormat::kWave, 44100, 32}, "pcm_f32le", 0, 0},
        {{ESoundFormat::kWave, 44100, 24}, "pcm_s24le", 2e-7, 0},
        {{ESoundFormat::kWave, 44100, 16}, "pcm_s16le", 4.7e-5, 0},
        {{ESoundFormat::kWave, 44100, 16, true}, "pcm_s16le", 7e-5, 0},
        {{ESoundFormat::kFlac, 44100, 24}, "flac", 2e-7, 0},
        {{ESoundFormat::kFlac, 44100, 16}, "flac", 4.7e-5, 0},
        {{ESoundFormat::kOgg, 44100, 16, false, 0.8}, "vorbis", 1.1, 0},
        {{ESoundFormat::kMp3, 44100, 16, false, 0.6, false, 256}, "mp3", 1.1, 1152},
        {{ESoundFormat::kMp3, 44100, 16, false, 0.9, true}, "mp3", 1.1, 1152},
        {{ESoundFormat::kOpus, 48000, 16, false, 0.8}, "opus", 1.1, 648},
    };
    settings.endStep = settings.firstStep + 8;
    Samples exact;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.codec);
        settings.format = row.format;
        const Samples samples = RunMix();
        ASSERT_TRUE(work);
        const std::string path = " '" + work->Files()[0].path.string() + "'";
        if (exact.empty()) exact = samples;
        EXPECT_EQ(samples.size(), 2U * static_cast<std::size_t>(work->Frames()));
        if (row.error < 1) {
            EXPECT_LE(Largest(samples, exact), row.error);
        } else {
            EXPECT_NEAR(Power(samples), Power(exact), row.error);
        }
        const std::string raw = OutputOf("ffmpeg -v error -i" + path + " -f f32le - </dev/null");
        EXPECT_NEAR(static_cast<double>(raw.size() / 8), static_cast<double>(work->Frames()), row.delay);
        const std::string told = OutputOf(
            "ffprobe -v error -of flat -show_entries stream=codec_name,sample_rate:stream_tags:format_tags" + path);
        for (const std::string& word : {std::string(row.codec), std::to_string(row.format.sampleRate),
                                        std::string("A \\\"song\\\""), std::string("Née")}) {
            EXPECT_NE(told.find(word), std::string::npos) << word << " in " << told;
        }
        if (row.format.kind != ESoundFormat::kWave) {
            EXPECT_NE(told.find("124 BPM"), std::string::npos) << told;
            continue;
        }
        std::ifstream file(work->Files()[0].path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        const std::size_t chunk = bytes.find("acid");
        ASSERT_NE(chunk, std::string::npos);
        float tempo = 0;
        std::memcpy(&tempo, bytes.data() + chunk + 8 + 20, sizeof tempo);
        EXPECT_EQ(tempo, 124.0F);
    }
    // Half a bar at 124 beats a minute, to the frame; at both rates.
    EXPECT_NEAR(static_cast<double>(exact.size()) / 2, 8 * 44100 * 60 / 4 / 124.0, 16);
}

TEST_F(ExportTest, StemsAddUpAndAloneEachPlaysThroughTheMaster) {
    constexpr std::size_t kInstruments = 11;
    constexpr std::size_t kSends = 3;
    settings.endStep = settings.firstStep + 4;
    song.replace(song.find("MASTER_INSERT1_ON;1"), 19, "MASTER_INSERT1_ON;0");
    settings.format.bits = 32;
    const Samples mix = RunMix();
    settings.stems = true;
    settings.namePattern = "{number} {stem}";
    for (const EStemPoint point : {EStemPoint::kBeforeMaster, EStemPoint::kAfterMaster}) {
        settings.stemPoint = point;
        ASSERT_EQ(Run(), "");
        Samples sum(mix.size());
        for (const ExportFile& file : work->Files()) {
            const Samples stem = Read(file.path);
            ASSERT_EQ(stem.size(), sum.size()) << file.path;
            for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += stem[i];
        }
        const bool isBefore = point == EStemPoint::kBeforeMaster;
        EXPECT_EQ(work->Files().size(), isBefore ? kInstruments + kSends : kInstruments);
        // Alone, effects and master see another sound than in the mix.
        EXPECT_LT(Largest(sum, mix), isBefore ? 1e-6 : 0.3) << isBefore;
    }
    settings.leftOut = {0, 2};
    settings.effectStems = false;
    settings.stemPoint = EStemPoint::kBeforeMaster;
    settings.namePattern = "a/b";
    ASSERT_EQ(Run(), "");
    EXPECT_EQ(work->Files().size(), kInstruments - 2);
    EXPECT_EQ(work->Files()[0].path.filename(), "a_b - Hats & Claps.wav");
}

TEST_F(ExportTest, TheLoudnessIsThatOfTheTargetOrThePeakIsAtItsCeiling) {
    settings.endStep = settings.firstStep + 32;
    settings.format.bits = 24;
    for (const auto& [loudness, ceiling] : {std::pair(-23.0, -1.0), std::pair(-16.0, -3.0), std::pair(-5.0, -1.0)}) {
        settings.loudness = LoudnessTarget{loudness, ceiling};
        ASSERT_EQ(Run(), "");
        const std::string told = OutputOf("ffmpeg -nostats -i '" + work->Files()[0].path.string() +
                                          "' -af ebur128=peak=true -f null - 2>&1 </dev/null");
        const double measured = After(told, "I:");
        const double peak = After(told, "Peak:");
        EXPECT_LE(peak, ceiling + 0.05) << told.substr(told.size() > 600 ? told.size() - 600 : 0);
        const bool isLimited = peak > ceiling - 0.3;
        EXPECT_NEAR(measured, isLimited ? measured : loudness, 0.2);
        EXPECT_LE(measured, loudness + 0.2);
        EXPECT_EQ(FilesThere(), 1U);
    }
}

TEST_F(ExportTest, ACancelledOrFailedExportLeavesWhatWasThere) {
    fs::create_directories(folder);
    std::ofstream(folder / "mine.wav") << "mine";
    settings.namePattern = "mine";
    const auto isUntouched = [&] { return FilesThere() == 1 && fs::file_size(folder / "mine.wav") == 4; };
    for (const bool loudness : {false, true}) {
        if (loudness) settings.loudness = LoudnessTarget{};
        EXPECT_EQ(Run(0.5), "cancelled");
        EXPECT_TRUE(isUntouched());
        EXPECT_EQ(Run(loudness ? 0.9 : 0.5), "cancelled");
        EXPECT_TRUE(isUntouched());
        // A disk that is full after 50 kB.
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{50000, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        EXPECT_NE(Run().find("mine.wav"), std::string::npos);
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        EXPECT_TRUE(isUntouched());
    }
    settings.loudness.reset();
    settings.folder = folder / "mine.wav";
    EXPECT_NE(Run().find("mine.wav"), std::string::npos);
    settings.folder = folder;
    settings.endStep = settings.firstStep;
    EXPECT_EQ(Run(), "there is nothing to play");
    settings.endStep = 528;
    settings.format = {ESoundFormat::kMp3, 96000};
    EXPECT_NE(Run().find("96000"), std::string::npos);
    song = "nonsense";
    settings.format = {};
    EXPECT_NE(Run(), "");
    EXPECT_TRUE(isUntouched());
    EXPECT_EQ(FilesThere(), 1U);
}

}  // namespace
}  // namespace quib
