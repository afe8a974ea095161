// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quib {

// Asks for real-time scheduling of the calling thread, below the system's own real-time threads.
// False where the limits of the user do not allow it; the thread then goes on as it was.
bool SetRealTimePriority() noexcept;

// Lets the calling thread, and those that it starts, stand back behind the others. Cannot be undone.
void SetBackgroundPriority() noexcept;

// Number of processors that the process may run on, at least 1.
int AvailableProcessors() noexcept;

}  // namespace quib
