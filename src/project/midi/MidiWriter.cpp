// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <bit>
#include <cmath>

#include "project/midi/MidiFile.h"

namespace quib {

namespace {

void PutNumber(std::string& to, std::uint32_t number, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) to += static_cast<char>(number >> shift & 0xFFU);
}

void PutVariable(std::string& to, std::uint32_t number) {
    for (int shift = 21; shift > 0; shift -= 7) {
        if (number >> shift != 0) to += static_cast<char>((number >> shift & 0x7FU) | 0x80U);
    }
    to += static_cast<char>(number & 0x7FU);
}

// The bytes of one track, message after message.
class CTrackBytes {
public:
    void PutEvent(const MidiEvent& event) {
        PutTime(event.tick);
        if (event.status != running) bytes += static_cast<char>(event.status);
        running = event.status;
        bytes += static_cast<char>(event.first);
        if ((event.status & 0xE0U) != 0xC0) bytes += static_cast<char>(event.second);
    }
    void PutMeta(std::uint32_t tick, char kind, const std::string& data) {
        PutTime(tick);
        bytes += '\xFF';
        bytes += kind;
        PutVariable(bytes, static_cast<std::uint32_t>(data.size()));
        bytes += data;
        running = 0;
    }
    const std::string& Bytes() const noexcept { return bytes; }

private:
    // A time beyond what one number holds is reached by empty texts on the way.
    void PutTime(std::uint32_t tick) {
        constexpr std::uint32_t kLongestWait = (1U << 28U) - 1;
        while (tick > last && tick - last > kLongestWait) {
            PutVariable(bytes, kLongestWait);
            bytes += std::string("\xFF\x01\x00", 3);
            running = 0;
            last += kLongestWait;
        }
        PutVariable(bytes, tick > last ? tick - last : 0);
        last = std::max(last, tick);
    }

    std::string bytes;
    std::uint32_t last = 0;
    std::uint8_t running = 0;
};

struct Meta {
    std::uint32_t tick;
    char kind;
    std::string data;
};

std::vector<Meta> SongMetas(const MidiFile& file) {
    std::vector<Meta> metas;
    for (const MidiTempo& tempo : file.tempos) {
        PutNumber(metas.emplace_back(Meta{tempo.tick, 81, {}}).data, tempo.microseconds, 3);
    }
    for (const MidiSignature& signature : file.signatures) {
        std::string& data = metas.emplace_back(Meta{signature.tick, 88, {}}).data;
        PutNumber(data, static_cast<std::uint32_t>(signature.beats), 1);
        PutNumber(data, static_cast<std::uint32_t>(std::countr_zero(static_cast<unsigned>(signature.unit))), 1);
        data += "\x18\x08";  // clocks of a beat, 32nds of a quarter
    }
    for (const MidiMarker& marker : file.markers) metas.push_back({marker.tick, 6, marker.name});
    std::stable_sort(metas.begin(), metas.end(), [](const Meta& a, const Meta& b) { return a.tick < b.tick; });
    return metas;
}

std::string TrackBytes(const MidiTrack& track, const std::vector<Meta>& metas) {
    CTrackBytes to;
    if (!track.name.empty()) to.PutMeta(0, 3, track.name);
    if (!track.instrument.empty()) to.PutMeta(0, 4, track.instrument);
    auto meta = metas.begin();
    const auto putMetas = [&](std::uint32_t until) {
        for (; meta != metas.end() && meta->tick <= until; ++meta) to.PutMeta(meta->tick, meta->kind, meta->data);
    };
    std::uint32_t end = track.end;
    for (const MidiEvent& event : track.events) {
        putMetas(event.tick);
        to.PutEvent(event);
        end = std::max(end, event.tick);
    }
    if (!metas.empty()) end = std::max(end, metas.back().tick);
    putMetas(end);
    to.PutMeta(end, 47, {});
    return to.Bytes();
}

}  // namespace

std::string WriteMidi(const MidiFile& file) {
    std::string bytes = "MThd";
    PutNumber(bytes, 6, 4);
    PutNumber(bytes, file.format == 0 && file.tracks.size() == 1 ? 0 : 1, 2);
    PutNumber(bytes, static_cast<std::uint32_t>(file.tracks.size()), 2);
    PutNumber(bytes, static_cast<std::uint32_t>(std::clamp(std::lround(file.ticksPerQuarter), 1L, 32767L)), 2);
    std::vector<Meta> metas = SongMetas(file);
    for (const MidiTrack& track : file.tracks) {
        const std::string data = TrackBytes(track, metas);
        metas.clear();
        bytes += "MTrk";
        PutNumber(bytes, static_cast<std::uint32_t>(data.size()), 4);
        bytes += data;
    }
    return bytes;
}

}  // namespace quib
