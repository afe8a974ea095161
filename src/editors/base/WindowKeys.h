// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The keys that a window's content has for itself, told by whoever acts by them, for the page that lists all keys.
// Plain constants, any thread.

#include <QKeyCombination>
#include <vector>

namespace quib {

struct WindowKey {
    enum class EKind {
        kKey,
        kArrows,  // the key stands for all four arrows
        kLevel,   // for Left and Right
        kUpright  // for Up and Down
    };

    QKeyCombination key;
    const char* text;  // what it does, in English
    EKind kind = EKind::kKey;
};
using WindowKeys = std::vector<WindowKey>;

WindowKeys PianoRollKeys();
WindowKeys AutomationKeys();
WindowKeys SongKeys();
WindowKeys BallPadKeys();

}  // namespace quib
