// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The points that the editor shows, and the gesture that changes them: it begins with the state as it is, shows
// any number of others, and ends as one step or as none. A click that may become a double click waits for it.
// User-interface thread; knows no window.

#include <functional>

#include "model/edits/LaneEdits.h"

namespace quib {

class CLaneEdit {
public:
    const LaneState& State() const noexcept { return state; }
    // From the document; a gesture that goes on is given up without a word.
    void Show(const LaneState& next);
    void Select(const LaneState& next);

    bool IsOpen() const noexcept { return open; }
    const LaneState& Start() const noexcept { return start; }
    void Begin();
    void Preview(const LaneState& next);
    // No step when nothing has changed. `name` is kept by the caller for good.
    void Finish(const char* name);
    // The same, once Settle is called: a double click may take it back.
    void FinishLater(const char* name) noexcept { pending = name; }
    bool IsPending() const noexcept { return pending != nullptr; }
    void Settle();
    void Cancel();
    // Without a gesture: a step of one change.
    void Apply(const LaneState& next, const char* name);

    LaneLimits limits;
    // What the window does with it.
    std::function<void(const LaneState&)> onPreview;
    std::function<void(const char* name)> onFinish;
    std::function<void()> onCancel;
    std::function<void(const LaneState& before)> onShown;

private:
    void Take(const LaneState& next);

    LaneState state{std::make_shared<const PointList>(), {}};
    LaneState start = state;
    const char* pending = nullptr;
    bool open = false;
};

}  // namespace quib
