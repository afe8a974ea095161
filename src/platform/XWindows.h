// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a plug-in has put into a window of ours. Editing thread.

#include <cstdint>
#include <optional>

namespace quib {

struct WindowSize {
    int width = 0;  // pixels of the screen
    int height = 0;
};

// Size of the largest window inside of another; nothing when there is none, or no X library. `display` is the
// connection as the X library knows it.
std::optional<WindowSize> SizeOfContent(void* display, std::uintptr_t window) noexcept;

}  // namespace quib
