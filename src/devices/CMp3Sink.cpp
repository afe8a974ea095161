// SPDX-License-Identifier: GPL-3.0-or-later
#include "devices/CMp3Sink.h"

namespace quib {

namespace {

constexpr int kBitRate = 192;  // kbit/s
constexpr int kStereoMode = 0;
// The encoder's own bound for one call: a frame and a quarter byte a sample, and 7200 bytes of reservoir.
constexpr std::size_t kOutputBytes = CMp3Sink::kMaxValues / 2 * 5 / 4 + 7200;

}  // namespace

CMp3Sink::~CMp3Sink() {
    if (stream != nullptr) encoder.close(stream);
}

bool CMp3Sink::Open() {
    const bool rateFits = sampleRate == 32000 || sampleRate == 44100 || sampleRate == 48000;
    if (!rateFits) return file.Fail("an MP3 file takes 32000, 44100 or 48000 Hz, not " + std::to_string(sampleRate));
    if (!Configure()) return file.Fail("the MP3 encoder does not start");
    input.resize(kMaxValues);
    output.resize(kOutputBytes);
    return file.Open();
}

bool CMp3Sink::Configure() {
    stream = encoder.init();
    if (stream == nullptr) return false;
    encoder.setInputRate(stream, sampleRate);
    encoder.setOutputRate(stream, sampleRate);
    encoder.setChannels(stream, 2);
    encoder.setMode(stream, kStereoMode);
    encoder.setBitRate(stream, kBitRate);
    encoder.setPrivateBit(stream, 0);
    encoder.setErrorProtection(stream, 0);
    encoder.setCopyright(stream, 0);
    encoder.setOriginal(stream, 0);
    encoder.setInfoTag(stream, 1);
    return encoder.initParameters(stream) >= 0;
}

bool CMp3Sink::Write(std::span<const std::int16_t> values) {
    // The encoder asks for samples that it may change.
    input.assign(values.begin(), values.end());
    const int frames = static_cast<int>(input.size() / 2);
    return AppendEncoded(encoder.encode(stream, input.data(), frames, output.data(), static_cast<int>(output.size())));
}

// After an error the frame at the start stays as the encoder first wrote it, a silent one: players
// then take the length from the size of the file, which is what reached the disk.
bool CMp3Sink::Close() {
    if (file.Error().empty() && AppendEncoded(encoder.flush(stream, output.data(), static_cast<int>(output.size())))) {
        WriteInfoTag();
    }
    return file.Close();
}

bool CMp3Sink::AppendEncoded(int byteCount) {
    if (byteCount < 0) return file.Fail("the MP3 encoder failed with code " + std::to_string(byteCount));
    return file.Append({output.data(), static_cast<std::size_t>(byteCount)});
}

bool CMp3Sink::WriteInfoTag() {
    const std::size_t tagBytes = encoder.getInfoTag(stream, output.data(), output.size());
    if (tagBytes == 0 || tagBytes > output.size() || tagBytes > file.Size()) return false;
    return file.Overwrite(0, {output.data(), tagBytes});
}

}  // namespace quib
