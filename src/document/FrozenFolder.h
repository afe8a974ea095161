// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The folder of takes, which can all be rendered again: it does not grow for ever. User-interface thread.

#include <filesystem>

namespace quib {

// Removes the oldest takes until the others take no more than `most` bytes.
void PruneFrozenFolder(const std::filesystem::path& folder, std::uintmax_t most = std::uintmax_t{4} << 30U);

}  // namespace quib
