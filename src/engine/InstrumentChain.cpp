// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/InstrumentChain.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/BlockTime.h"
#include "engine/FrozenPlaying.h"
#include "engine/NoteEvents.h"
#include "engine/ParameterChange.h"

namespace quib {

namespace {

// Earlier first, equal frames in the order in which they were added. Lists are short and nearly sorted.
void SortByFrame(std::vector<BlockEvent>& events) noexcept {
    for (std::size_t index = 1; index < events.size(); ++index) {
        const BlockEvent event = events[index];
        std::size_t place = index;
        for (; place > 0 && events[place - 1].deltaFrames > event.deltaFrames; --place)
            events[place] = events[place - 1];
        events[place] = event;
    }
}

BlockEvent MidiLaneEvent(int lane, int value, int frame) noexcept {
    const auto byte = static_cast<std::uint8_t>(value);
    switch (lane) {
        case kPitchBendLane:
            return {kPitchBend, 0, byte, frame};
        case kModulationWheelLane:
            return {kControlChange, 1, byte, frame};
        case kAftertouchLane:
            return {kChannelPressure, byte, 0, frame};
        default:
            return {kProgramChange, byte, 0, frame};
    }
}

void PlayMidiLanes(CInstrument& instrument, const BlockContext& block) noexcept {
    const CEventLanes& lanes = instrument.midiLanes.ForRender();
    for (const GridPoint& point : block.grid.Points()) {
        const PatternStep& playing = instrument.play.blockSteps.Items()[point.step];
        if (playing.step < 0) continue;
        const float position = static_cast<float>(playing.step) + point.share;
        for (const CEventLanes::Lane& lane : lanes.Lanes(playing.pattern)) {
            if (lane.index >= kMidiLaneCount) break;
            const auto index = static_cast<std::size_t>(lane.index);
            const auto value = ValueAt(*lane.points, position, MidiLanes()[index].kind);
            if (!value) continue;
            const int sent = TruncateWithin(*value, 0, 127);
            float& last = instrument.play.lastMidiValue[index];
            if (last == static_cast<float>(sent)) continue;
            last = static_cast<float>(sent);
            instrument.play.blockEvents.Add(MidiLaneEvent(lane.index, sent, point.frame));
        }
    }
}

// Of the patterns that it plays in the block, those of MIDI lanes; before notes of the same frame, since they
// are meant for those.
void AddLaneEvents(CInstrument& instrument, const BlockContext& block) noexcept {
    std::vector<BlockEvent>& events = instrument.play.blockEvents.Items();
    const auto notes = static_cast<std::ptrdiff_t>(events.size());
    PlayMidiLanes(instrument, block);
    if (events.size() > static_cast<std::size_t>(notes))
        std::rotate(events.begin(), events.begin() + notes, events.end());
}

// For so long the plug-in of a frozen instrument sounds on after the last key.
constexpr double kKeySeconds = 0.5;
constexpr float kKeyUnheard = 1e-5F;

bool IsHeard(const float* samples, int frames) noexcept {
    return std::any_of(samples, samples + frames, [](float sample) { return std::abs(sample) > kKeyUnheard; });
}

class CChain {
public:
    CChain(BlockInstrument& blockEntry, const BlockContext& context, CStripPieces& stripPieces) noexcept
        : entry(blockEntry),
          block(context),
          strip(stripPieces),
          instrument(*blockEntry.instrument),
          play(instrument.play),
          events(play.blockEvents.Items()) {}

    void Run() noexcept {
        const ESoundSource source = SoundSourceOf(entry, block);
        if (source == ESoundSource::kTake) {
            RunOverTake();
        } else {
            RunPlugin(source == ESoundSource::kTakeEnds);
        }
        events.resize(keptEvents);
    }

private:
    void RunPlugin(bool takeEnds) noexcept {
        AddLaneEvents(instrument, block);
        const bool wasTake = play.frozen.next >= 0;
        if (wasTake && !entry.plugin->FeedsSends()) StrikeHeldNotes(play);
        CollectEvents();
        if (takeEnds) {
            EndTake(entry, block);
            SoundPlugin(false);
        }
        if (wasTake) play.frozen = {};
        RunPieces();
    }

