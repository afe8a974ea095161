// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the engine can be listened to and looked at: recorder and scope take the master output, the
// picture takes the playing state. The render thread feeds them and never waits for whoever reads.

#include <cstdint>
#include <vector>

#include "engine/CBlockRecorder.h"
#include "engine/CListener.h"
#include "engine/CScope.h"
#include "engine/PlayPicture.h"
#include "model/sharing/CTripleBuffer.h"

namespace quib {

class CTaps {
public:
    // While no block is rendered: for blocks of this size, in frames; the recorder, null for none.
    void Prepare(int blockSize) { interleaved.assign(static_cast<std::size_t>(blockSize) * 2, 0); }
    void SetRecorder(CBlockRecorder* next) noexcept { recorder = next; }

    // Window thread.
    CScope& Scope() noexcept { return scope; }
    CListener& Listener() noexcept { return listener; }
    // Editing thread: the newest picture.
    const PlayPicture& Picture() noexcept {
        picture.Update();
        return picture.Latest();
    }

    // Render thread.
    void TakeOutput(const float* left, const float* right, int frames) noexcept;
    void TakePicture(const BlockContext& block, const CTransport& transport, std::uint32_t midiCount) noexcept;

private:
    CScope scope;
    CListener listener;
    CBlockRecorder* recorder = nullptr;
    std::vector<std::int16_t> interleaved;
    CTripleBuffer<PlayPicture> picture;
};

}  // namespace quib
