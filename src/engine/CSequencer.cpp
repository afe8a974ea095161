// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CSequencer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/Arpeggiator.h"
#include "engine/ParameterChange.h"
#include "model/PlaylistSpans.h"

namespace quib {

namespace {

// Later than any block ends; keeps sums far from overflow.
constexpr double kFarthestDelay = 1e15;

const CPattern* CurrentPattern(const CInstrument& instrument) noexcept {
    const int index = instrument.play.currentPattern;
    if (index < 0 || index >= kPatternCount) return nullptr;
    return &instrument.patterns[static_cast<std::size_t>(index)].ForRender();
}

int LoopLength(const CInstrument& instrument) noexcept {
    const CPattern* const pattern = CurrentPattern(instrument);
    return pattern != nullptr ? pattern->LoopLength() : 1;
}

bool IsUsed(const CInstrument& instrument, int pattern) noexcept {
    return instrument.patternUsed[static_cast<std::size_t>(pattern)].IsOn();
}

bool TakesPartInSynchro(const CInstrument& instrument, const EngineSettings& settings) noexcept {
    return (settings.synchroOn.IsOn() || instrument.strip.synchro.IsOn()) && CurrentPattern(instrument) != nullptr;
}

// True when the longest synchronised pattern ends at this boundary.
bool SynchroEnds(const BlockContext& block, const EngineSettings& settings) noexcept {
    const CInstrument* master = nullptr;
    for (const BlockInstrument& entry : block.instruments) {
        const CInstrument& instrument = *entry.instrument;
        if (instrument.play.restartStep >= 0) return false;
        // One that stands still joins at the end of the others; it can't lead them there.
        if (instrument.play.currentStep < 0 || !TakesPartInSynchro(instrument, settings)) continue;
        if (master == nullptr || LoopLength(instrument) > LoopLength(*master)) master = &instrument;
    }
    return master != nullptr && master->play.currentStep + 1 >= LoopLength(*master);
}

bool AtBeat(const BlockContext& block, int stepsPerBeat) noexcept {
    int highest = -1;
    for (const BlockInstrument& entry : block.instruments) {
        highest = std::max(highest, entry.instrument->play.currentStep);
    }
    return (highest + 1) % std::max(stepsPerBeat, 1) == 0 || highest + 1 == 1;
}

std::int64_t Delay(double samples) noexcept {
    return static_cast<std::int64_t>(std::clamp(samples, 0.0, kFarthestDelay));
}

// Tempo of a step: that of the song's automation where it has one.
float TempoOf(const BlockContext& block, const EngineSettings& settings, int step) noexcept {
    const PointList* const points =
        block.songMode ? block.masterLanes->Find(CEventLanes::kSongSlot, kTempoLane) : nullptr;
    if (points == nullptr) return SafeTempo(settings);
    const LaneDescription& lane = MasterLanes()[kTempoLane];
    const auto tempo = ValueAt(*points, static_cast<float>(step), lane.kind);
    return tempo ? std::clamp(*tempo, lane.minimum, lane.maximum) : SafeTempo(settings);
}

// Notes the step under way as one of the block's.
void LogStep(BlockContext& block, const CTransport& transport, int frame, bool jumps) noexcept {
    block.grid.AddStep(
        {frame, transport.stepSamples, transport.soundingStep, transport.samplesPerStep, transport.tempo, jumps});
    for (const BlockInstrument& entry : block.instruments) {
        InstrumentPlayState& play = entry.instrument->play;
        play.blockSteps.Add({play.currentPattern, play.currentStep});
    }
}

// Gives an instrument the events of its waiting notes that fall into the block.
void DeliverNotes(InstrumentPlayState& play, int frames) noexcept {
    std::vector<PendingNote>& notes = play.pendingNotes.Items();
    auto kept = notes.begin();
    for (PendingNote& note : notes) {
        const bool due = note.delay < frames;
        const bool off = note.velocity == 0;
        if (due && play.blockEvents.Add(
                       {static_cast<std::uint8_t>(off ? kNoteOff : kNoteOn), static_cast<std::uint8_t>(note.pitch),
                        static_cast<std::uint8_t>(note.velocity), static_cast<std::int32_t>(note.delay)})) {
            continue;
        }
        if (due && !off) continue;  // no room for it: dropped, its note off does no harm
        note.delay = due ? 0 : note.delay - frames;
        *kept++ = note;
    }
    notes.erase(kept, notes.end());
}

// Ends the sounding notes of one instrument at frame `offset`; notes due before it are still played,
// later ones are forgotten with their ends.
void CutNotes(InstrumentPlayState& play, int offset) noexcept {
    bool forgetEnd = false;
    for (const PendingNote& note : play.pendingNotes.Items()) {
        const bool off = note.velocity == 0;
        const bool forget = off ? forgetEnd : note.delay >= offset;
        forgetEnd = forget && !off;  // the end of a note stands right behind its beginning
        if (forget) continue;
        play.blockEvents.Add({static_cast<std::uint8_t>(off ? kNoteOff : kNoteOn),
                              static_cast<std::uint8_t>(note.pitch), static_cast<std::uint8_t>(note.velocity),
                              static_cast<std::int32_t>(std::min<std::int64_t>(note.delay, offset))});
    }
    play.pendingNotes.Items().clear();
}

}  // namespace

void CSequencer::Advance(BlockContext& block, const EngineSettings& settings, CTransport& transport) noexcept {
    if (!transport.playing) return;
    const bool begun = transport.sampleCounter >= 0;  // not within this block
    transport.sampleCounter += block.frames;
    if (transport.samplesToNextStep > 0 && begun)
        LogStep(block, transport, transport.samplesToNextStep - transport.stepSamples, false);
    while (transport.samplesToNextStep < block.frames) {
        if (transport.stopStep >= 0 && transport.NextStep(block.songMode) >= transport.stopStep) {
            block.grid.SetPoints(transport.samplesToNextStep);
            transport.endedAt = transport.sampleCounter - block.frames + transport.samplesToNextStep;
            return Stop(block, transport, transport.samplesToNextStep);
        }
        RunStep(block, settings, transport);
        transport.samplesToNextStep += transport.stepSamples;
    }
    transport.samplesToNextStep -= block.frames;
    block.grid.SetPoints(block.frames);
    for (const BlockInstrument& entry : block.instruments) DeliverNotes(entry.instrument->play, block.frames);
}

void CSequencer::RunStep(BlockContext& block, const EngineSettings& settings, CTransport& transport) noexcept {
    const int offset = transport.samplesToNextStep;
    if (transport.loopJumped) ReleaseNotes(block, offset);
    transport.loopJumped = false;
    const int step = transport.NextStep(block.songMode);
    const bool jumps = step != transport.soundingStep + 1;
    transport.soundingStep = step;
    ++transport.ran;
    transport.SetTempo(block.sampleRate, settings.stepsPerBeat.Get(), TempoOf(block, settings, step));

    const int launchSteps = LaunchSteps(settings);
    const Boundary boundary{AtBeat(block, settings.stepsPerBeat.Get()), !block.songMode && SynchroEnds(block, settings),
                            launchSteps > 0 && !transport.launchHeld && step % launchSteps == 0, launchSteps == 0};
    transport.maxStepCount = 1;
    for (BlockInstrument& entry : block.instruments) {
        CInstrument& instrument = *entry.instrument;
        if (block.songMode) {
            FollowPlaylist(instrument, step);
        } else {
            AdvancePattern(instrument, boundary, boundary.synchroEnds && TakesPartInSynchro(instrument, settings));
        }
        RunInstrument(entry, block, transport);
        if (instrument.play.currentStep >= 0)
            transport.maxStepCount = std::max(transport.maxStepCount, LoopLength(instrument) + 1);
    }
    LogStep(block, transport, offset, jumps);
    transport.stepTime =
        block.now + static_cast<std::uint64_t>((offset + block.frames * 0.005) * 1e9 / block.sampleRate);

    if (!block.songMode) return;
    ++transport.globalStep;
    if (HasLoop(settings) && transport.globalStep >= settings.loopEnd.Get()) {
        // The last step of the loop still plays; its notes end where the first one begins.
        transport.loopJumped = true;
        transport.globalStep = std::max(0, settings.loopStart.Get());
    }
}

void CSequencer::RunInstrument(BlockInstrument& entry, const BlockContext& block,
                               const CTransport& transport) noexcept {
    CInstrument& instrument = *entry.instrument;
    const int offset = transport.samplesToNextStep;
    instrument.play.ran = transport.ran;
    if (instrument.play.currentStep >= 0) {
        ScheduleStepNotes(instrument, offset, transport.stepSamples);
        EvolveBalls(entry, block);
    }
    if (instrument.arpeggiator.on.IsOn()) RunArpeggiator(instrument, offset, transport.stepSamples, random);
}

void FollowPlaylist(CInstrument& instrument, int globalStep) noexcept {
    const Playlist& playlist = instrument.playlist.ForRender();
    const SongPlace place = PlaylistPlaceAt(playlist, PatternLengthsForRender(instrument), globalStep);
    InstrumentPlayState& play = instrument.play;
    play.songEntry = place.entry;
    play.currentStep = place.step;
    if (place.entry >= 0) play.currentPattern = playlist[static_cast<std::size_t>(place.entry)].pattern;
}

void CSequencer::AdvancePattern(CInstrument& instrument, const Boundary& boundary, bool forceEnd) noexcept {
    InstrumentPlayState& play = instrument.play;
    if (boundary.launches && play.nextPattern >= 0) {
        // The waiting pattern begins from its start, wherever the one before is.
        play.restartStep = -1;
        return EndPattern(instrument, true);
    }
    if (forceEnd) {
        play.currentStep = LoopLength(instrument);
    } else if (play.restartStep >= 0 && boundary.atBeat) {
        play.currentStep = std::exchange(play.restartStep, -1);
    } else if (play.currentStep >= 0) {
        ++play.currentStep;
    }
    if (play.currentStep >= LoopLength(instrument)) EndPattern(instrument, boundary.launchesAtEnd);
}

void CSequencer::EndPattern(CInstrument& instrument, bool launches) noexcept {
    InstrumentPlayState& play = instrument.play;
    const EStepNumberMode mode = SelectedStepNumberMode(instrument);
    if (launches && play.nextPattern >= 0) {
        play.currentPattern = std::exchange(play.nextPattern, -1);
    } else if (mode == EStepNumberMode::kChain) {
        for (int distance = 1; distance <= kPatternCount; ++distance) {
            const int candidate = (play.currentPattern + distance) % kPatternCount;
            if (!IsUsed(instrument, candidate)) continue;
            play.currentPattern = candidate;
            break;
        }
    } else if (mode == EStepNumberMode::kRandom) {
        for (int draw = 0; draw < kPatternCount; ++draw) {
            const int candidate = random.Draw() * kPatternCount / CRandom::kRange;
            if (!IsUsed(instrument, candidate)) continue;
            play.currentPattern = candidate;
            break;
        }
    }
    const CPattern* const pattern = CurrentPattern(instrument);
    play.currentStep = pattern != nullptr ? pattern->LoopStart() : -1;
}

void ScheduleNote(InstrumentPlayState& play, int key, int velocity, std::int64_t on, std::int64_t off) noexcept {
    std::vector<PendingNote>& notes = play.pendingNotes.Items();
    if (notes.size() + 2 > InstrumentPlayState::kMaximumPendingNotes) return;
    std::int64_t begun = -1;  // of the note whose end comes next in the list
    for (PendingNote& note : notes) {
        if (note.pitch != key) continue;
        if (note.velocity > 0) {
            begun = note.delay;
            if (begun > on) off = std::min(off, begun);
            continue;
        }
        if (begun == on) off = note.delay = std::max(off, note.delay);  // two at once end together
        if (begun < on) note.delay = std::min(note.delay, on);
        begun = -1;
    }
    notes.push_back({key, velocity, on});
    notes.push_back({key, 0, off});
}

void ScheduleStepNotes(CInstrument& instrument, int offset, int stepSamples) noexcept {
    const CPattern* const pattern = CurrentPattern(instrument);
    if (pattern == nullptr) return;
    InstrumentPlayState& play = instrument.play;
    const int step = play.currentStep;
    const std::int64_t late = step % 2 == 1 ? Delay(static_cast<double>(stepSamples) * instrument.swing.Get()) : 0;
    for (const std::uint32_t index : pattern->NotesOfStep(step)) {
        const Note& note = pattern->Notes()[index];
        if (note.velocity <= 0 || note.key < 0 || note.key > 127) continue;
        const std::int64_t onDelay =
            offset + late + Delay((note.position - static_cast<float>(step)) * static_cast<float>(stepSamples));
        // Against the start plus the length, so that only a note longer than that is cut.
        const float length = std::min(note.length, note.position + static_cast<float>(pattern->LoopLength()));
        const std::int64_t offDelay =
            onDelay + std::max<std::int64_t>(1, Delay(static_cast<double>(stepSamples) * length));
        ScheduleNote(play, note.key, std::min(note.velocity, 127), onDelay, offDelay);
    }
}

void CSequencer::EvolveBalls(BlockInstrument& entry, const BlockContext& block) noexcept {
    const BallSoundList& sounds = entry.instrument->ballSounds.ForRender();
    InstrumentPlayState& play = entry.instrument->play;
    const std::size_t count = std::min(sounds.size(), InstrumentPlayState::kMaximumBalls);
    for (std::size_t index = 0; index < count; ++index) {
        const BallSound& sound = sounds[index];
        if (sound.rate < 1) continue;
        const int period = 1 << std::min(sound.rate - 1, 30);
        if (play.currentStep % period != 0) continue;
        for (const std::size_t axis : {std::size_t{0}, std::size_t{1}}) {
            const float drawn = static_cast<float>(random.Draw()) * 128.0F / CRandom::kRange;
            const float place = play.balls[index][axis] = std::clamp(drawn, 0.0F, 127.0F);
            const bool waits =
                play.ballMoves.Add({static_cast<std::uint32_t>(block.grid.Steps().size()),
                                    static_cast<std::uint8_t>(index), static_cast<std::uint8_t>(axis), place});
            if (!waits) MoveBall(entry, axis == 0 ? sound.horizontal : sound.vertical, place, block.sampleRate);
        }
    }
}

void CSequencer::StartPatterns(BlockContext& block, const CTransport& transport) noexcept {
    for (const BlockInstrument& entry : block.instruments) {
        InstrumentPlayState& play = entry.instrument->play;
        play.run = transport.run;
        play.ran = transport.ran;
        play.currentPattern = entry.instrument->patternSelected.Get();
        play.nextPattern = -1;
        play.currentStep = -1;
        play.songEntry = -1;
        const CPattern* const pattern = CurrentPattern(*entry.instrument);
        play.restartStep = pattern != nullptr ? pattern->LoopStart() : -1;
        play.arpeggiator = {};
    }
}

void CSequencer::Rejoin(CInstrument& instrument, const CTransport& transport) noexcept {
    InstrumentPlayState& play = instrument.play;
    const bool sameRun = play.run == transport.run;
    const int missed = transport.ran - play.ran;
    if (sameRun && missed == 0) return;
    CutNotes(play, 0);
    play.run = transport.run;
    play.ran = transport.ran;
    if (!sameRun) {
        play.currentStep = -1;
        play.nextPattern = -1;
        play.restartStep = transport.playing ? 0 : -1;
        play.arpeggiator = {};
    } else if (const CPattern* const pattern = CurrentPattern(instrument); pattern && play.currentStep >= 0) {
        const int reached = play.currentStep + missed;
        const int start = pattern->LoopStart();
        const int round = std::max(1, pattern->LoopLength() - start);
        play.currentStep = reached < pattern->LoopLength() ? reached : start + (reached - start) % round;
    }
}

void CSequencer::Stop(BlockContext& block, CTransport& transport, int offset) noexcept {
    ReleaseNotes(block, offset);
    transport.playing = false;
    transport.changed = true;
    transport.stopStep = -1;
    ++transport.run;
    for (const BlockInstrument& entry : block.instruments) {
        entry.instrument->play.currentStep = -1;
        entry.instrument->play.run = transport.run;
    }
}

void CSequencer::ReleaseNotes(BlockContext& block, int offset) noexcept {
    for (const BlockInstrument& entry : block.instruments) CutNotes(entry.instrument->play, offset);
}

}  // namespace quib
