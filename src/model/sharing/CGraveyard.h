// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Holds what was unpublished until the render thread is past it. Editing thread only; the debug
// build checks that. Outlives every device.

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <thread>
#include <utility>

#include "model/sharing/CRenderClock.h"

namespace quib {

class CGraveyard {
public:
    explicit CGraveyard(const CRenderClock& renderClock) : clock(renderClock) {}

    // Keeps `object` until every block that may have seen it is over. Call after the pointer to it
    // has been replaced.
    void Bury(std::shared_ptr<const void> object) {
        CheckThread();
        if (object) dead.emplace_back(clock.Stamp(), std::move(object));
    }

    // Frees what no block can see any more; called from the 40 ms timer. What is freed may bury more.
    void Collect() {
        CheckThread();
        while (!dead.empty() && clock.Passed(dead.front().first)) {
            const std::shared_ptr<const void> last = std::move(dead.front().second);
            dead.pop_front();
        }
    }

    std::size_t Pending() const { return dead.size(); }

    // Only the thread that made the graveyard publishes and collects.
    void CheckThread() const noexcept {
        assert(editingThread == std::this_thread::get_id() && "published objects have one editing thread");
    }

private:
    const CRenderClock& clock;
    std::thread::id editingThread = std::this_thread::get_id();
    std::deque<std::pair<std::uint64_t, std::shared_ptr<const void>>> dead;
};

}  // namespace quib
