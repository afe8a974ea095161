// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/SlotFields.h"

#include "app/console/CWinControlMain.h"

namespace quib {

namespace {

QRect OnScreen(const CWinControlMain& console, const CControl& control) {
    const QRect area = console.ToWidget(control.ShownRectangle());
    return area.isEmpty() ? QRect() : QRect(console.mapToGlobal(area.topLeft()), area.size());
}

bool IsFree(const CPluginPlaces& places, const SlotPlace& place) {
    const auto slot = places.Slot(place);
    return slot && !slot->plugin && !slot->missing;
}

}  // namespace

std::optional<SlotPlace> FreeEffectPlace(const CPluginPlaces& places, std::uint32_t instrument) {
    const bool isSend = instrument == 0;
    for (int index = 0; index < (isSend ? kSendCount : kInsertCount); ++index) {
        const SlotPlace place{isSend ? SlotPlace::EKind::kEffect : SlotPlace::EKind::kInsert, instrument, index};
        if (IsFree(places, place)) return place;
    }
    return std::nullopt;
}

QRect AreaOf(const CWinControlMain& console, const SlotPlace& place) {
    const auto sight = SightOf(console, place);
    return sight ? sight->field : QRect();
}

std::optional<StripSight> SightOf(const CWinControlMain& console, const SlotPlace& place) {
    StripSight sight;
    for (const auto& top : console.Controls()) {
        const auto* const owner = dynamic_cast<const CSlotOwner*>(top.get());
        if (owner == nullptr) continue;
        if (owner->InstrumentId() == 0) sight.bandBottom = OnScreen(console, *top).bottom();
        std::vector<SlotField> fields;
        owner->ListSlots(fields);
        for (const SlotField& field : fields) {
            if (field.place.kind != place.kind || field.place.index != place.index ||
                field.place.instrument != place.instrument) {
                continue;
            }
            sight.strip = OnScreen(console, *top);
            sight.field = OnScreen(console, *field.control);
        }
    }
    if (sight.field.isEmpty()) return std::nullopt;
    return sight;
}

std::optional<DropPlace> DropPlaceAt(const CWinControlMain& console, const CPluginPlaces& places, ESlotKind kind,
                                     const QPoint& point) {
    const bool isInstrument = kind == ESlotKind::kInstrument;
    const QRect whole(console.mapToGlobal(QPoint(0, 0)), console.size());
    if (!whole.contains(point)) return std::nullopt;
    for (const auto& top : console.Controls()) {
        const auto* const owner = dynamic_cast<const CSlotOwner*>(top.get());
        const QRect area = OnScreen(console, *top);
        if (owner == nullptr || !area.contains(point)) continue;
        const std::uint32_t id = owner->InstrumentId();
        if (isInstrument) {
            if (id == 0) return std::nullopt;
            return DropPlace{SlotPlace{SlotPlace::EKind::kInstrument, id, 0}, area};
        }
        std::vector<SlotField> fields;
        owner->ListSlots(fields);
        for (const SlotField& field : fields) {
            const QRect fieldArea = OnScreen(console, *field.control);
            if (field.place.kind != SlotPlace::EKind::kInstrument && fieldArea.contains(point)) {
                return DropPlace{field.place, fieldArea};
            }
        }
        const auto free = id != 0 ? FreeEffectPlace(places, id) : std::nullopt;
        if (!free) return std::nullopt;
        return DropPlace{free, area};
    }
    return isInstrument ? std::optional(DropPlace{std::nullopt, whole}) : std::nullopt;
}

}  // namespace quib
