// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One gesture of the user, from the first change to the last. Every move publishes, so it is heard and seen
// at once; Finish makes one step of undo of all of it; Cancel, or the end of its life without Finish, puts
// everything back and leaves no step. User-interface thread.

#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "document/Place.h"
#include "model/CValue.h"

namespace quib {

class CChanges;

class CGesture {
public:
    explicit CGesture(CChanges& owner) : changes(owner) {}
    ~CGesture() { Cancel(); }
    CGesture(const CGesture&) = delete;
    CGesture& operator=(const CGesture&) = delete;

    // Publishes what the gesture has come to. A gesture may change several places.
    template <class T>
    void Publish(const Place<T>& place, std::shared_ptr<const T> next) {
        Note(place.target.get(), MakePublish(place, place.target->ForEdit()), MakePublish(place, next));
    }
    // The same for what has been published already in place of `before`.
    template <class T>
    void Replace(const Place<T>& place, std::shared_ptr<const T> before, std::shared_ptr<const T> next) {
        Note(place.target.get(), MakePublish(place, std::move(before)), MakePublish(place, std::move(next)));
    }
    // The same for a single value. `afterwards` is run whenever it goes back or forth.
    void Set(const std::shared_ptr<CValue>& value, float next, const std::function<void()>& afterwards = {});
    // Something else that goes back and forth with the gesture, such as a selection; `thing` tells several
    // apart. `forth` is run at once.
    void Note(const void* thing, std::function<void()> back, std::function<void()> forth);

    bool IsEmpty() const noexcept { return parts.empty(); }
    // Ends it as one step of undo. Steps with the same `mergeWith` (null: never) that follow one another
    // within moments are one. Nothing happens when nothing was changed.
    void Finish(const QString& name, const void* mergeWith = nullptr);
    void Cancel();

private:
    struct Move {
        const void* thing;
        std::function<void()> back;
        std::function<void()> forth;
    };

    template <class T>
    std::function<void()> MakePublish(const Place<T>& place, std::shared_ptr<const T> content);

    CChanges& changes;
    std::vector<Move> parts;
};

}  // namespace quib
