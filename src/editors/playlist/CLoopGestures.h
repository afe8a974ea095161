// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the mouse does to the loop in the upper half of the ruler: its markers and the whole region are dragged,
// and a drag outside of it draws another one and switches it on. Events come in skin pixels from the ruler's
// left edge. User-interface thread; knows no window.

#include <memory>

#include "document/CSong.h"
#include "editors/playlist/SongView.h"

namespace quib {

class CLoopGestures {
public:
    // What of the loop is dragged; kNew draws another one.
    enum class EDrag { kStart = 0, kWhole = 1, kEnd = 2, kNew = 3, kNone };

    CLoopGestures(CSong& projectSong, CChanges& documentChanges, const SongView& shown)
        : song(projectSong), changes(documentChanges), view(shown) {}

    void Press(int x);
    // Draws a new loop wherever the press is.
    void PressNew(int x);
    void Move(int x, bool withoutSnap);
    void Release();
    void Cancel();
    bool IsBusy() const noexcept { return mode != EDrag::kNone; }
    // What a press would take; kNew where it would only begin a new loop.
    EDrag HitTest(int x) const;

private:
    CSong& song;
    CChanges& changes;
    const SongView& view;
    std::unique_ptr<CGesture> gesture;
    EDrag mode = EDrag::kNone;
    StepRange before;
    int pressX = 0;
};

}  // namespace quib
