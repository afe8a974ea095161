// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the console shows the places for plug-ins, and which of them a plug-in that is dropped at a point goes to.
// User-interface thread.

#include <QRect>
#include <optional>
#include <vector>

#include "document/CPluginPlaces.h"

namespace quib {

class CControl;
class CWinControlMain;

// A control that shows a place.
struct SlotField {
    SlotPlace place;
    const CControl* control;
};

// A part of the console that has such controls.
class CSlotOwner {
public:
    virtual ~CSlotOwner() = default;
    virtual void ListSlots(std::vector<SlotField>& fields) const = 0;
    // The instrument whose strip it is; 0: none.
    virtual std::uint32_t InstrumentId() const { return 0; }
};

// Where something dropped goes, and what of the screen stands for it. Without a place: a new instrument.
struct DropPlace {
    std::optional<SlotPlace> place;
    QRect area;
};

// An instrument goes to the strip below the point, else it is a new one; an effect to the field below the point,
// else to the first free insert of the strip. Nothing where it can go nowhere. `point` is one of the screen.
std::optional<DropPlace> DropPlaceAt(const CWinControlMain& console, const CPluginPlaces& places, ESlotKind kind,
                                     const QPoint& point);
// The first free insert of the instrument, or where there is no instrument the first free send effect.
std::optional<SlotPlace> FreeEffectPlace(const CPluginPlaces& places, std::uint32_t instrument);
// The strip (of effects and the master: the panel) that has a place, the field that shows it, and the lower edge of
// the panels above the strips; of the screen.
struct StripSight {
    QRect strip;
    QRect field;
    int bandBottom = 0;
};
// Nothing while the place is not in sight.
std::optional<StripSight> SightOf(const CWinControlMain& console, const SlotPlace& place);
// Of the screen; empty while the place is not in sight.
QRect AreaOf(const CWinControlMain& console, const SlotPlace& place);

}  // namespace quib
