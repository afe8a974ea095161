// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/FrozenPlaying.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/NoteEvents.h"
#include "model/CFrozenTake.h"

namespace quib {

namespace {

constexpr int kFadeFrames = 128;  // at a jump, and where plug-in and take meet
constexpr float kSoundsOn = 1e-4F;

// Every step of the block is in the take and was rendered just so long.
bool HasSteps(const CFrozenTake& take, const CBlockGrid& grid) noexcept {
    const auto steps = take.Steps();
    const auto has = [&](const BlockStep& step) {
        if (step.step >= static_cast<std::int64_t>(steps.size())) return take.EndsSilent();
        if (step.step < 0) return false;
        const FrozenStep& rendered = steps[static_cast<std::size_t>(step.step)];
        return rendered.samples == step.samples && rendered.tempo == step.tempo;
    };
    return !grid.Steps().empty() && std::ranges::all_of(grid.Steps(), has);
}

bool HasFormat(const CFrozenTake& take, const BlockContext& block) noexcept {
    const FrozenFormat& format = take.Format();
    return format.sampleRate == block.sampleRate && format.quartersPerStep == block.quartersPerStep &&
           format.quartersPerBar == block.quartersPerBar;
}

bool ArpeggiatorPlays(const CInstrument& instrument) noexcept {
    return instrument.arpeggiator.on.IsOn() && !instrument.play.heldKeys.Items().empty();
}

// The frames of one instrument's block from its take.
class CTakeBlock {
public:
    CTakeBlock(BlockInstrument& blockEntry, const BlockContext& context) noexcept
        : entry(blockEntry),
          block(context),
          sound(blockEntry.instrument->frozen.ForRender()),
          take(*sound.take),
          planes(*sound.planes),
          next(blockEntry.instrument->play.frozen.next) {
        for (int channel = 0; channel < Channels(); ++channel) std::fill_n(planes.Plane(channel), block.frames, 0.0F);
        entry.take = &planes;
        entry.left = planes.Plane(0);
        entry.right = planes.Plane(1);
    }

    void PlaySteps() noexcept {
        const auto& steps = block.grid.Steps();
        const int end = block.grid.End();
        for (std::size_t index = 0; index < steps.size(); ++index) {
            const int first = std::max(0, steps[index].frame);
            const int last = index + 1 < steps.size() ? std::min(end, steps[index + 1].frame) : end;
            Play(first, last, FrameOf(steps[index].step) + first - steps[index].frame);
        }
        if (end < block.frames) End(end);
    }

    void End(int first) noexcept {
        AddFading(first, std::min(kFadeFrames, block.frames - first));
        next = -1;
    }

private:
    int Channels() const noexcept { return take.Format().channels; }
    std::int64_t FrameOf(int step) const noexcept {
        const auto steps = take.Steps();
        const auto index = static_cast<std::size_t>(step);
        return index < steps.size() ? steps[index].frame : take.Length();
    }

    void Play(int first, int last, std::int64_t frame) noexcept {
        const int frames = last - first;
        if (frames <= 0) return;
        for (int channel = 0; channel < Channels(); ++channel)
            take.Copy(channel, frame, frames, planes.Plane(channel) + first);
        if (frame != next) {
            const int fade = std::min(frames, kFadeFrames);
            if (SoundsBefore(frame)) Rise(first, fade);
            AddFading(first, fade);
        }
        next = frame + frames;
    }

    // What begins there is not to lose its attack.
    bool SoundsBefore(std::int64_t frame) const noexcept {
        for (int channel = 0; channel < Channels(); ++channel) {
            const CFrozenTake::Run run = take.At(channel, frame - 1, 1);
            if (run.samples != nullptr && std::abs(*run.samples) > kSoundsOn) return true;
        }
        return false;
    }

    void Rise(int first, int frames) noexcept {
        for (int channel = 0; channel < Channels(); ++channel) {
            float* const samples = planes.Plane(channel) + first;
            for (int i = 0; i < frames; ++i) samples[i] *= static_cast<float>(i) / static_cast<float>(frames);
        }
    }

