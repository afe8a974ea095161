// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/CLiveMidi.h"

namespace quib {

namespace {
// An instrument's list takes them all, so no note off is lost on the way.
constexpr std::size_t kMaximumLiveMessages = kMaximumBlockEvents / 2;
}  // namespace

void CLiveMidi::Drain(CControlRouter& controllers, CMidiRouter& router, BlockContext& block,
                      const CTransport& transport) noexcept {
    MidiMessage message;
    std::size_t count = 0;
    const auto drain = [&](CBoundedQueue<MidiMessage>& queue, ELiveSource source) {
        for (; count < kMaximumLiveMessages && queue.TryPop(message); ++count) {
            if (controllers.Take(message, block)) continue;
            router.Dispatch(message, source, block, transport);
        }
    };
    drain(input, ELiveSource::kMidiInput);
    drain(deviceInput, ELiveSource::kDeviceMidi);
}

}  // namespace quib
