// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The system's wish that the process ends (SIGINT, SIGTERM, SIGHUP), as a flag that the program looks at
// when it is ready to end properly. Any thread.

namespace quib {

// From now on the first of these signals sets the flag; another one after more than a moment ends the process
// at once. A file that grows past the limit of the user (SIGXFSZ) becomes a write that fails.
void CatchEndSignals() noexcept;

bool EndWanted() noexcept;

}  // namespace quib
