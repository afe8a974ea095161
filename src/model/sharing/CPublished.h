// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One immutable value that the editing thread replaces while the render thread reads it. Neither
// waits for the other. The editing side shares ownership (undo and saving hold the same objects),
// the render side reads a plain pointer that is valid until the end of its block.

#include <atomic>
#include <cassert>
#include <memory>
#include <utility>

#include "model/sharing/CGraveyard.h"

namespace quib {

template <class T>
class CPublished {
public:
    // Starts with an empty value.
    CPublished() : CPublished(std::make_shared<const T>()) {}
    // `first` is never null, nor is anything published later.
    explicit CPublished(std::shared_ptr<const T> first) : owned(std::move(first)), seen(owned.get()) {}
    CPublished(const CPublished&) = delete;
    CPublished& operator=(const CPublished&) = delete;

    // Render thread, between BeginBlock and EndBlock.
    const T& ForRender() const noexcept { return *seen.load(std::memory_order_seq_cst); }

    // Editing thread.
    const std::shared_ptr<const T>& ForEdit() const noexcept { return owned; }

    // Editing thread: makes `next` the value that the next block sees and buries the old one.
    void Publish(std::shared_ptr<const T> next, CGraveyard& graveyard) {
        graveyard.CheckThread();
        assert(next && "there is always a value");
        seen.store(next.get(), std::memory_order_seq_cst);
        owned.swap(next);
        graveyard.Bury(std::move(next));  // the stamp must be taken after the store above
    }

    // Sets the value of an object that no render thread can reach yet.
    void Prepare(std::shared_ptr<const T> first) {
        owned = std::move(first);
        seen.store(owned.get(), std::memory_order_relaxed);
    }

private:
    std::shared_ptr<const T> owned;
    std::atomic<const T*> seen;
};

}  // namespace quib
