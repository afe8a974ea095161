// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quib {

// Asks for real-time scheduling of the calling thread, below the system's own real-time threads.
// False where the limits of the user do not allow it; the thread then goes on as it was.
bool SetRealTimePriority() noexcept;

// Number of processors that the process may run on, at least 1.
int AvailableProcessors() noexcept;

}  // namespace quib
