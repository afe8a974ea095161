// SPDX-License-Identifier: GPL-3.0-or-later
#include "CTemporaryFolder.h"
#include "Testing.h"
#include "devices/CLame.h"

#include <sys/resource.h>

#include <csignal>

namespace quib {
namespace {

using Values = std::vector<std::int16_t>;
constexpr std::size_t kWaveBuffer = 8192;

// A value for every position, so that a lost, doubled or torn buffer shows.
std::int16_t ValueAt(std::size_t position) { return static_cast<std::int16_t>(position * 40503u >> 3); }

Values Pattern(std::size_t count, std::size_t from = 0) {
    Values values(count);
    for (std::size_t i = 0; i < count; ++i) values[i] = ValueAt(from + i);
    return values;
}

Values Tone(std::size_t frames, double leftHz, int rate) {
    Values values(frames * 2, 0);
    for (std::size_t i = 0; i < frames; ++i) {
        const double phase = 2 * std::numbers::pi * leftHz * static_cast<double>(i) / rate;
        values[2 * i] = static_cast<std::int16_t>(16000 * std::sin(phase));
    }
    return values;
}

std::string OutputOf(const std::string& command) {
    std::string output;
    std::FILE* pipe = popen(command.c_str(), "r");
    char part[4096];
    while (const std::size_t count = std::fread(part, 1, sizeof part, pipe)) output.append(part, count);
    return pclose(pipe) == 0 ? output : "failed: " + command;
}

Values ValuesOf(const std::string& command) {
    const std::string raw = OutputOf(command);
    Values values(raw.size() / 2);
    if (!values.empty()) std::memcpy(values.data(), raw.data(), values.size() * 2);
    return values;
}

// The sound of a file, as interleaved values, read by programs that are not ours.
Values Decode(const std::filesystem::path& path) {
    return ValuesOf("ffmpeg -v error -xerror -i '" + path.string() + "' -f s16le -c:a pcm_s16le - </dev/null");
}
Values DecodeWithSox(const std::filesystem::path& path) {
    return ValuesOf("sox -D '" + path.string() + "' -t raw -e signed -b 16 -");
}

// What follows the head of a Wave file of ours.
Values ValuesIn(const std::filesystem::path& wave) {
    constexpr std::size_t kHead = 46;
    Values values((std::filesystem::file_size(wave) - kHead) / 2);
    std::ifstream file(wave, std::ios::binary);
    file.seekg(kHead).read(reinterpret_cast<char*>(values.data()), static_cast<std::streamsize>(values.size() * 2));
    return values;
}

std::string Probe(const std::filesystem::path& path, const std::string& fields) {
    return OutputOf("ffprobe -v error -of csv=p=0 -show_entries stream=" + fields + " '" + path.string() + "'");
}

double Level(const Values& values, std::size_t channel) {
    double sum = 0;
    for (std::size_t i = channel; i < values.size(); i += 2) sum += 1.0 * values[i] * values[i];
    return std::sqrt(2 * sum / static_cast<double>(values.size()));
}

class CLameTest : public testing::Test {
protected:
    void SetUp() override {
        if (OutputOf("command -v ffmpeg && command -v ffprobe && command -v sox").starts_with("failed"))
            GTEST_SKIP() << "ffmpeg and sox are not installed";
    }
    // Pushes and flushes in turn, as an offline render does.
    void Render(const Values& values, std::size_t framesPerBlock) {
        for (std::size_t i = 0; i < values.size(); i += framesPerBlock * 2) {
            lame.PushBlock(std::span(values).subspan(i, std::min(framesPerBlock * 2, values.size() - i)));
            lame.Flush();
        }
    }

