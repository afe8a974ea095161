// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Remembers for every instrument what the keys and pedals of live sources became in it, so that the end of a
// note goes where its beginning went, whatever was set, moved or taken away meanwhile. Tells the capture what
// was played, a note that the pedal holds as ended when the pedal goes up. Render thread only.

#include "engine/BlockContext.h"
#include "engine/CNoteCapture.h"

namespace quib {

class CLiveKeys {
public:
    explicit CLiveKeys(CNoteCapture& noteCapture) noexcept : capture(noteCapture) {}

    // An instrument that comes into the block with this plug-in: what either still has down from a time apart
    // ends.
    void Admit(CInstrument& instrument, const CPlugin& plugin, std::uint64_t blockNumber) noexcept;

    // A key that was struck: the plug-in gets `key.sent`, the held keys the key itself, as far as `key` says. A key
    // for whose end there would be no room is left out. `time` in nanoseconds.
    void Begin(CInstrument& instrument, LiveKey key, int velocity, std::uint64_t time) noexcept;
    // The key that began there, if it did.
    void End(CInstrument& instrument, const LiveOrigin& origin, std::uint64_t time) noexcept;
    // Lets go of the keys that an arpeggiator's latch still holds once it does so no more.
    static void EndLatch(CInstrument& instrument) noexcept;
    // The pedal of that origin, 0..127. One that is up goes down only where the instrument `hears` it.
    void MovePedal(CInstrument& instrument, const LiveOrigin& origin, int value, bool hears,
                   std::uint64_t time) noexcept;

    // Ends what sounds; keys that an arpeggiator plays stay held.
    void EndSounding(CInstrument& instrument) noexcept;
    // Ends everything that an instrument may have down, known or not.
    void Panic(CInstrument& instrument) noexcept;

private:
    void Release(CInstrument& instrument, const LiveKey& key, std::uint64_t time) noexcept;
    void EndRinging(CInstrument& instrument, std::uint64_t time) noexcept;
    void Tell(const CInstrument& instrument, const LiveKey& key, int velocity, std::uint64_t time) noexcept;

    CNoteCapture& capture;
};

}  // namespace quib
