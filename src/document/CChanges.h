// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The one way in which the project changes: each change is a step of undo with a name, and is told to the
// windows with what it touched. User-interface thread.

#include <QObject>
#include <QUndoStack>
#include <cstdint>
#include <functional>
#include <memory>

#include "document/CGesture.h"
#include "document/Change.h"
#include "document/Place.h"
#include "model/sharing/CGraveyard.h"

namespace quib {

class CChanges : public QObject {
    Q_OBJECT

public:
    explicit CChanges(CGraveyard& engineGraveyard);
    ~CChanges() override;

    // The steps, for menus; their texts are in the language in which they were made.
    QUndoStack& Steps() noexcept { return undo; }
    CGraveyard& Graveyard() noexcept { return graveyard; }

    // A change told as two functions; `forth` is run at once.
    void Push(const QString& name, std::function<void()> forth, std::function<void()> back);
    // The same for one that has happened already. For `mergeWith` see CGesture::Finish.
    void PushDone(const QString& name, std::function<void()> forth, std::function<void()> back,
                  const void* mergeWith = nullptr);
    // Something published, as one step.
    template <class T>
    void Publish(const Place<T>& place, std::shared_ptr<const T> next, const QString& name) {
        CGesture gesture(*this);
        gesture.Publish(place, std::move(next));
        gesture.Finish(name);
    }
    // A gesture on a value has ended: becomes a step, merged with turns of the wheel just before.
    // `afterwards` is run when the value goes back and forth.
    template <class Value, class Number>
    void ValueEdited(const std::shared_ptr<Value>& value, Number before, Number after, const QString& name,
                     std::function<void()> afterwards = {}) {
        if (before == after) return;
        PushValue(name, value.get(), 0, static_cast<float>(before), static_cast<float>(after),
                  [this, value, afterwards = std::move(afterwards)](float next) {
                      value->Set(static_cast<Number>(next));
                      if (afterwards) afterwards();
                      Tell({EChange::kValue});
                  });
    }
    // The same for anything with a number; steps of one `thing` and `part` merge.
    void PushValue(const QString& name, const void* thing, int part, float before, float after,
                   std::function<void(float)> set);

    // Several steps that are one, for the life of this object.
    class CMacro {
    public:
        CMacro(CChanges& owner, const QString& name) : changes(owner) { changes.undo.beginMacro(name); }
        ~CMacro() { changes.undo.endMacro(); }
        CMacro(const CMacro&) = delete;
        CMacro& operator=(const CMacro&) = delete;

    private:
        CChanges& changes;
    };

    // Tells the windows. Steps do it whenever they go back or forth.
    void Tell(const Change& change) {
        ++revision;
        Q_EMIT Changed(change);
    }

    // Another number after each change.
    std::uint64_t Revision() const noexcept { return revision; }
    bool IsModified() const { return touched || !undo.isClean(); }
    // The project was changed by what is no step.
    void Touch();
    // What there is now is on disk.
    void SetClean();
    // Forgets every step.
    void Clear() { undo.clear(); }
    // Windows make steps of what waits for a moment whether more of it follows (a click that may become a
    // double click). Before undo, redo and whatever else looks at the whole project.
    void Settle() { Q_EMIT Settling(); }
    void Undo();
    void Redo();

Q_SIGNALS:
    void Changed(const quib::Change& change);
    void ModifiedChanged(bool modified);
    void Settling();

private:
    void TellModified();

    CGraveyard& graveyard;
    std::uint64_t revision = 0;
    bool touched = false;
    bool toldModified = false;
    QUndoStack undo;
};

template <class T>
std::function<void()> CGesture::MakePublish(const Place<T>& place, std::shared_ptr<const T> content) {
    return [place, content = std::move(content), owner = &changes] {
        place.target->Publish(content, owner->Graveyard());
        owner->Tell(place.change);
    };
}

}  // namespace quib
