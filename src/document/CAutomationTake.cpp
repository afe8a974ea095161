// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CAutomationTake.h"

#include <QUndoStack>
#include <algorithm>

#include "document/EditCommands.h"

namespace quib {

void CAutomationTake::WillRecord(const std::shared_ptr<CInstrument>& instrument) {
    const bool isKnown = std::any_of(changes.begin(), changes.end(),
                                     [&](const Change& change) { return change.instrument == instrument; });
    if (!isKnown) changes.push_back({instrument, instrument->midiLanes.ForEdit()});
}

void CAutomationTake::Finish(const QString& name, QUndoStack& undo, CGraveyard& graveyard) {
    undo.beginMacro(name);
    for (const Change& change : changes) {
        const auto publish = [change, &graveyard](const std::shared_ptr<const CEventLanes>& content) {
            change.instrument->midiLanes.Publish(content, graveyard);
        };
        undo.push(new CChangeCommand(
            name, [publish, after = change.instrument->midiLanes.ForEdit()] { publish(after); },
            [publish, before = change.before] { publish(before); }, true));
    }
    undo.endMacro();
    changes.clear();
}

}  // namespace quib
