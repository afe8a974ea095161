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

namespace {
constexpr int kTitleWidth = 28;
constexpr int kEditWidth = 26;
constexpr int kRowHeight = 28;
constexpr int kColumns = 3;
}  // namespace

CEffectsPanel::CEffectsPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, 0, consoleLayout::kBar2Top, 0, consoleLayout::kBar2Height), context(consoleContext) {}

// Two columns of send effects, and behind a line those of the master.
void CEffectsPanel::Build() {
    ClearChildren();
    rows.clear();
    const int pitch = (Width() - 10) / kColumns;
    for (int index = 0; index < kSendCount + kInsertCount; ++index) {
        const QRect area(6 + index / 2 * pitch, 6 + index % 2 * 32, pitch - 6, kRowHeight);
        const int insert = index - kSendCount;
        if (insert < 0) {
            AddRow(area, {SlotPlace::EKind::kEffect, 0, index}, QStringLiteral("S%1").arg(index + 1), nullptr);
            continue;
        }
        CValue& on = context.station.Audio().settings.masterInsertOn[static_cast<std::size_t>(insert)];
        AddRow(area, {SlotPlace::EKind::kMasterInsert, 0, insert}, QStringLiteral("M%1").arg(insert + 1), &on);
    }
    auto& line = AddChild<CLabelCtrl>(0U, 6 + 2 * pitch - 5, 6, 1, Height() - 12);
    PaintChildren();
    line.fill = Palette().Colour(QStringLiteral("edge"));
    for (const auto& child : Children()) child->section = ESection::kEffects;
    ShowSlots();
}

void CEffectsPanel::AddRow(const QRect& area, const SlotPlace& place, const QString& title, CValue* onSwitch) {
    Row row{place, 0, nullptr, nullptr, nullptr, nullptr};
    const int top = area.top();
    if (onSwitch != nullptr) {
        row.on = &AddChild<CSwitchCtrl>(0U, area.left(), top, kTitleWidth - 2, kRowHeight, onSwitch, title);
        BindValue(*row.on, context, "Master insert", 450);
        row.on->disabledInfo = 512;
    } else {
        row.title = &AddChild<CLabelCtrl>(0U, area.left(), top, kTitleWidth - 2, kRowHeight, title);
        row.title->fontHeight = 12;
        row.title->strong = true;
    }
    CWinControl& window = Owner();
    const int room = area.width() - kTitleWidth - kEditWidth - 2;
    const int left = area.left() + kTitleWidth;
    row.room = room;
    row.label =
        &AddChild<CLabelMenuCtrl>(0U, left, top, room, kRowHeight, QString(), [this, place, &window](QMenu& menu) {
            const auto slot = context.station.Places().Slot(place);
            const bool empty = slot && !slot->plugin && !slot->missing;
            if (empty && context.actions.browse) return context.actions.browse({place});
            FillSlotMenu(menu, context, place, &window);
        });
    row.label->name = title;
    row.label->infoString = onSwitch != nullptr ? 450 : 449;
    row.label->fontHeight = 12;
    row.edit = &AddChild<CSwitchCtrl>(0U, left + room + 2, top, kEditWidth, kRowHeight, nullptr, picture::kGlyphEdit);
    row.edit->name = QStringLiteral("%1, %2").arg(title, Text("Edit"));
    row.edit->momentary = true;
    row.edit->flat = true;
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
        const bool vacant = !slot || (!slot->plugin && !slot->missing);
        row.label->textColour = Palette().Colour(filled ? QStringLiteral("text") : QStringLiteral("textDim"));
        row.label->SetText(SlotText(slot.get(), Text("+ add effect")));
        row.label->vacant = vacant;
        row.label->struckWhileOff = filled && row.on != nullptr ? row.on->Value() : nullptr;
        row.edit->enabled = filled;
        row.label->SetSize(vacant ? row.room + kEditWidth + 2 : row.room, kRowHeight);
        row.edit->SetVisible(!vacant);
        if (row.on != nullptr) row.on->enabled = filled;
        if (row.title == nullptr) continue;
        row.title->textColour =
            filled ? Palette().Accent(ESection::kEffects) : Palette().Colour(QStringLiteral("textDim"));
    }
    Refresh();
}

}  // namespace quib
