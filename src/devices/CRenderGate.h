// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Lets the editing thread keep a foreign thread, one that it cannot join, out of the engine.

#include <atomic>
#include <thread>

namespace quib {

class CRenderGate {
public:
    // Foreign thread: true when it may work until it leaves. Never waits.
    bool Enter() noexcept {
        inside.store(true, std::memory_order_seq_cst);
        if (open.load(std::memory_order_seq_cst)) return true;
        Leave();
        return false;
    }
    void Leave() noexcept { inside.store(false, std::memory_order_release); }

    // Editing thread. Shut returns when nobody is inside any more.
    void Open() noexcept { open.store(true, std::memory_order_seq_cst); }
    void Shut() noexcept {
        open.store(false, std::memory_order_seq_cst);
        while (inside.load(std::memory_order_seq_cst)) std::this_thread::yield();
    }

private:
    std::atomic<bool> open{false};
    std::atomic<bool> inside{false};
};

}  // namespace quib
