// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The recorder: takes the master output as 16-bit stereo and writes a Wave file, or an MP3 file when
// the name ends in ".mp3". The render thread pushes values into a ring of sixteen buffers; one other
// thread starts, flushes the full buffers to disk, and stops. The render thread never waits: when the
// disk side falls fifteen buffers behind, the newest buffer is filled over again and its sound lost.

#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "devices/CMp3Encoder.h"
#include "devices/CRecordingSink.h"
#include "devices/CWaveSink.h"
#include "engine/CBlockRecorder.h"

namespace quib {

class CLame : public CBlockRecorder {
public:
    static constexpr int kStarted = 0;
    static constexpr int kFailed = -1;
    static constexpr int kNoEncoder = -2;
    // Frames that an offline render may push between two flushes without losing any.
    static constexpr std::size_t kMaxFramesPerFlush = 16384;

    // What becomes of the last buffer, not yet full, when a recording stops.
    enum class ELastBuffer { kDrop, kWrite };

    // Looks for the MP3 encoder; without it only Wave files can be recorded. A Wave file with
    // `mostBytesOfWave` of sound is full.
    explicit CLame(const std::filesystem::path& encoderLibrary = CMp3Encoder::kLibraryName,
                   std::uint32_t mostBytesOfWave = CWaveSink::kMostSoundBytes);
    ~CLame() override;
    CLame(const CLame&) = delete;
    CLame& operator=(const CLame&) = delete;

    // Render thread: one value, left and right in turn; or whole frames, interleaved. Nothing
    // happens unless a recording runs.
    void PushSample(std::int16_t value) noexcept { PushBlock({&value, 1}); }
    void PushBlock(std::span<const std::int16_t> values) noexcept override;

    // Everything below is for the one thread that controls the recorder.

    bool IsEncoderAvailable() const noexcept { return encoder.IsAvailable(); }

    // Stops what runs and starts anew; `sampleRate` in Hz. kNoEncoder: an MP3 file was asked for and
    // there is no encoder. kFailed: the rate is refused (MP3: 32000, 44100, 48000 Hz only) or the file
    // cannot be written; Error() says why.
    int StartRecording(const std::filesystem::path& path, int sampleRate);

    // Ends the file that runs and goes on at another rate in the next one, with the errors of StartRecording.
    int ContinueRecording(int sampleRate);

    // Where the recording goes now. A file that is full is followed by "name-2.wav" and so on, without a gap.
    const std::filesystem::path& FilePath() const noexcept { return filePath; }

    // Writes every full buffer. On an error the recording stops and Error() says why; the file holds
    // what was written until then.
    void Flush();

    // Writes every full buffer and ends the file; Error() is empty when all of it is on disk.
    void StopRecording(ELastBuffer lastBuffer = ELastBuffer::kDrop);

    bool IsRecording() const noexcept override { return recording.load(std::memory_order_relaxed); }

    // These keep their values after the stop, until the next start; of all files of a recording.
    double Seconds() const noexcept;
    std::uint64_t BytesWritten() const noexcept { return bytesWritten; }
    std::uint64_t FileBytes() const noexcept { return bytesWritten - bytesBefore; }  // of these, in FilePath()
    std::uint64_t DroppedFrames() const noexcept { return droppedValues.load(std::memory_order_relaxed) / 2; }
    // For the display: time and size of the recording, or why there is none or no more of it.
    std::string ProgressText() const;
    const std::string& Error() const noexcept { return error; }

private:
    static constexpr std::size_t kBuffers = 16;

    int StartPart(const std::filesystem::path& path, int sampleRate);
    int OpenSink(const std::filesystem::path& path);
    bool OpenNextFile();
    void BeginPart() noexcept;
    std::filesystem::path NextPath();
    void FinishBuffer() noexcept;
    std::int16_t* Buffer(std::size_t index) noexcept { return ring.data() + index * samplesPerBuffer; }
    bool WriteFullBuffers();
    bool WriteValues(std::span<const std::int16_t> values);
    void KeepRenderThreadOut() noexcept;
    void CloseSink();

    CMp3Encoder encoder;
    std::unique_ptr<CRecordingSink> sink;
    std::string error;
    bool noEncoder = false;
    std::uint32_t mostWaveBytes;
    std::filesystem::path firstPath;
    std::filesystem::path filePath;
    int part = 1;
    int rate = 0;
    std::uint64_t samplesWritten = 0;  // to this file, values of both channels
    std::uint64_t bytesWritten = 0;
    std::uint64_t bytesBefore = 0;  // in the files before this one
    double secondsBefore = 0;

    // Set before `recording` becomes true, and only while the render thread is kept out.
    std::vector<std::int16_t> ring;
    std::size_t samplesPerBuffer = 0;  // values of both channels

    std::atomic<bool> recording{false};
    std::atomic<bool> pushing{false};         // the render thread is inside PushBlock
    std::atomic<std::size_t> writeBuffer{0};  // stored by the render thread while recording
    std::atomic<std::size_t> readBuffer{0};   // stored by the flushing thread
    std::atomic<std::uint64_t> droppedValues{0};
    std::size_t writePos = 0;  // the render thread's while it is inside PushBlock
};

}  // namespace quib
