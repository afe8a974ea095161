// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Watches, on a thread of its own, for calls into plug-ins that do not return. Counts its own turns instead of
// looking at a clock, so that a machine that slept has no hung plug-ins.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "model/plugin/PluginMarks.h"

namespace quib {

class CPluginWatch {
public:
    // After how long a call counts as hung.
    struct Limits {
        std::chrono::milliseconds rendering{2000};
        std::chrono::milliseconds other{10000};
    };
    struct Hang {
        Mark mark = 0;
        std::chrono::milliseconds time{};  // since it began, at least
    };
    static constexpr std::chrono::milliseconds kTurn{250};

    // `turn` is called every 250 ms on the watch's thread with the calls that hang then. It may end the process.
    using Turn = std::function<void(const std::vector<Hang>& hung)>;
    explicit CPluginWatch(Turn atTurn) : CPluginWatch(std::move(atTurn), Limits()) {}
    CPluginWatch(Turn atTurn, Limits callLimits);
    ~CPluginWatch();
    CPluginWatch(const CPluginWatch&) = delete;
    CPluginWatch& operator=(const CPluginWatch&) = delete;

    // The editing thread is at work, though a plug-in may run its loop of events (a dialog of its own).
    void EditingIsAlive() noexcept { alive.store(true, std::memory_order_relaxed); }

private:
    void Run();
    void Look();

    Turn turn;
    Limits limits;
    std::atomic<bool> alive{false};
    std::vector<Hang> seen;  // by the place of the thread
    std::vector<Hang> hung;
    std::mutex mutex;
    std::condition_variable changed;
    bool quit = false;
    std::thread thread;
};

}  // namespace quib
