// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What an item of the song plays, in words: from where to where, and why it ends there. User-interface thread.

#include <QString>

#include "editors/playlist/CPlaylistEdit.h"
#include "editors/playlist/SongView.h"

namespace quib {

QString ItemText(const CPlaylistEdit& edit, std::int32_t item, const SongView& view);

}  // namespace quib
