// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What playing changes in an instrument: steps, sounding notes, held keys, arpeggiator, balls, filter
// memories. Render thread only from the moment the instrument is published; edits never touch it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "model/CPattern.h"
#include "model/MidiEvents.h"
#include "model/MixLanes.h"
#include "model/StripState.h"
#include "platform/CAudioPlanes.h"

namespace quib {

// A list in memory taken once: adding to a full one is refused and counted.
template <class T>
class CFixedList {
public:
    explicit CFixedList(std::size_t capacity) { items.reserve(capacity); }

    bool Add(const T& item) noexcept {
        if (items.size() == items.capacity()) {
            ++refused;
            return false;
        }
        items.push_back(item);
        return true;
    }
    std::vector<T>& Items() noexcept { return items; }
    const std::vector<T>& Items() const noexcept { return items; }
    std::size_t Refused() const noexcept { return refused; }

private:
    std::vector<T> items;
    std::size_t refused = 0;
};

// A note event that waits for its sample.
struct PendingNote {
    std::int32_t pitch;
    std::int32_t velocity;  // 0: note off
    std::int64_t delay;     // samples after the start of the current block
};

struct ArpeggiatorState {
    int countdown = 0;
    int index = 0;
    int repetition = 0;
    int pass = 0;
    bool upward = true;
    bool begun = false;  // index and direction are those of the order for the held keys
};

// What an instrument plays in one step of the block.
struct PatternStep {
    std::int32_t pattern = 0;
    std::int32_t step = -1;  // -1 none
};

// A place that a ball has jumped to by itself.
struct BallMove {
    std::uint32_t step;  // of the block's steps: it counts from the start of that one
    std::uint8_t ball;
    std::uint8_t axis;  // 0 horizontal, 1 vertical
    float place;        // 0..127
};

// Who plays live.
enum class ELiveSource : std::uint8_t { kMidiInput, kDeviceMidi, kWindows, kAudition };

struct LiveOrigin {
    ELiveSource source = ELiveSource::kWindows;
    std::uint8_t channel = 0;  // 0..15
    std::int16_t key = 0;      // 0..127, as it was struck; kPedalKey: the sustain pedal

    friend bool operator==(const LiveOrigin&, const LiveOrigin&) = default;
};
constexpr std::int16_t kPedalKey = 128;
constexpr int kPedalDown = 64;  // from this value on notes are held

// What a key or a pedal that is down became.
struct LiveKey {
    LiveOrigin origin;
    std::int16_t sent = -1;  // key that the plug-in got; -1: none
    std::uint8_t pedal = 0;  // 1..127: it is a pedal
    bool listed = false;     // it stands among the held keys
    bool rings = false;      // it is up, but the pedal holds its note
};

// What is played from a take that was rendered in advance.
struct FrozenPlay {
    std::int64_t next = -1;                  // frame of the take behind what was played last; -1: nothing was
    int keyFrames = 0;                       // for which the plug-in is still rendered, since keys were struck
    std::array<std::uint8_t, 128> struck{};  // velocities of the song's notes that sound
};

class CPlugin;

struct InstrumentPlayState {
    static constexpr std::size_t kMaximumPendingNotes = 4096;
    static constexpr std::size_t kMaximumHeldKeys = 256;
    static constexpr std::size_t kMaximumLiveKeys = 512;
    static constexpr std::size_t kMaximumBalls = 64;
    static constexpr std::size_t kMaximumBlockSteps = 128;

    int currentPattern = 0;  // -1 none
    int nextPattern = -1;    // -1 nothing queued
    int currentStep = -1;    // -1 stopped
    int restartStep = -1;    // -1 no restart pending
    int songEntry = -1;      // index into the playlist, -1 none
    std::uint32_t run = 0;   // of the transport, that it last took part in,
    std::int32_t ran = 0;    // and the steps that had run by then

    std::uint32_t midiCount = 0;  // live messages taken

    ArpeggiatorState arpeggiator;
    CFixedList<std::int32_t> heldKeys{kMaximumHeldKeys};
    bool latched = false;  // some of them are up
    CFixedList<LiveKey> liveKeys{kMaximumLiveKeys};
    CFixedList<PendingNote> pendingNotes{kMaximumPendingNotes};
    CFixedList<PatternStep> blockSteps{kMaximumBlockSteps};  // beside the block's own list
    CFixedList<BallMove> ballMoves{kMaximumBlockSteps};      // of the block
    CFixedList<BlockEvent> blockEvents{kMaximumBlockEvents};
    CFixedList<LiveEvent> liveEvents{kMaximumBlockEvents};
    std::array<std::array<float, 2>, kMaximumBalls> balls{};  // x and y, 0..127

    StripState strip;
    std::unique_ptr<CAudioPlanes> planes;  // what the strip writes; made for the block size of the engine
    bool known = false;                    // has been in a block before
    int stripSilence = -1;                 // how many frames without sound its strip took last; -1: none at all yet
    std::uint64_t lastBlock = 0;           // number of the last block that it was in,
    const CPlugin* heardBy = nullptr;      // and its plug-in there: compared, never followed
    FrozenPlay frozen;

    // The value that automation gave each lane last; NaN: none since the transport started.
    std::array<float, kMixLaneCount> lastMixValue{};
    std::array<float, kMidiLaneCount> lastMidiValue{};

    InstrumentPlayState() { ForgetAutomation(); }
    void ForgetAutomation() noexcept {
        lastMixValue.fill(std::numeric_limits<float>::quiet_NaN());
        lastMidiValue.fill(std::numeric_limits<float>::quiet_NaN());
    }
};

}  // namespace quib
