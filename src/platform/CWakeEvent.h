// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Ends the wait of one thread from another. It is a descriptor, so that a thread can wait for it together with
// those of a sound device, or for a while; what wakes often and alone sleeps on a word instead (SleepOnWord.h).
// Signals are kept until they are cleared.

#include <cstdint>

namespace quib {

class CWakeEvent {
public:
    CWakeEvent();
    ~CWakeEvent();
    CWakeEvent(const CWakeEvent&) = delete;
    CWakeEvent& operator=(const CWakeEvent&) = delete;

    // Any thread.
    void Signal() noexcept;

    // Waiting thread. True when signalled, false after `nanoseconds` without a signal.
    bool WaitFor(std::uint64_t nanoseconds) noexcept;
    void Clear() noexcept;
    // Readable while signalled.
    int Descriptor() const noexcept { return descriptor; }

private:
    int descriptor;
};

}  // namespace quib
