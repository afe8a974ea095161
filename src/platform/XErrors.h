// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What happens when a plug-in's editor makes an error in the X server: toolkits of editors put handlers into the
// process that end it. Editing thread.

namespace quib {

// Puts a handler in place that writes the error to standard error and goes on. To be called after any call that
// may have put another one there. Does nothing in a process without the X library.
void KeepXErrorsHarmless() noexcept;

}  // namespace quib
