// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The process ends against its will: by a signal of the processor or abort(), or because something inside has
// called exit(). What is done then runs on the thread that did it, as it may in a handler of signals.

namespace quib {

// From now on `atEnd` is called first; `signal` is 0 for exit(). When it returns, the process ends as it would have.
void CatchFatalEnd(void (*atEnd)(int signal) noexcept) noexcept;

// For `atEnd`: writes the name of the program, a colon and these parts as a line to standard error; null ends them.
void TellAtEnd(const char* const* parts) noexcept;

// Ends the process now, whatever its other threads do; nothing is tidied up.
[[noreturn]] void EndAtOnce(int code) noexcept;

}  // namespace quib
