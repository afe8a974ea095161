// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One block's work on one channel strip, and the buses that strips are mixed into. The engine fills a
// list of jobs, one per instrument in list order; ProcessStrips works on them (any thread, one at a
// time), MixStrips reads them (any number of threads). Owns no memory.

#include <cstddef>

#include "engine/strip/StripTargets.h"
#include "model/StripState.h"

namespace quib {

// Buffers of one strip, of the block size at least, in whole cache lines and 64-byte aligned, none of
// them shared with another strip or with the strip's inputs. CAudioPlanes gives such memory.
struct StripPlanes {
    static constexpr int kCount = 8;

    float* left = nullptr;
    float* right = nullptr;
    float* sendGain[kSendCount] = {};
    float* gainLeft = nullptr;  // these two are only touched where extra pairs are given
    float* gainRight = nullptr;
};

struct alignas(64) StripJob {
    // Filled in before ProcessStrips. The inputs are read only; both may be the same buffer. An extra pair
    // per send takes part when both its buffers are given and the send is held.
    const float* inLeft = nullptr;
    const float* inRight = nullptr;
    const float* extraLeft[kSendCount] = {};
    const float* extraRight[kSendCount] = {};
    StripState* state = nullptr;
    StripPlanes planes;
    StripTargets targets;

    // Sends that nothing hears: they stand on their targets and are not mixed.
    bool sendUnheard[kSendCount] = {};

    // Left by ProcessStrips for MixStrips: the signal with a constant gain for it, and the sends. A gain
    // that moves has its course over the block in its plane, and all bits of the mask set; a settled one
    // has a line here, or the first one of its plane, and a mask of 0.
    float mixGainLeft = 1, mixGainRight = 1;
    const float* mixLeft = nullptr;
    const float* mixRight = nullptr;
    const float* sendCourse[kSendCount] = {};
    std::size_t sendMask[kSendCount] = {};
    alignas(32) float restingSend[kSendCount][8] = {};
    std::size_t gainMask = 0;
    bool addsExtra[kSendCount] = {};
    bool addsAnyExtra = false;

    // Filled in before: says that the inputs stay as they are until MixStrips is done. A strip with nothing
    // but a constant gain is then mixed straight from them, and its left and right planes are not written.
    bool inputsStay = false;
    // Its owner has had it processed already.
    bool isRendered = false;
};

// What is added to; a send bus with a null buffer is left out.
struct MixBuses {
    float* masterLeft = nullptr;
    float* masterRight = nullptr;
    float* sendLeft[kSendCount] = {};
    float* sendRight[kSendCount] = {};
};

// Memory of the master chain, the render thread's.
struct MasterState {
    float gain = 1;
    float crossfadeA = 0, crossfadeB = 0;
    float peakLeft = 0, peakRight = 0;
};

// The eight planes of a set from plane `first` on.
template <typename Planes>
StripPlanes MakeStripPlanes(const Planes& planes, int first = 0) noexcept {
    return {planes.Plane(first),
            planes.Plane(first + 1),
            {planes.Plane(first + 2), planes.Plane(first + 3), planes.Plane(first + 4), planes.Plane(first + 5)},
            planes.Plane(first + 6),
            planes.Plane(first + 7)};
}

}  // namespace quib
