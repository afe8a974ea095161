// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Steps of undo. Each keeps alive what it needs to go back and forth. User-interface thread.

#include <QUndoCommand>
#include <cstdint>
#include <functional>

namespace quib {

// Wheel turns of one value within this time are one step.
constexpr std::uint32_t kMergeMilliseconds = 600;

// Any change that is told as two functions.
class CChangeCommand : public QUndoCommand {
public:
    using Change = std::function<void()>;
    // `forth` is run at once when the step is pushed, unless `isDone` says that it has happened. Steps of
    // the same `mergeThing`, which null is not, merge when they follow within the time above.
    CChangeCommand(const QString& name, Change forthChange, Change backChange, bool isDone = false,
                   const void* mergeThing = nullptr);

    int id() const override { return thing != nullptr ? 2 : -1; }
    bool mergeWith(const QUndoCommand* other) override;
    void redo() override;
    void undo() override { back(); }

private:
    Change forth;
    Change back;
    bool done;
    const void* thing;
    std::uint32_t time;
};

// A value that a gesture has changed. Gestures of the same thing that follow within the time above merge.
class CGestureCommand : public QUndoCommand {
public:
    using Set = std::function<void(float value)>;
    // `thing` with `part` names what is changed: steps of the same two may merge.
    CGestureCommand(const QString& name, const void* changedThing, int changedPart, float valueBefore, float valueAfter,
                    Set setValue);

    int id() const override { return 1; }
    bool mergeWith(const QUndoCommand* other) override;
    void redo() override;
    void undo() override { set(before); }

private:
    const void* thing;
    int part;
    float before;
    float after;
    Set set;
    std::uint32_t time;
    bool done = true;
};

}  // namespace quib