    const CTemporaryFolder temporary;
    const std::filesystem::path& folder = temporary.Path();
    CLame lame;
};

TEST_F(CLameTest, WaveFilesHoldEveryValueOfARenderAtAnyBlockSize) {
    const auto path = folder / "a b.wav";
    const Values values = Pattern(300'002);
    for (const std::size_t block : {std::size_t{1}, std::size_t{333}, CLame::kMaxFramesPerFlush}) {
        ASSERT_EQ(lame.StartRecording(path, 44100), 0);
        Render(values, block);
        lame.StopRecording(CLame::ELastBuffer::kWrite);
        EXPECT_EQ(lame.Error(), "");
        EXPECT_EQ(lame.DroppedFrames(), 0u);
        EXPECT_EQ(ValuesIn(path), values) << block;
        EXPECT_EQ(std::filesystem::file_size(path), 46 + 600'004u);
    }
    EXPECT_EQ(Decode(path), values);
    EXPECT_EQ(DecodeWithSox(path), values);
    EXPECT_NEAR(std::stod(Probe(path, "duration")), 150'001 / 44100.0, 1e-4);
    EXPECT_EQ(Probe(path, "codec_name,sample_rate,channels,bits_per_sample,bit_rate"),
              "pcm_s16le,44100,2,16,1411200\n");
    EXPECT_EQ(lame.ProgressText(), "Time: 3.40s    Size: 0.57Mo");
}

TEST_F(CLameTest, AWaveFileIsRightHoweverShortTheRecording) {
    const auto path = folder / "short.wav";
    const Values three = Pattern(6);
    struct {
        CLame::ELastBuffer lastBuffer;
        Values expected;
    } const cases[] = {{CLame::ELastBuffer::kDrop, {}}, {CLame::ELastBuffer::kWrite, three}};
    for (const auto& [lastBuffer, expected] : cases) {
        ASSERT_EQ(lame.StartRecording(path, 96000), 0);
        for (const std::int16_t value : three) lame.PushSample(value);
        lame.PushSample(1);  // a left value whose right one never comes
        lame.StopRecording(lastBuffer);
        lame.PushBlock(three);  // after the stop: nowhere
        lame.Flush();
        EXPECT_EQ(std::filesystem::file_size(path), 46 + expected.size() * 2);
        EXPECT_EQ(Probe(path, "sample_rate,channels"), "96000,2\n");
        EXPECT_EQ(Decode(path), expected);
    }
}

TEST_F(CLameTest, ARecordingThatNobodyClosesIsPlayableUpToTheLastFlush) {
    const auto path = folder / "live.wav";
    ASSERT_EQ(lame.StartRecording(path, 48000), 0);
    const Values values = Pattern(kWaveBuffer * 2 + 100);
    Render(values, values.size() / 2);
    EXPECT_EQ(Decode(path), Values(values.begin(), values.begin() + kWaveBuffer * 2));
}

TEST_F(CLameTest, AFullFileAndAnotherRateGoOnInTheNextOneWithoutLoss) {
    CLame small(CMp3Encoder::kLibraryName, kWaveBuffer * 2 * 3);
    std::ofstream(folder / "take-2.wav") << "somebody's";
    const Values values = Pattern(kWaveBuffer * 5 + 100);
    ASSERT_EQ(small.StartRecording(folder / "take.wav", 48000), 0);
    small.PushBlock(std::span(values).first(kWaveBuffer * 2));
    small.Flush();
    small.PushBlock(std::span(values).subspan(kWaveBuffer * 2));
    ASSERT_EQ(small.ContinueRecording(44100), 0) << small.Error();
    small.PushBlock(values);
    small.StopRecording(CLame::ELastBuffer::kWrite);
    EXPECT_EQ(small.Error(), "");
    Values whole;
    for (const char* const name : {"take.wav", "take-3.wav"}) {
        const Values part = ValuesIn(folder / name);
        whole.insert(whole.end(), part.begin(), part.end());
    }
    EXPECT_EQ(whole, values);
    EXPECT_EQ(ValuesIn(folder / "take-4.wav").size(), kWaveBuffer * 3);
    EXPECT_EQ(Probe(folder / "take-5.wav", "sample_rate"), "44100\n");
    EXPECT_EQ(small.FilePath(), folder / "take-5.wav");
    EXPECT_EQ(small.BytesWritten(), values.size() * 4);
    EXPECT_NEAR(small.Seconds(), static_cast<double>(values.size()) / 2 * (1 / 48000.0 + 1 / 44100.0), 1e-6);
}

TEST_F(CLameTest, WithoutAFlushFifteenBuffersAreKeptAndTheNewestIsFilledOverAgain) {
    const auto path = folder / "ring.wav";
    ASSERT_EQ(lame.StartRecording(path, 48000), 0);
    lame.PushBlock(Pattern(kWaveBuffer * 18));
    EXPECT_EQ(lame.DroppedFrames(), kWaveBuffer * 3 / 2);
    lame.PushBlock(Pattern(10, kWaveBuffer * 18));
    lame.Flush();  // the flush frees the ring: what comes now is kept
    lame.PushBlock(Pattern(kWaveBuffer - 10, kWaveBuffer * 18 + 10));
    lame.StopRecording();
    Values expected = Pattern(kWaveBuffer * 15);
    const Values last = Pattern(kWaveBuffer, kWaveBuffer * 18);
    expected.insert(expected.end(), last.begin(), last.end());
    EXPECT_EQ(Decode(path), expected);
}

TEST_F(CLameTest, AStartThatFailsSaysWhyAndLeavesExistingFilesAlone) {
    const auto kept = folder / "kept.mp3";
    std::ofstream(kept) << "music";
    CLame deaf("no-such-encoder.so");
    EXPECT_EQ(deaf.StartRecording(kept, 44100), -2);
    EXPECT_FALSE(deaf.IsEncoderAvailable());
    EXPECT_EQ(deaf.ProgressText(), "Cannot open MP3 Encoder !");
    CLame misled("libm.so.6");  // a library, but no encoder
    EXPECT_EQ(misled.StartRecording(kept, 44100), -2);
    if (lame.IsEncoderAvailable()) {
        EXPECT_EQ(lame.StartRecording(kept, 96000), -1);
        EXPECT_NE(lame.Error().find("96000"), std::string::npos) << lame.Error();
    }
    EXPECT_EQ(std::filesystem::file_size(kept), 5u);
    EXPECT_EQ(lame.StartRecording(folder / "none" / "x.wav", 44100), -1);
    EXPECT_NE(lame.Error().find("none/x.wav\": No such file"), std::string::npos) << lame.Error();
    EXPECT_EQ(lame.ProgressText(), "Error !");
    EXPECT_EQ(lame.StartRecording("/dev/full", 44100), -1);
    EXPECT_NE(lame.Error().find("No space left"), std::string::npos) << lame.Error();
    EXPECT_FALSE(lame.IsRecording());
}

// Lets files of this process grow to `bytes`, as a full disk would.
class CDiskLimit {
public:
    explicit CDiskLimit(rlim_t bytes) : previousHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &previous);
        const rlimit limit{bytes, previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CDiskLimit() {
        setrlimit(RLIMIT_FSIZE, &previous);
        std::signal(SIGXFSZ, previousHandler);
    }

private:
    void (*previousHandler)(int);
    rlimit previous{};
};

TEST_F(CLameTest, AFullDiskStopsTheRecordingAndLeavesAPlayableFile) {
    const auto path = folder / "full.wav";
    const Values values = Pattern(kWaveBuffer * 4);
    {
        const CDiskLimit limit(50'001);
        ASSERT_EQ(lame.StartRecording(path, 44100), 0);
        Render(values, kWaveBuffer / 2);
    }
    EXPECT_FALSE(lame.IsRecording());
    EXPECT_NE(lame.Error().find(path.string() + "\": File too large"), std::string::npos) << lame.Error();
    lame.StopRecording();
    EXPECT_NE(lame.Error(), "") << "a stop forgot the error";
    EXPECT_EQ(lame.ProgressText(), "Error !");
    EXPECT_EQ(lame.BytesWritten(), 49'952u);  // whole frames after a head of 46
    EXPECT_EQ(Decode(path), Values(values.begin(), values.begin() + 49'952 / 2));
}

TEST_F(CLameTest, Mp3FilesHaveTheLengthAndTheSoundOfTheRecording) {
    if (!lame.IsEncoderAvailable()) GTEST_SKIP() << "libmp3lame is not installed";
    for (const int rate : {32000, 44100, 48000}) {
        const auto path = folder / "tone.MP3";
        const std::size_t frames = static_cast<std::size_t>(rate) / 2 + 77;
        const Values tone = Tone(frames, 1000, rate);
        ASSERT_EQ(lame.StartRecording(path, rate), 0) << lame.Error();
        Render(tone, CLame::kMaxFramesPerFlush);
        lame.StopRecording(CLame::ELastBuffer::kWrite);
        EXPECT_EQ(lame.Error(), "");
        EXPECT_EQ(lame.BytesWritten(), std::filesystem::file_size(path));
        EXPECT_EQ(Probe(path, "codec_name,sample_rate,channels,bit_rate"),
                  "mp3," + std::to_string(rate) + ",2,192000\n");
        // What the encoder puts before the sound is skipped by players; they call it the start.
        const double length = std::stod(Probe(path, "duration")) - std::stod(Probe(path, "start_time"));
        EXPECT_NEAR(length, static_cast<double>(frames) / rate, 1152.0 / rate);
        const Values decoded = Decode(path);
        EXPECT_EQ(decoded.size(), frames * 2);
        EXPECT_NEAR(20 * std::log10(Level(decoded, 0) / Level(tone, 0)), 0, 0.5);  // decibels
        EXPECT_LT(Level(decoded, 1), 1.0);
    }
}

TEST_F(CLameTest, Mp3FilesSurviveAFullDiskAndAnEmptyRecording) {
    if (!lame.IsEncoderAvailable()) GTEST_SKIP() << "libmp3lame is not installed";
    const auto path = folder / "full.mp3";
    {
        const CDiskLimit limit(24'000);
        ASSERT_EQ(lame.StartRecording(path, 48000), 0);
        Render(Tone(96000, 440, 48000), 480);
    }
    EXPECT_FALSE(lame.IsRecording());
    EXPECT_NE(lame.Error(), "");
    EXPECT_NEAR(std::stod(Probe(path, "duration")), 1.0, 0.05);  // 24,000 bytes at 192 kbit/s
    ASSERT_EQ(lame.StartRecording(path, 48000), 0);
    lame.StopRecording();
    EXPECT_EQ(lame.Error(), "");
}

TEST_F(CLameTest, ARecordingDrivenFromTwoThreadsHoldsWholeBuffersInOrder) {
    // Every frame of a block carries the number of the block, so that a torn, stale or repeated
    // buffer shows; a buffer left out, the ring being full, is allowed.
    constexpr std::size_t kBlock = 512;
    std::atomic<bool> done{false};
    std::thread render([&] {
        for (std::int32_t number = 1; !done; ++number) {
            std::array<std::int32_t, kBlock / 2> frames;
            frames.fill(number);
            lame.PushBlock(std::bit_cast<std::array<std::int16_t, kBlock>>(frames));
        }
    });
    for (int recording = 0; recording < 5; ++recording) {
        const auto path = folder / "threads.wav";
        EXPECT_EQ(lame.StartRecording(path, 48000), 0) << lame.Error();
        while (lame.IsRecording() && lame.BytesWritten() < 40 * kWaveBuffer * 2) lame.Flush();
        lame.StopRecording(CLame::ELastBuffer::kWrite);
        const Values values = ValuesIn(path);
        EXPECT_EQ(values.size() * 2, lame.BytesWritten());
        std::int32_t previous = 0;
        std::size_t wrong = 0;
        for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
            const auto number = std::bit_cast<std::int32_t>(std::array{values[i], values[i + 1]});
            const bool afterDrop = i % kWaveBuffer == 0 && number > previous;
            wrong += !afterDrop && number != previous + (i % kBlock == 0 ? 1 : 0);
            previous = number;
        }
        EXPECT_EQ(wrong, 0u);
    }
    done = true;
    render.join();
}

}  // namespace
}  // namespace quib
