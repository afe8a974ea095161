// SPDX-License-Identifier: GPL-3.0-or-later
// The engine's answer to commands of the editing thread, at the start of a block.
#include <algorithm>

#include "engine/CAudio.h"

namespace quib {

void CAudio::RunCommands() noexcept {
    EngineCommand command;
    while (commands.TryPop(command)) RunCommand(command);
}

void CAudio::RunCommand(const EngineCommand& command) noexcept {
    switch (command.kind) {
        case EngineCommand::Kind::Play:
            return Play();
        case EngineCommand::Kind::Stop:
            return CSequencer::Stop(block, transport, 0);
        case EngineCommand::Kind::StopAt:
            transport.stopStep = std::max(0, command.value);
            return;
        case EngineCommand::Kind::Locate:
            CSequencer::ReleaseNotes(block, 0);
            transport.globalStep = std::max(0, command.value);
            transport.loopJumped = false;
            transport.changed = true;
            return;
        default:
            break;
    }
    for (BlockInstrument& entry : block.instruments) {
        if (entry.instrument->Id() == command.instrument) return RunInstrumentCommand(command, entry);
    }
}

void CAudio::RunInstrumentCommand(const EngineCommand& command, BlockInstrument& entry) noexcept {
    InstrumentPlayState& play = entry.instrument->play;
    switch (command.kind) {
        case EngineCommand::Kind::SelectPattern:
            if (command.value < 0 || command.value >= kPatternCount) return;
            if (transport.playing && play.currentStep >= 0) {
                play.nextPattern = command.value;
            } else {
                play.currentPattern = command.value;
            }
            return;
        case EngineCommand::Kind::StartPattern:
            play.restartStep = std::max(0, command.value);
            return;
        case EngineCommand::Kind::MoveBall:
            if (command.value < 0 || command.value >= static_cast<std::int32_t>(play.balls.size())) return;
            play.balls[static_cast<std::size_t>(command.value)] = {command.x, command.y};
            return;
        case EngineCommand::Kind::PlayNote:
            return router.PlayKey(*entry.instrument, command.value, static_cast<int>(command.x), block.now);
        default:
            return;
    }
}

void CAudio::Play() noexcept {
    CSequencer::ReleaseNotes(block, 0);
    CSequencer::StartPatterns(block);
    transport.playing = true;
    transport.changed = true;
    transport.sampleCounter = 0;
    transport.samplesToNextStep = 0;
    transport.stepTime = block.now;
    transport.loopJumped = false;
    transport.soundingStep = settings.songMode.Get() > 0.0F ? transport.globalStep - 1 : -1;
    for (BlockInstrument& entry : block.instruments) {
        entry.instrument->play.ForgetAutomation();
        entry.plugin->ForgetAutomation();
        for (CPlugin* const insert : entry.inserts) {
            if (insert != nullptr) insert->ForgetAutomation();
        }
    }
    for (CPlugin* const insert : block.masterInserts) {
        if (insert != nullptr) insert->ForgetAutomation();
    }
    for (CPlugin* const effect : block.sharedEffects) {
        if (effect != nullptr) effect->ForgetAutomation();
    }
}

}  // namespace quib
