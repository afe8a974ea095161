// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EngineCommands.h"

#include <algorithm>
#include <cmath>

#include "engine/ParameterChange.h"

namespace quib {

namespace {

void SelectPattern(InstrumentPlayState& play, int pattern, const CommandTargets& targets) noexcept {
    if (pattern < 0 || pattern >= kPatternCount) return;
    if (targets.songTime.Transport().playing && play.currentStep >= 0) {
        // The one that plays goes on where it is; only its own end would begin it anew.
        const bool goesOn = pattern == play.currentPattern && LaunchSteps(targets.settings) > 0;
        play.nextPattern = goesOn ? -1 : pattern;
    } else {
        play.currentPattern = pattern;
    }
}

// What is assigned to the ball follows in this block.
void PlaceBall(BlockInstrument& entry, const EngineCommand& command, double sampleRate) noexcept {
    auto& balls = entry.instrument->play.balls;
    const auto ball = static_cast<std::size_t>(command.value);
    if (command.value < 0 || ball >= balls.size() || std::isnan(command.x) || std::isnan(command.y)) return;
    balls[ball] = {std::clamp(command.x, 0.0F, 127.0F), std::clamp(command.y, 0.0F, 127.0F)};
    const BallSoundList& sounds = entry.instrument->ballSounds.ForRender();
    if (ball >= sounds.size()) return;
    MoveBall(entry, sounds[ball].horizontal, balls[ball][0], sampleRate);
    MoveBall(entry, sounds[ball].vertical, balls[ball][1], sampleRate);
}

void RunInstrumentCommand(const EngineCommand& command, BlockInstrument& entry,
                          const CommandTargets& targets) noexcept {
    CInstrument& instrument = *entry.instrument;
    switch (command.kind) {
        case EngineCommand::EKind::kSelectPattern:
            return SelectPattern(instrument.play, command.value, targets);
        case EngineCommand::EKind::kStartPattern:
            instrument.play.restartStep = std::max(0, command.value);
            return;
        case EngineCommand::EKind::kMoveBall:
            return PlaceBall(entry, command, targets.block.sampleRate);
        case EngineCommand::EKind::kPlayNote:
            return targets.router.PlayKey(instrument, command.value, static_cast<int>(command.x),
                                          command.time != 0 ? command.time : targets.block.now);
        case EngineCommand::EKind::kAudition:
            return targets.router.Audition(instrument, command.value, static_cast<int>(command.x), targets.block.now);
        default:
            return;
    }
}

void Panic(const CommandTargets& targets) noexcept {
    CSequencer::ReleaseNotes(targets.block, 0);
    for (const BlockInstrument& entry : targets.block.instruments) targets.keys.Panic(*entry.instrument);
}

void Play(const CommandTargets& targets) noexcept {
    if (targets.metronome.IsCounting()) return;
    if (!targets.countsIn) return targets.songTime.Play(targets.block, targets.settings);
    if (targets.songTime.Transport().playing) targets.songTime.Stop(targets.block);
    targets.metronome.StartCounting(targets.settings);
}

bool IsRunning(const CommandTargets& targets) noexcept {
    return targets.songTime.Transport().playing || targets.metronome.IsCounting();
}

void Halt(const CommandTargets& targets) noexcept {
    if (!IsRunning(targets)) return;
    targets.metronome.StopCounting();
    targets.songTime.Stop(targets.block);
    for (const BlockInstrument& entry : targets.block.instruments) targets.keys.EndSounding(*entry.instrument);
}

void RunCommand(const EngineCommand& command, const CommandTargets& targets) noexcept {
    switch (command.kind) {
        case EngineCommand::EKind::kPlay:
            return Play(targets);
        case EngineCommand::EKind::kStop:
            return IsRunning(targets) ? Halt(targets) : Panic(targets);
        case EngineCommand::EKind::kHalt:
            return Halt(targets);
        case EngineCommand::EKind::kPanic:
            return Panic(targets);
        case EngineCommand::EKind::kStopAt:
            return targets.songTime.StopAt(command.value);
        case EngineCommand::EKind::kLocate:
            return targets.songTime.Locate(targets.block, command.value);
        case EngineCommand::EKind::kHoldLaunch:
            return targets.songTime.HoldLaunch(command.value != 0);
        default:
            break;
    }
    for (BlockInstrument& entry : targets.block.instruments) {
        if (entry.instrument->Id() == command.instrument) return RunInstrumentCommand(command, entry, targets);
    }
}

}  // namespace

void RunCommands(CBoundedQueue<EngineCommand>& commands, const CommandTargets& targets) noexcept {
    EngineCommand command;
    while (commands.TryPop(command)) RunCommand(command, targets);
}

}  // namespace quib
