// SPDX-License-Identifier: GPL-3.0-or-later
#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "platform/CFileBytes.h"
#include "project/midi/MidiFile.h"

namespace quib {

namespace {

enum EMeta : int { kTrackName = 3, kInstrumentName = 4, kMarker = 6, kEndOfTrack = 47, kTempo = 81, kSignature = 88 };

constexpr std::size_t kChunkHead = 8;
constexpr std::size_t kHeaderLength = 6;

// Takes numbers off the front of some bytes; what is not there any more sets a flag and gives 0.
class CByteCursor {
public:
    explicit CByteCursor(std::string_view all) : bytes(all) {}

    bool AtEnd() const noexcept { return place >= bytes.size(); }
    bool IsShort() const noexcept { return isShort; }
    std::size_t Place() const noexcept { return place; }
    std::uint8_t Peek() const noexcept { return AtEnd() ? 0 : static_cast<std::uint8_t>(bytes[place]); }

    std::uint32_t Number(int count) {
        std::uint32_t number = 0;
        for (const char byte : Take(static_cast<std::size_t>(count))) {
            number = number << 8U | static_cast<std::uint8_t>(byte);
        }
        return number;
    }
    // Seven bits a byte, at most four of them.
    std::uint32_t Variable() {
        std::uint32_t number = 0;
        for (int count = 0; count < 4; ++count) {
            const std::uint32_t byte = Number(1);
            number = number << 7U | (byte & 0x7FU);
            if ((byte & 0x80U) == 0) return number;
        }
        isShort = true;
        return 0;
    }
    std::string_view Take(std::size_t count) {
        if (count > bytes.size() - place) {
            isShort = true;
            place = bytes.size();
            return {};
        }
        place += count;
        return bytes.substr(place - count, count);
    }

private:
    std::string_view bytes;
    std::size_t place = 0;
    bool isShort = false;
};

class CMidiReader {
public:
    explicit CMidiReader(std::string_view all) : bytes(all), cursor(all) {}

    bool Run(MidiFile& to, std::string& error) {
        if (bytes.size() > kLongestMidiFile) {
            problem = fmt::format("has {} bytes; at most {} are read", bytes.size(), kLongestMidiFile);
        } else if (ReadHeader() && ReadTracks()) {
            Finish();
            to = std::move(file);
            return true;
        }
        error = "The MIDI file " + problem + '.';
        return false;
    }

private:
    bool Fail(std::string reason) {
        if (problem.empty()) problem = std::move(reason);
        return false;
    }

    bool ReadHeader() {
        if (cursor.Take(4) != "MThd") return Fail("does not begin as one");
        const std::uint32_t length = cursor.Number(4);
        file.format = static_cast<int>(cursor.Number(2));
        promised = cursor.Number(2);
        const std::uint32_t division = cursor.Number(2);
        if (length < kHeaderLength || cursor.IsShort()) return Fail("ends within its header");
        cursor.Take(length - kHeaderLength);
        if (cursor.IsShort()) return Fail("ends within its header");
        if (file.format > 1) return Fail(fmt::format("is of format {}; formats 0 and 1 are read", file.format));
        return SetDivision(division);
    }

    bool SetDivision(std::uint32_t division) {
        file.isTimecode = (division & 0x8000U) != 0;
        if (!file.isTimecode) {
            file.ticksPerQuarter = division;
        } else {
            constexpr double kQuarter = 0.5;  // seconds
            const int frames = 256 - static_cast<int>(division >> 8U);
            const double rate = frames == 29 ? 30000.0 / 1001.0 : frames;
            file.ticksPerQuarter = rate * (division & 0xFFU) * kQuarter;
        }
        return file.ticksPerQuarter > 0 || Fail("has no ticks in a quarter note");
    }

    // Chunks of other kinds are passed over.
    bool ReadTracks() {
        while (bytes.size() - cursor.Place() >= kChunkHead) {
            const bool isTrack = cursor.Take(4) == "MTrk";
            const std::uint32_t length = cursor.Number(4);
            const std::size_t start = cursor.Place();
            const std::string_view chunk = cursor.Take(length);
            if (isTrack && cursor.IsShort()) {
                return Fail(fmt::format("ends within track {}, {} bytes too early", file.tracks.size() + 1,
                                        start + length - bytes.size()));
            }
            if (isTrack && !ReadTrack(chunk, start)) return false;
        }
        if (file.tracks.empty()) return Fail("has no track");
        if (file.tracks.size() < promised) {
            return Fail(fmt::format("has {} of {} tracks", file.tracks.size(), promised));
        }
        return true;
    }