    // The plug-in is rendered only for keys that are played live, and for its end when the take begins.
    void RunOverTake() noexcept {
        const bool begins = play.frozen.next < 0;
        const bool hasKeys = !play.liveKeys.Items().empty() || !play.liveEvents.Items().empty();
        HoldNotes(play);
        if (begins) EndOthersThanKeys(play, *entry.plugin);
        CollectEvents();
        PlayTake(entry, block);
        if (begins || hasKeys || play.frozen.keyFrames > 0) {
            const bool isHeard = SoundPlugin(begins && !hasKeys);
            play.frozen.keyFrames = std::max(0, play.frozen.keyFrames - block.frames);
            if (hasKeys || (!begins && isHeard))
                play.frozen.keyFrames = static_cast<int>(kKeySeconds * block.sampleRate);
        } else {
            events.clear();
            rendered = block.frames;
        }
        RunPieces();
    }

    // Adds a whole block of the plug-in to the take, and tells whether it is heard.
    bool SoundPlugin(bool fadesOut) noexcept {
        const float* const left = entry.left;
        const float* const right = entry.right;
        RenderTo(block.frames);
        const float* const plugin[] = {entry.left, entry.right};
        entry.left = left;
        entry.right = right;
        if (plugin[0] == left) return false;
        AddPlugin(entry, plugin[0], plugin[1], block.frames, fadesOut);
        return IsHeard(plugin[0], block.frames) || IsHeard(plugin[1], block.frames);
    }

    void RunPieces() noexcept {
        CStripPieces::TakeEqualizer(instrument);
        if (ChangesWithin()) {
            for (const GridPoint& point : block.grid.Points()) PlayPoint(point);
        }
        RenderTo(block.frames);
    }

    void CollectEvents() noexcept {
        // What finds no room waits, but for notes that would begin.
        std::erase_if(play.liveEvents.Items(), [&](const LiveEvent& event) {
            const BlockEvent placed{event.status, event.data1, event.data2, FrameOf(event.time, block)};
            return play.blockEvents.Add(placed) || BeginsNote(placed);
        });
        SortByFrame(events);
    }

    bool ChangesWithin() const noexcept {
        return block.grid.Breaks() || !play.ballMoves.Items().empty() || HasLanes() || strip.CrossfadeActs(entry);
    }

    bool HasLanes() const noexcept {
        if (block.songMode && HasLanes(CEventLanes::kSongSlot)) return true;
        const auto& steps = play.blockSteps.Items();
        return std::any_of(steps.begin(), steps.end(),
                           [&](const PatternStep& step) { return step.step >= 0 && HasLanes(step.pattern); });
    }

    bool HasLanes(int slot) const noexcept {
        const auto has = [&](const CPlugin* plugin) {
            return plugin != nullptr && !plugin->lanes.ForRender().Lanes(slot).empty();
        };
        return !instrument.mixLanes.ForRender().Lanes(slot).empty() || has(entry.plugin) ||
               std::any_of(entry.inserts.begin(), entry.inserts.end(), has);
    }

    void PlayPoint(const GridPoint& point) noexcept {
        if (point.breaks) RenderTo(point.frame);
        if (strip.CrossfadeActsAt(entry, point.frame)) RenderStripTo(point.frame);
        if (point.share == 0.0F) MoveBalls(point);
        if (block.songMode) PlaySlot(CEventLanes::kSongSlot, block.grid.PositionOf(point), point.frame);
        const PatternStep& playing = play.blockSteps.Items()[point.step];
        if (playing.step >= 0) PlaySlot(playing.pattern, static_cast<float>(playing.step) + point.share, point.frame);
    }

    void MoveBalls(const GridPoint& point) noexcept {
        const BallSoundList& sounds = instrument.ballSounds.ForRender();
        for (const BallMove& move : play.ballMoves.Items()) {
            if (move.step != point.step || move.ball >= sounds.size()) continue;
            RenderStripTo(point.frame);
            const BallSound& sound = sounds[move.ball];
            MoveBall(entry, move.axis == 0 ? sound.horizontal : sound.vertical, move.place, block.sampleRate);
        }
    }

