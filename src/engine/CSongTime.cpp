// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CSongTime.h"

#include <algorithm>
#include <utility>

#include "engine/BlockTime.h"
#include "engine/ParameterChange.h"

namespace quib {

void CSongTime::Admit(CInstrument& instrument) const noexcept {
    InstrumentPlayState& play = instrument.play;
    if (play.known) return CSequencer::Rejoin(instrument, transport);
    play.known = true;
    play.run = transport.run;
    play.ran = transport.ran;
    play.currentPattern = instrument.patternSelected.Get();
    if (transport.playing) play.restartStep = 0;
    const BallSoundList& sounds = instrument.ballSounds.ForRender();
    for (std::size_t ball = 0; ball < std::min(sounds.size(), play.balls.size()); ++ball) {
        play.balls[ball] = {sounds[ball].x, sounds[ball].y};
    }
}

void CSongTime::Play(BlockContext& block, const EngineSettings& settings, int frame) noexcept {
    CSequencer::ReleaseNotes(block, frame);
    ++transport.run;
    transport.ran = 0;
    CSequencer::StartPatterns(block, transport);
    transport.playing = true;
    transport.changed = true;
    transport.sampleCounter = -frame;
    transport.samplesToNextStep = frame;
    transport.stepTime = block.now;
    transport.loopJumped = false;
    transport.soundingStep = settings.songMode.Get() > 0.0F ? transport.globalStep - 1 : -1;
    ForgetAutomation(block);
}

void CSongTime::Stop(BlockContext& block) noexcept { CSequencer::Stop(block, transport, 0); }

void CSongTime::StopAt(int step) noexcept { transport.stopStep = std::max(0, step); }

void CSongTime::Locate(BlockContext& block, int step) noexcept {
    CSequencer::ReleaseNotes(block, 0);
    transport.globalStep = std::max(0, step);
    transport.loopJumped = false;
    transport.changed = true;
}

void CSongTime::Advance(BlockContext& block, const EngineSettings& settings, bool recording) noexcept {
    block.songMode = settings.songMode.Get() > 0.0F;
    block.time.samplePosition = static_cast<double>(transport.sampleCounter);
    block.time.playing = transport.playing;
    block.time.transportChanged = std::exchange(transport.changed, false);
    block.time.recording = recording;
    sequencer.Advance(block, settings, transport);
    FillBlockTime(block, transport, settings);
    transport.UpdateStepFraction();
}

}  // namespace quib
