// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CAutomationTake.h"

#include <QUndoStack>
#include <algorithm>

#include "app/EditCommands.h"

namespace quib {

void CAutomationTake::Add(const std::shared_ptr<const void>& owner, CPublished<CEventLanes>& lanes,
                          const EngineNotice& point, CGraveyard& graveyard) {
    const bool isKnown =
        std::any_of(changes.begin(), changes.end(), [&](const Change& change) { return change.lanes == &lanes; });
    const auto before = lanes.ForEdit();
    PointList points;
    if (const PointList* const old = before->Find(point.pattern, point.lane)) points = *old;
    points.push_back({point.x, point.y});
    if (!isKnown) changes.push_back({owner, &lanes, before});
    lanes.Publish(std::make_shared<const CEventLanes>(before->With(point.pattern, point.lane, std::move(points))),
                  graveyard);
}

void CAutomationTake::Finish(const QString& name, QUndoStack& undo, CGraveyard& graveyard) {
    undo.beginMacro(name);
    for (const Change& change : changes) {
        const auto publish = [change, &graveyard](const std::shared_ptr<const CEventLanes>& content) {
            change.lanes->Publish(content, graveyard);
        };
        undo.push(new CChangeCommand(
            name, [publish, after = change.lanes->ForEdit()] { publish(after); },
            [publish, before = change.before] { publish(before); }, true));
    }
    undo.endMacro();
    changes.clear();
}

}  // namespace quib
