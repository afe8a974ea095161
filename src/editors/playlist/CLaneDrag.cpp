// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CLaneDrag.h"

#include "editors/playlist/CPlayListCtrlEx.h"
#include "texts/Texts.h"

namespace quib {

void CLaneDrag::Follow(CPlayListCtrlEx& source, CPlayListCtrlEx* over) {
    CPlayListCtrlEx* const next = over != &source && source.Gestures().IsMovingItems() ? over : nullptr;
    if (target != nullptr && target != next) target->ShowGuests({});
    const bool another = target != next;
    target = next;
    source.Gestures().SetElsewhere(target != nullptr);
    if (target == nullptr) return;
    std::vector<StepRange> guests;
    for (const std::uint32_t item : source.Edit().State().selection) {
        StepRange range = source.Edit().ItemRange(static_cast<std::int32_t>(item), station.Song().Steps());
        range.first += source.Gestures().DragSteps();
        range.end += source.Gestures().DragSteps();
        guests.push_back(range);
    }
    target->ShowGuests(std::move(guests));
    if (!another) return;
    host.Tell(Text("The patterns are copied, too: a number means another pattern with %1.")
                  .arg(QString::fromStdString(target->Instrument().title)));
}

bool CLaneDrag::Drop(CPlayListCtrlEx& source) {
    CPlayListCtrlEx* const onto = std::exchange(target, nullptr);
    if (onto == nullptr) return false;
    onto->ShowGuests({});
    const int steps = source.Gestures().DragSteps();
    const bool copies = source.Gestures().IsCopying();
    source.Gestures().Cancel();
    Move(source, *onto, steps, copies);
    return true;
}

bool CLaneDrag::Move(CPlayListCtrlEx& source, CPlayListCtrlEx& onto, int steps, bool copies) {
    QString told;
    const auto placed = station.Song().MoveToInstrument(source.Edit().Instrument(), onto.Edit().Instrument(),
                                                        source.Edit().State(), steps, copies, told);
    host.Tell(told);
    if (!placed) return false;
    host.MakeCurrent(onto);
    onto.Edit().Select(*placed);
    onto.DocumentChanged();
    return true;
}

}  // namespace quib