    void PlaySlot(int slot, float position, int frame) noexcept {
        PlayMixLanes(slot, position, frame);
        if (entry.take != nullptr) return;  // all that it plays is rendered
        PlayLanes(entry.plugin, 0, slot, position, frame);
        for (std::size_t index = 0; index < kInsertCount; ++index)
            PlayLanes(entry.inserts[index], 1 + index, slot, position, frame);
    }

    // What lanes move that a take does not have makes the plug-in another one than it was rendered from.
    void PlayLanes(CPlugin* plugin, std::size_t place, int slot, float position, int frame) noexcept {
        PlayPluginLanes(plugin, slot, position, [&] {
            RenderTo(frame);
            const FrozenSound& sound = instrument.frozen.ForRender();
            if (sound.take && sound.source.lanes[place].get() != &plugin->lanes.ForRender()) plugin->CountEdit();
        });
    }

    void PlayMixLanes(int slot, float position, int frame) noexcept {
        for (const CEventLanes::Lane& lane : instrument.mixLanes.ForRender().Lanes(slot)) {
            if (!IsMixLane(lane.index)) continue;
            float& last = play.lastMixValue[static_cast<std::size_t>(lane.index)];
            if ((instrument.heldMix.Get() >> lane.index & 1U) != 0) {
                last = std::numeric_limits<float>::quiet_NaN();
                continue;
            }
            const auto value =
                ValueAt(*lane.points, position, MixParameters()[static_cast<std::size_t>(lane.index)].kind);
            if (!value || *value == last) continue;
            last = *value;
            RenderStripTo(frame);
            ChangeMixValue(instrument, lane.index, *value, block.sampleRate);
        }
    }

    void RenderStripTo(int end) noexcept {
        RenderTo(end);
        if (entry.left != nullptr) strip.RenderTo(entry, end);
    }

    void RenderTo(int end) noexcept {
        const int frames = end - rendered;
        if (frames <= 0) return;
        const PlayTime time = TimeAt(block, rendered);
        entry.plugin->SetBlockTime(time);
        SendEventsTo(end);
        if (entry.plugin->CanReplace()) RenderPlugins(time, frames);
        rendered = end;
    }

    void RenderPlugins(const PlayTime& time, int frames) noexcept {
        entry.plugin->Process(frames, rendered);
        if (entry.plugin->OutputCount() == 0) return;
        entry.left = entry.plugin->Left();
        entry.right = entry.plugin->Right();
        for (std::size_t index = 0; index < kInsertCount; ++index) {
            CPlugin* const insert = entry.inserts[index];
            if (insert == nullptr || !insert->CanReplace() || !(instrument.strip.insertOn[index].Get() > 0.0F))
                continue;
            insert->SetBlockTime(time);
            insert->Process(entry.left, entry.right, frames, rendered);
            entry.left = insert->Left();
            entry.right = insert->Right();
        }
    }

    // While the plug-in's state is being changed no note begins, but every note still ends in the next block.
    void SendEventsTo(int end) noexcept {
        const std::size_t first = nextEvent;
        for (; nextEvent < events.size() && events[nextEvent].deltaFrames < end; ++nextEvent)
            events[nextEvent].deltaFrames -= rendered;
        const std::span<BlockEvent> due(events.data() + first, nextEvent - first);
        if (entry.plugin->SendEvents(due)) return;
        for (const BlockEvent& event : due) {
            if (BeginsNote(event)) continue;
            events[keptEvents++] = {event.status, event.data1, event.data2, 0};
        }
    }

    BlockInstrument& entry;
    const BlockContext& block;
    CStripPieces& strip;
    CInstrument& instrument;
    InstrumentPlayState& play;
    std::vector<BlockEvent>& events;  // of the block, by frame
    std::size_t nextEvent = 0;
    std::size_t keptEvents = 0;  // at the front of the list: for the next block
    int rendered = 0;            // frames
};

}  // namespace

void RenderChain(BlockInstrument& entry, const BlockContext& block, CStripPieces& strip) noexcept {
    CChain(entry, block, strip).Run();
}

}  // namespace quib
