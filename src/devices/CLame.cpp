// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CLame.h"

#include <fmt/format.h>

#include <algorithm>
#include <thread>

#include "devices/CMp3Sink.h"
#include "devices/CWaveSink.h"

namespace quib {

namespace {

constexpr std::size_t kWaveSamplesPerBuffer = 8192;
constexpr std::size_t kMp3SamplesPerBuffer = CMp3Sink::kMaxValues;
constexpr double kBytesPerMegabyte = 1048576.0;

bool IsMp3(const std::filesystem::path& path) {
    std::string name = path.filename().string();
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return name.ends_with(".mp3");
}

}  // namespace

CLame::CLame(const std::filesystem::path& encoderLibrary, std::uint32_t mostBytesOfWave)
    : mostWaveBytes(mostBytesOfWave) {
    std::string reason;
    encoder.Load(encoderLibrary, reason);
}

CLame::~CLame() { StopRecording(); }

// Sequentially consistent on both sides: either this sees the recording as stopped, or the stopping
// thread sees `pushing` and waits the few microseconds of a copy.
void CLame::PushBlock(std::span<const std::int16_t> values) noexcept {
    pushing.store(true);
    if (recording.load()) {
        while (!values.empty()) {
            const std::size_t count = std::min(values.size(), samplesPerBuffer - writePos);
            std::copy_n(values.begin(), count, Buffer(writeBuffer.load(std::memory_order_relaxed)) + writePos);
            writePos += count;
            if (writePos == samplesPerBuffer) FinishBuffer();
            values = values.subspan(count);
        }
    }
    pushing.store(false, std::memory_order_release);
}

void CLame::FinishBuffer() noexcept {
    writePos = 0;
    const std::size_t next = (writeBuffer.load(std::memory_order_relaxed) + 1) % kBuffers;
    if (next != readBuffer.load(std::memory_order_acquire)) {
        writeBuffer.store(next, std::memory_order_release);
    } else {
        droppedValues.fetch_add(samplesPerBuffer, std::memory_order_relaxed);
    }
}

int CLame::StartRecording(const std::filesystem::path& path, int sampleRate) {
    static_assert(kMaxFramesPerFlush * 2 <= std::min(kWaveSamplesPerBuffer, kMp3SamplesPerBuffer) * (kBuffers - 2));
    StopRecording();
    error.clear();
    noEncoder = false;
    secondsBefore = 0;
    samplesWritten = bytesBefore = bytesWritten = 0;
    droppedValues = 0;
    firstPath = path;
    part = 1;
    return StartPart(path, sampleRate);
}

int CLame::ContinueRecording(int sampleRate) {
    if (!IsRecording()) return kFailed;
    StopRecording(ELastBuffer::kWrite);
    if (!error.empty()) return kFailed;
    BeginPart();
    return StartPart(NextPath(), sampleRate);
}

int CLame::StartPart(const std::filesystem::path& path, int sampleRate) {
    rate = sampleRate;
    if (const int result = OpenSink(path); result != kStarted) return result;
    ring.resize(kBuffers * samplesPerBuffer);
    writeBuffer = readBuffer = writePos = 0;
    recording = true;
    return kStarted;
}

// What was written until now counts on.
void CLame::BeginPart() noexcept {
    secondsBefore = Seconds();
    bytesBefore = bytesWritten;
    samplesWritten = 0;
}

std::filesystem::path CLame::NextPath() {
    std::filesystem::path next;
    std::error_code unknown;
    do {
        const std::string name = firstPath.stem().string() + '-' + std::to_string(++part);
        next = firstPath.parent_path() / (name + firstPath.extension().string());
    } while (std::filesystem::exists(next, unknown));
    return next;
}

int CLame::OpenSink(const std::filesystem::path& path) {
    filePath = path;
    if (IsMp3(path)) {
        if (!encoder.IsAvailable()) {
            noEncoder = true;
            error = fmt::format("Cannot write \"{}\": there is no MP3 encoder", path.string());
            return kNoEncoder;
        }
        samplesPerBuffer = kMp3SamplesPerBuffer;
        sink = std::make_unique<CMp3Sink>(path, rate, encoder);
    } else {
        samplesPerBuffer = kWaveSamplesPerBuffer;
        sink = std::make_unique<CWaveSink>(path, rate, mostWaveBytes);
    }
    if (sink->Open()) return kStarted;
    error = sink->Error();
    sink.reset();
    return kFailed;
}

void CLame::Flush() {
    if (sink == nullptr) return;
    const std::uint64_t before = samplesWritten;
    if (!WriteFullBuffers() || (samplesWritten != before && !sink->Settle())) CloseSink();
}

// The buffers full at the call, not those filled meanwhile: a fast render cannot hold the flush forever.
bool CLame::WriteFullBuffers() {
    std::size_t read = readBuffer.load(std::memory_order_relaxed);
    const std::size_t end = writeBuffer.load(std::memory_order_acquire);
    while (read != end) {
        if (!WriteValues({Buffer(read), samplesPerBuffer})) return false;
        read = (read + 1) % kBuffers;
        readBuffer.store(read, std::memory_order_release);
    }
    return true;
}

bool CLame::WriteValues(std::span<const std::int16_t> values) {
    if (!sink->HasRoomFor(values.size()) && !OpenNextFile()) return false;
    const bool written = sink->Write(values);
    if (written) samplesWritten += values.size();
    bytesWritten = bytesBefore + sink->BytesWritten();
    return written;
}

// The render thread goes on filling the ring.
bool CLame::OpenNextFile() {
    sink->Close();
    error = sink->Error();
    if (!error.empty()) return false;
    BeginPart();
    return OpenSink(NextPath()) == kStarted;
}

void CLame::StopRecording(ELastBuffer lastBuffer) {
    if (sink == nullptr) return;
    KeepRenderThreadOut();
    const std::size_t wholeFrames = writePos - writePos % 2;
    if (WriteFullBuffers() && lastBuffer == ELastBuffer::kWrite && wholeFrames > 0) {
        WriteValues({Buffer(writeBuffer.load(std::memory_order_relaxed)), wholeFrames});
    }
    CloseSink();
}

void CLame::KeepRenderThreadOut() noexcept {
    recording.store(false);
    while (pushing.load()) std::this_thread::yield();
}

void CLame::CloseSink() {
    KeepRenderThreadOut();
    if (sink == nullptr) return;  // the next file could not be opened
    sink->Close();
    bytesWritten = bytesBefore + sink->BytesWritten();
    error = sink->Error();
    sink.reset();
}

double CLame::Seconds() const noexcept {
    return secondsBefore + (rate > 0 ? static_cast<double>(samplesWritten) / (2.0 * rate) : 0.0);
}

std::string CLame::ProgressText() const {
    if (noEncoder) return "Cannot open MP3 Encoder !";
    if (!error.empty()) return "Error !";
    return fmt::format("Time: {:.2f}s    Size: {:.2f}Mo", Seconds(),
                       static_cast<double>(bytesWritten) / kBytesPerMegabyte);
}

}  // namespace quib
