// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/CPluginWatch.h"

#include <utility>

namespace quib {

CPluginWatch::CPluginWatch(Turn atTurn, Limits callLimits)
    : turn(std::move(atTurn)), limits(callLimits), thread([this] { Run(); }) {}

CPluginWatch::~CPluginWatch() {
    {
        const std::lock_guard lock(mutex);
        quit = true;
    }
    changed.notify_all();
    thread.join();
}

void CPluginWatch::Run() {
    std::unique_lock lock(mutex);
    while (!changed.wait_for(lock, kTurn, [this] { return quit; })) {
        lock.unlock();
        Look();
        turn(hung);
        lock.lock();
    }
}

void CPluginWatch::Look() {
    hung.clear();
    const bool editing = alive.exchange(false, std::memory_order_relaxed);
    ForEachMark([this, editing](int place, Mark mark) {
        const auto index = static_cast<std::size_t>(place);
        if (index >= seen.size()) seen.resize(index + 1);
        Hang& call = seen[index];
        const bool rendering = IsRenderingMark(mark);
        if (mark != call.mark || mark == 0 || (editing && !rendering)) {
            call = {mark, {}};
            return;
        }
        call.time += kTurn;
        if (call.time >= (rendering ? limits.rendering : limits.other)) hung.push_back(call);
    });
}

}  // namespace quib
