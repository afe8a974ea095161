// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CChanges.h"

#include <utility>

#include "document/EditCommands.h"

namespace quib {

namespace {
constexpr int kUndoSteps = 500;
}

CChanges::CChanges(CGraveyard& engineGraveyard) : graveyard(engineGraveyard) {
    undo.setUndoLimit(kUndoSteps);
    connect(&undo, &QUndoStack::indexChanged, this, [this] {
        ++revision;
        TellModified();
    });
    connect(&undo, &QUndoStack::cleanChanged, this, &CChanges::TellModified);
}

CChanges::~CChanges() { undo.disconnect(this); }

void CChanges::Push(const QString& name, std::function<void()> forth, std::function<void()> back) {
    undo.push(new CChangeCommand(name, std::move(forth), std::move(back)));
}

void CChanges::PushDone(const QString& name, std::function<void()> forth, std::function<void()> back,
                        const void* mergeWith) {
    undo.push(new CChangeCommand(name, std::move(forth), std::move(back), true, mergeWith));
}

void CChanges::PushValue(const QString& name, const void* thing, int part, float before, float after,
                         std::function<void(float)> set) {
    undo.push(new CGestureCommand(name, thing, part, before, after, std::move(set)));
}

void CChanges::Undo() {
    Settle();
    undo.undo();
}

void CChanges::Redo() {
    Settle();
    undo.redo();
}

void CChanges::Touch() {
    ++revision;
    touched = true;
    TellModified();
}

void CChanges::SetClean() {
    touched = false;
    undo.setClean();
    TellModified();
}

void CChanges::TellModified() {
    if (toldModified == IsModified()) return;
    toldModified = IsModified();
    Q_EMIT ModifiedChanged(toldModified);
}

}  // namespace quib
