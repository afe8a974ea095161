// SPDX-License-Identifier: GPL-3.0-or-later
#include <QMenu>

#include "app/console/CMasterPanels.h"
#include "app/console/SlotMenu.h"
#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

CEffectsPanel::CEffectsPanel(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                             const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, left, top, kWidth, newHeight), context(consoleContext) {
    for (int index = 0; index < kSendCount; ++index) {
        AddRow(8 + 21 * index, {SlotPlace::EKind::kEffect, 0, index}, QStringLiteral("S%1").arg(index + 1), nullptr);
    }
    for (int index = 0; index < kInsertCount; ++index) {
        CValue& on = context.station.Audio().settings.masterInsertOn[static_cast<std::size_t>(index)];
        AddRow(95 + 21 * index, {SlotPlace::EKind::kMasterInsert, 0, index}, QStringLiteral("M%1").arg(index + 1), &on);
    }
    for (const auto& child : Children()) child->section = ESection::kEffects;
    PaintChildren();
    ShowSlots();
}

void CEffectsPanel::AddRow(int top, const SlotPlace& place, const QString& title, CValue* onSwitch) {
    Row row{place, nullptr, nullptr, nullptr};
    if (onSwitch != nullptr) {
        row.on = &AddChild<CSwitchCtrl>(0U, 8, top, 26, 19, onSwitch, title);
        BindValue(*row.on, context, "Master insert", 450);
        row.on->disabledInfo = 512;
    } else {
        auto& label = AddChild<CLabelCtrl>(0U, 8, top, 26, 19, title);
        label.alignment = Qt::AlignCenter;
        label.textColour = Palette().Accent(ESection::kEffects);
        label.strong = true;
    }
    CWinControl& window = Owner();
    row.label = &AddChild<CLabelMenuCtrl>(0U, 38, top, 136, 19, QString(), [this, place, &window](QMenu& menu) {
        const auto slot = context.station.Places().Slot(place);
        const bool empty = slot && !slot->plugin && !slot->missing;
        if (empty && context.actions.browse) return context.actions.browse({place});
        FillSlotMenu(menu, context, place, &window);
    });
    row.label->name = title;
    row.edit->name = QStringLiteral("%1, %2").arg(title, Text("Edit"));
    row.label->infoString = onSwitch != nullptr ? 450 : 449;
    row.edit = &AddChild<CSwitchCtrl>(0U, 177, top, 26, 19, nullptr, picture::kGlyphEdit);
    row.edit->momentary = true;
    row.edit->infoString = 451;
    row.edit->disabledInfo = 511;
    row.edit->onChange = [this, place](CControl&) {
        if (context.actions.openPlugin) context.actions.openPlugin(place);
    };
    rows.push_back(row);
}

void CEffectsPanel::ListSlots(std::vector<SlotField>& fields) const {
    for (const Row& row : rows) fields.push_back({row.place, row.label});
}

void CEffectsPanel::ShowSlots() {
    for (const Row& row : rows) {
        const auto slot = context.station.Places().Slot(row.place);
        const bool filled = slot && slot->plugin;
        row.label->textColour = Palette().Colour(filled ? QStringLiteral("text") : QStringLiteral("textOff"));
        row.label->SetText(SlotText(slot.get(), Text("no effect")));
        row.label->sunken = filled;
        row.label->struckWhileOff = filled && row.on != nullptr ? row.on->Value() : nullptr;
        row.edit->enabled = filled;
        if (row.on != nullptr) row.on->enabled = filled;
    }
    Refresh();
}

}  // namespace quib
