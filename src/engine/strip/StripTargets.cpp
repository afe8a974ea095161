// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/strip/StripTargets.h"

#include <algorithm>

namespace quib {

namespace {

// Gain of the far side for a distance 0..1 from the centre: to 0.25 half way, to 0 at the end.
float FarSideGain(float distance) noexcept {
    return distance < 0.5f ? 1.0f - 1.5f * distance : 0.5f - 0.5f * std::min(distance, 1.0f);
}

}  // namespace

StripTargets MakeStripTargets(const StripInput& settings, const CLevelTables& tables, float crossfadeGainA,
                              float crossfadeGainB) noexcept {
    StripTargets targets;
    float gain = tables.ChannelGain(settings.level);
    if (settings.crossfadeA != 0)
        gain *= crossfadeGainA;
    else if (settings.crossfadeB != 0)
        gain *= crossfadeGainB;
    const bool silent = settings.mute != 0 || settings.soloMuted != 0;
    targets.gainLeft = silent ? kSilentGain : settings.pan > 0 ? gain * FarSideGain(settings.pan) : gain;
    targets.gainRight = silent ? kSilentGain : settings.pan < 0 ? gain * FarSideGain(-settings.pan) : gain;
    for (std::size_t k = 0; k < kSendCount; ++k) {
        const bool on = settings.sendOn[k] != 0;
        targets.send[k] = on ? tables.SendGain(settings.sendLevel[k]) : kSilentGain;
        targets.holdSend[k] = on && settings.hasSendOutputs;
    }
    targets.eqAmount = settings.eqOn != 0 ? 1.0f : 0.0f;
    return targets;
}

MasterTargets MakeMasterTargets(float masterLevel, float crossfader, const CLevelTables& tables) noexcept {
    return {tables.MasterGain(masterLevel), tables.CrossfadeGainA(crossfader), tables.CrossfadeGainB(crossfader)};
}

}  // namespace quib
