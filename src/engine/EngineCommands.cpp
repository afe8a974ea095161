// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EngineCommands.h"

#include <algorithm>

namespace quib {

namespace {

void SelectPattern(InstrumentPlayState& play, int pattern, bool playing) noexcept {
    if (pattern < 0 || pattern >= kPatternCount) return;
    if (playing && play.currentStep >= 0) {
        play.nextPattern = pattern;
    } else {
        play.currentPattern = pattern;
    }
}

void PlaceBall(InstrumentPlayState& play, int ball, float x, float y) noexcept {
    if (ball < 0 || ball >= static_cast<int>(play.balls.size())) return;
    play.balls[static_cast<std::size_t>(ball)] = {x, y};
}

void RunInstrumentCommand(const EngineCommand& command, CInstrument& instrument,
                          const CommandTargets& targets) noexcept {
    switch (command.kind) {
        case EngineCommand::EKind::kSelectPattern:
            return SelectPattern(instrument.play, command.value, targets.songTime.Transport().playing);
        case EngineCommand::EKind::kStartPattern:
            instrument.play.restartStep = std::max(0, command.value);
            return;
        case EngineCommand::EKind::kMoveBall:
            return PlaceBall(instrument.play, command.value, command.x, command.y);
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

void Stop(const CommandTargets& targets) noexcept {
    if (!targets.songTime.Transport().playing && !targets.metronome.IsCounting()) return Panic(targets);
    targets.metronome.StopCounting();
    targets.songTime.Stop(targets.block);
    for (const BlockInstrument& entry : targets.block.instruments) targets.keys.EndSounding(*entry.instrument);
}

void RunCommand(const EngineCommand& command, const CommandTargets& targets) noexcept {
    switch (command.kind) {
        case EngineCommand::EKind::kPlay:
            return Play(targets);
        case EngineCommand::EKind::kStop:
            return Stop(targets);
        case EngineCommand::EKind::kPanic:
            return Panic(targets);
        case EngineCommand::EKind::kStopAt:
            return targets.songTime.StopAt(command.value);
        case EngineCommand::EKind::kLocate:
            return targets.songTime.Locate(targets.block, command.value);
        default:
            break;
    }
    for (const BlockInstrument& entry : targets.block.instruments) {
        if (entry.instrument->Id() == command.instrument)
            return RunInstrumentCommand(command, *entry.instrument, targets);
    }
}

}  // namespace

void RunCommands(CBoundedQueue<EngineCommand>& commands, const CommandTargets& targets) noexcept {
    EngineCommand command;
    while (commands.TryPop(command)) RunCommand(command, targets);
}

}  // namespace quib
