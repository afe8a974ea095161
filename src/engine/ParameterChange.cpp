// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ParameterChange.h"

#include <algorithm>
#include <cmath>

namespace quib {

void ChangeMixValue(CInstrument& instrument, int lane, float value, double sampleRate) noexcept {
    const StripSetting* const setting = SetMixValue(instrument.strip, lane, value);
    if (setting == nullptr || setting->eqBand < 0) return;
    ApplyEqUpdate(instrument.play.strip, DesignEqBand(instrument.strip, setting->eqBand, sampleRate));
}

void MoveBall(BlockInstrument& entry, const std::vector<BallAssignment>& assignments, float place,
              double sampleRate) noexcept {
    const float share = place / 128.0F;
    for (const BallAssignment& assignment : assignments) {
        const float value = assignment.high / 128.0F * share + assignment.low / 128.0F * (1.0F - share);
        switch (assignment.target) {
            case EBallTarget::kPlugin:
                entry.plugin->PlayParameter(assignment.parameter, value);
                break;
            case EBallTarget::kMix:
                if (const auto scaled = MixValueOf(assignment.parameter, value)) {
                    ChangeMixValue(*entry.instrument, assignment.parameter, *scaled, sampleRate);
                }
                break;
            case EBallTarget::kInsert1:
            case EBallTarget::kInsert2: {
                CPlugin* const insert = entry.inserts[assignment.target == EBallTarget::kInsert1 ? 0 : 1];
                if (insert != nullptr) insert->PlayParameter(assignment.parameter, value);
                break;
            }
        }
    }
}

void ForgetAutomation(BlockContext& block) noexcept {
    const auto forget = [](CPlugin* plugin) {
        if (plugin != nullptr) plugin->ForgetAutomation();
    };
    for (BlockInstrument& entry : block.instruments) {
        entry.instrument->play.ForgetAutomation();
        forget(entry.plugin);
        for (CPlugin* const insert : entry.inserts) forget(insert);
    }
    for (CPlugin* const insert : block.masterInserts) forget(insert);
    for (CPlugin* const effect : block.sharedEffects) forget(effect);
}

}  // namespace quib
