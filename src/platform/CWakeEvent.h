// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Ends the wait of one thread from another. Waiting may go together with other descriptors through
// Descriptor(). Signals are kept until they are cleared.

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