    bool ReadTrack(std::string_view chunk, std::size_t start) {
        CByteCursor from(chunk);
        MidiTrack track;
        std::uint64_t tick = 0;
        std::uint8_t running = 0;
        bool isOver = false;
        while (!isOver && !from.AtEnd()) {
            const std::size_t place = start + from.Place();
            tick += from.Variable();
            if (tick >= std::numeric_limits<std::uint32_t>::max()) return Fail("lasts too long");
            track.end = static_cast<std::uint32_t>(tick);
            isOver = from.IsShort() || !ReadEvent(from, track, running);
            if (from.IsShort()) problem = "is damaged";
            if (!problem.empty()) {
                problem += fmt::format(" in track {} at byte {}", file.tracks.size() + 1, place);
                return false;
            }
        }
        file.tracks.push_back(std::move(track));
        return true;
    }

    // False at the end of the track.
    bool ReadEvent(CByteCursor& from, MidiTrack& track, std::uint8_t& running) {
        const bool isRunning = from.Peek() < 0x80;
        const std::uint8_t status = isRunning ? running : static_cast<std::uint8_t>(from.Number(1));
        if (status == 0xFF) {
            running = 0;
            return ReadMeta(from, track);
        }
        if (status == 0xF0 || status == 0xF7) {
            running = 0;
            from.Take(from.Variable());
            ++file.skipped;
            return true;
        }
        if (status < 0x80 || status > 0xF0) return Fail("has a byte that begins no message");
        running = status;
        const bool isOne = (status & 0xE0U) == 0xC0;  // program and pressure
        const auto first = static_cast<std::uint8_t>(from.Number(1));
        const auto second = static_cast<std::uint8_t>(isOne ? 0 : from.Number(1));
        if (first > 127 || second > 127) return Fail("has a value beyond 127");
        if (++count > kMostMidiEvents) return Fail(fmt::format("has more than {} events", kMostMidiEvents));
        if (!from.IsShort()) track.events.push_back({track.end, status, first, second});
        return true;
    }

    bool ReadMeta(CByteCursor& from, MidiTrack& track) {
        const int kind = static_cast<int>(from.Number(1));
        const std::string_view data = from.Take(from.Variable());
        if (from.IsShort()) return true;
        const std::string text(data.substr(0, kLongestMidiText));
        CByteCursor values(data);
        if (kind == kEndOfTrack) return false;
        if (++count > kMostMidiEvents) return Fail(fmt::format("has more than {} events", kMostMidiEvents));
        if (kind == kTrackName && track.name.empty()) track.name = text;
        if (kind == kInstrumentName && track.instrument.empty()) track.instrument = text;
        if (kind == kMarker && !text.empty()) file.markers.push_back({track.end, text});
        if (kind == kTempo && data.size() >= 3) {
            file.tempos.push_back({track.end, std::max<std::uint32_t>(values.Number(3), 1)});
        }
        if (kind == kSignature && data.size() >= 2) {
            const int beats = std::max<int>(static_cast<int>(values.Number(1)), 1);
            file.signatures.push_back({track.end, beats, 1 << std::min<std::uint32_t>(values.Number(1), 7)});
        }
        return true;
    }

    // Of several at one tick the last one counts.
    template <class Item>
    static void Sort(std::vector<Item>& items) {
        std::stable_sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.tick < b.tick; });
        auto kept = items.begin();
        for (auto item = items.begin(); item != items.end(); ++item) {
            if (kept != items.begin() && std::prev(kept)->tick == item->tick) --kept;
            if (kept != item) *kept = std::move(*item);
            ++kept;
        }
        items.erase(kept, items.end());
    }

    void Finish() {
        if (file.isTimecode) file.tempos.clear();
        Sort(file.tempos);
        Sort(file.signatures);
        Sort(file.markers);
    }

    std::string_view bytes;
    CByteCursor cursor;
    MidiFile file;
    std::string problem;
    std::size_t promised = 0;
    std::size_t count = 0;
};

}  // namespace

bool ReadMidi(std::string_view bytes, MidiFile& file, std::string& error) {
    return CMidiReader(bytes).Run(file, error);
}

bool ReadMidiFile(const std::filesystem::path& path, MidiFile& file, std::string& error) {
    std::error_code failure;
    const auto size = std::filesystem::file_size(path, failure);
    CFileBytes bytes;
    if (!failure && size > kLongestMidiFile) {
        error = fmt::format("\"{}\" has {} bytes; at most {} are read.", path.string(), size, kLongestMidiFile);
        return false;
    }
    if (!bytes.Read(path, error)) return false;
    if (ReadMidi(bytes.View(), file, error)) return true;
    error = path.filename().string() + ": " + error;
    return false;
}

}  // namespace quib
