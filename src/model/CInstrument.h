// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One track: plug-ins, sixteen patterns, channel strip, MIDI input, arpeggiator, automation, presets.
// Settings may be read and written by any thread; structure is published by the editing thread; `play`
// belongs to the render thread. The long list of fields is the track itself: it has no behaviour of
// its own beyond creation.

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/BallSound.h"
#include "model/CEventLanes.h"
#include "model/CPattern.h"
#include "model/CValue.h"
#include "model/ChannelStrip.h"
#include "model/Equalizer.h"
#include "model/FrozenSound.h"
#include "model/InstrumentPlayState.h"
#include "model/Playlist.h"
#include "model/Preset.h"
#include "model/plugin/PluginSlot.h"
#include "model/sharing/CBoundedQueue.h"
#include "model/sharing/CPublished.h"

namespace quib {

// Channel selectors of MIDI input: 0 off, 1 every channel, 2..17 MIDI channels 1..16.
constexpr int kChannelOff = 0;
constexpr int kChannelOmni = 1;
constexpr int kLastChannelSelector = 17;

struct MidiInputSettings {
    CIntegerValue channel{kChannelOff};
    CIntegerValue keyFrom{0};  // lowest key that plays
    CIntegerValue keyTo{127};  // first key above that does not
    CIntegerValue transpose;   // semitones
    CIntegerValue pitchBend{1};
    CIntegerValue modulationWheel{1};
    CIntegerValue aftertouch{1};
    CIntegerValue programChange{1};
    CIntegerValue priority;           // not 0: takes its channel's messages alone
    CIntegerValue limitLearning{-1};  // 0 or 1: the next key becomes the lower or upper limit
};

enum class EArpeggiatorOrder : int { kUpward = 0, kDownward = 1, kUpAndDown = 2, kRandom = 3 };

struct ArpeggiatorSettings {
    CValue on;        // switch
    CValue mode;      // EArpeggiatorOrder
    CValue hole;      // silent slots of the random order
    CValue ext;       // how often each key or pass is repeated higher
    CValue extMode;   // 0 each key, 1 and 2 each pass, 3 random
    CValue velocity;  // randomness
    CValue interval;  // semitones between repetitions
    CValue gateTime;  // note length: a step divided by 2^gateTime
    CValue tempo;     // plays every 2^tempo steps
    CValue latch;     // switch: keys play on when they go up, until the first one of another chord goes down
};

// What follows the end of a pattern when nothing is queued; at most one is on.
enum class EStepNumberMode : int { kLoop = 0, kChain = 1, kRandom = 2, kHold = 3 };

class CInstrument {
public:
    static constexpr std::size_t kMaximumPendingEqUpdates = 100;

    CInstrument();
    CInstrument(const CInstrument&) = delete;
    CInstrument& operator=(const CInstrument&) = delete;

    // Unique in the process; names the instrument in messages between threads.
    std::uint32_t Id() const noexcept { return id; }

    // Any thread.
    ChannelStrip strip;
    MidiInputSettings midi;
    ArpeggiatorSettings arpeggiator;
    CValue swing;  // 0..1: share of a step by which every second step is late; the mode value of files
    std::array<CValue, 3> stepNumberModes;                 // chain, random, hold: at most one is on
    CIntegerValue stepNumber{kDefaultStepCount};           // steps shown and given to new patterns
    CIntegerValue patternSelected;                         // 0..15
    std::array<CIntegerValue, kPatternCount> patternUsed;  // not 0: chain and random may play it
    CSharedSetting<std::uint32_t> heldMix;                 // bit n: the hand is on mix lane n, which plays nothing
    CValue keyboardOn;                                     // on-screen keyboard shown

    // Published by the editing thread, read by the render thread.
    CPublished<PluginSlot> plugin;
    std::array<CPublished<PluginSlot>, kInsertCount> inserts;
    std::array<CPublished<CPattern>, kPatternCount> patterns;
    CPublished<CEventLanes> midiLanes;
    CPublished<CEventLanes> mixLanes;
    CPublished<Playlist> playlist;
    CPublished<BallSoundList> ballSounds;
    CPublished<FrozenSound> frozen;  // no part of the project

    // From the editing thread to the render thread.
    CBoundedQueue<EqBandUpdate> eqPending{kMaximumPendingEqUpdates};

    // Editing thread only.
    double preparedRate = 0;  // hertz; 0 until the engine has made it ready
    std::string title;
    std::int32_t icon = 0;
    std::int32_t keyboardPosition = 36;
    std::int32_t stripColour = 0;                     // 0xRRGGBB + 1 of its strip in the console; 0: the console's own
    bool stripCollapsed = false;                      // its strip is shown small
    bool isFrozen = false;                            // its plug-in rests where there is a take of it
    std::vector<std::int32_t> eventPluginParameters;  // plug-in parameters that have a lane shown
    std::vector<Preset> presets;

    // Render thread only once the instrument is published.
    InstrumentPlayState play;

private:
    std::uint32_t id;
};

// The mode whose switch is on, the last one in order if several are.
EStepNumberMode SelectedStepNumberMode(const CInstrument& instrument) noexcept;
void SelectStepNumberMode(CInstrument& instrument, EStepNumberMode mode) noexcept;

// Editing thread: computes one band of the equaliser from the strip's settings and hands it to the
// render thread. False when too many updates wait already and this one was dropped.
bool UpdateEqualizer(CInstrument& instrument, int band, double sampleRate) noexcept;

// Most instruments that a project has; a file's further ones are left out.
constexpr std::size_t kMaximumInstruments = 1000;

using InstrumentList = std::vector<std::shared_ptr<CInstrument>>;

}  // namespace quib
