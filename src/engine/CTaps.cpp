// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CTaps.h"

#include "engine/Int16Frames.h"

namespace quib {

void CTaps::TakeOutput(const float* left, const float* right, int frames) noexcept {
    scope.Capture(left, right, frames);
    listener.Take(left, right, frames);
    if (recorder == nullptr || !recorder->IsRecording()) return;
    ToInt16Frames(left, right, interleaved.data(), frames);
    recorder->PushBlock(interleaved);
}

void CTaps::TakePicture(const BlockContext& block, const CTransport& transport, std::uint32_t midiCount) noexcept {
    FillPicture(picture.Writable(), block, transport);
    picture.Writable().midiCount = midiCount;
    picture.Commit();
}

}  // namespace quib
