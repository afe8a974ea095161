// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/EditCommands.h"

#include <utility>

#include "platform/Clock.h"

namespace quib {

CChangeCommand::CChangeCommand(const QString& name, Change forthChange, Change backChange, bool isDone,
                               const void* mergeThing)
    : QUndoCommand(name),
      forth(std::move(forthChange)),
      back(std::move(backChange)),
      done(isDone),
      thing(mergeThing),
      time(Milliseconds()) {}

bool CChangeCommand::mergeWith(const QUndoCommand* other) {
    const auto* const next = static_cast<const CChangeCommand*>(other);
    if (next->thing != thing || next->text() != text() || next->time - time > kMergeMilliseconds) return false;
    forth = next->forth;
    time = next->time;
    return true;
}

void CChangeCommand::redo() {
    if (!std::exchange(done, false)) forth();
}

CGestureCommand::CGestureCommand(const QString& name, const void* changedThing, int changedPart, float valueBefore,
                                 float valueAfter, Set setValue)
    : QUndoCommand(name),
      thing(changedThing),
      part(changedPart),
      before(valueBefore),
      after(valueAfter),
      set(std::move(setValue)),
      time(Milliseconds()) {}

bool CGestureCommand::mergeWith(const QUndoCommand* other) {
    const auto* const next = static_cast<const CGestureCommand*>(other);
    if (next->thing != thing || next->part != part || next->time - time > kMergeMilliseconds) return false;
    after = next->after;
    time = next->time;
    setObsolete(after == before);
    return true;
}

// The gesture itself has set the value already.
void CGestureCommand::redo() {
    if (!std::exchange(done, false)) set(after);
}

}  // namespace quib