    // What was played last goes on for so long.
    void AddFading(int first, int frames) noexcept {
        if (next < 0) return;
        for (int channel = 0; channel < Channels(); ++channel) {
            float* const samples = planes.Plane(channel) + first;
            float going[kFadeFrames];
            take.Copy(channel, next, frames, going);
            for (int i = 0; i < frames; ++i)
                samples[i] += going[i] * static_cast<float>(frames - i) / static_cast<float>(frames);
        }
    }

    BlockInstrument& entry;
    const BlockContext& block;
    const FrozenSound& sound;
    const CFrozenTake& take;
    const CAudioPlanes& planes;
    std::int64_t& next;
};

}  // namespace

ESoundSource SoundSourceOf(const BlockInstrument& entry, const BlockContext& block) noexcept {
    const CInstrument& instrument = *entry.instrument;
    const FrozenSound& sound = instrument.frozen.ForRender();
    if (!sound.take || sound.planes->Frames() < block.frames) return ESoundSource::kPlugin;
    const bool isWhole = sound.on && block.songMode && block.time.playing && HasFormat(*sound.take, block) &&
                         HasSteps(*sound.take, block.grid) && !ArpeggiatorPlays(instrument) &&
                         IsFrom(instrument, sound.source);
    if (isWhole) return ESoundSource::kTake;
    return instrument.play.frozen.next >= 0 ? ESoundSource::kTakeEnds : ESoundSource::kPlugin;
}

void PlayTake(BlockInstrument& entry, const BlockContext& block) noexcept { CTakeBlock(entry, block).PlaySteps(); }

void EndTake(BlockInstrument& entry, const BlockContext& block) noexcept { CTakeBlock(entry, block).End(0); }

void AddPlugin(const BlockInstrument& entry, const float* left, const float* right, int frames,
               bool fadesOut) noexcept {
    const int count = fadesOut ? std::min(frames, kFadeFrames) : frames;
    const int channels = std::min(entry.take->Planes(), std::max(2, entry.plugin->OutputCount()));
    for (int channel = 0; channel < channels; ++channel) {
        const float* const from = channel == 0 ? left : channel == 1 ? right : entry.plugin->Output(channel);
        float* const to = entry.take->Plane(channel);
        for (int i = 0; i < count; ++i)
            to[i] += from[i] * (fadesOut ? static_cast<float>(count - i) / static_cast<float>(count) : 1.0F);
    }
}

void HoldNotes(InstrumentPlayState& play) noexcept {
    std::erase_if(play.blockEvents.Items(), [&](const BlockEvent& event) {
        if (BeginsNote(event)) play.frozen.struck[event.data1 & 0x7fU] = event.data2;
        if (EndsNote(event)) play.frozen.struck[event.data1 & 0x7fU] = 0;
        return BeginsNote(event);
    });
}

// One that ends here is not begun.
void StrikeHeldNotes(InstrumentPlayState& play) noexcept {
    for (std::size_t key = 0; key < play.frozen.struck.size(); ++key) {
        const std::uint8_t velocity = std::exchange(play.frozen.struck[key], std::uint8_t{0});
        const bool ends = std::ranges::any_of(play.blockEvents.Items(), [key](const BlockEvent& event) {
            return EndsNote(event) && event.data1 == key && event.deltaFrames <= 0;
        });
        if (velocity > 0 && !ends) play.blockEvents.Add({kNoteOn, static_cast<std::uint8_t>(key), velocity, 0});
    }
}

void EndOthersThanKeys(InstrumentPlayState& play, const CPlugin& plugin) noexcept {
    plugin.KeysDown().ForEachEnd([&play](const BlockEvent& event) {
        const bool isLive = std::ranges::any_of(play.liveKeys.Items(), [&event](const LiveKey& key) {
            return event.status == kControlChange ? key.pedal > 0 : key.sent == event.data1;
        });
        if (!isLive) play.blockEvents.Add(event);
    });
}

}  // namespace quib
