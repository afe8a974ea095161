// SPDX-License-Identifier: GPL-3.0-or-later
// An instrument's strip while it is closed: one row of what is played with, and a menu of the rest.
#include <QMenu>

#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CPatternLineCtrl.h"
#include "app/console/SlotMenu.h"
#include "app/console/StripColumns.h"
#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

void CInstrumentStripCtrl::BuildClosed(int newWidth) {
    const ClosedColumns columns = ClosedColumns::For(newWidth);
    gripLeft = columns.mute - 14;
    AddName(columns.nameWidth - 14);
    const int left = columns.mute;
    AddMuteAndSolo({left, 6, 28, 28}, {left + 32, 6, 28, 28});
    ChannelStrip& strip = instrument->strip;
    AddStripSwitch({left + 72, 8, 24, 24}, strip.crossfadeA, QStringLiteral("A"), 474);
    AddStripSwitch({left + 98, 8, 24, 24}, strip.crossfadeB, QStringLiteral("B"), 475);
    AddLevel({columns.level, 10, columns.levelWidth, 20}, {columns.level + columns.levelWidth, 8, 50, 24});
    AddMeter({columns.meter, 12, columns.meterWidth, 16});
    AddCells(columns.cells, 5, columns.cellPitch, 26);
    AddChild<CPatternLineCtrl>(0U, columns.cells, 33, 16 * columns.cellPitch - 2, 3, [this] {
        const auto pattern = instrument->patterns[static_cast<std::size_t>(ShownPattern())].ForEdit();
        if (playingStep < 0) return 0.0F;
        return static_cast<float>(playingStep + 1) / static_cast<float>(pattern->LoopLength());
    });
    AddPresets(columns.presets, 8, columns.presetsWidth);
    const int right = newWidth - 6;
    AddLamp(right - 74, 14);
    AddButton({right - 56, 7, 26, 26}, picture::kGlyphPianoRoll, 442, HasTool(ETool::kPianoRoll),
              [this] { OpenTool(ETool::kPianoRoll); });
    auto& more = AddButton({right - 28, 7, 26, 26}, picture::kGlyphMore, 670, true,
                           [this] { PopUpMenu(Owner(), [this](QMenu& menu) { FillMore(menu); }); });
    more.captureOnClick = false;
}

void CInstrumentStripCtrl::FillMore(QMenu& menu) {
    const std::uint32_t id = instrument->Id();
    CWinControl& window = Owner();
    menu.addAction(Text("Open the strip"), [this] { ToggleCollapsed(); });
    menu.addSeparator();
    FillSlotMenu(*menu.addMenu(Text("Plug-in")), context, {SlotPlace::EKind::kInstrument, id, 0}, &window);
    for (int index = 0; index < kInsertCount; ++index) {
        QMenu* const insert = menu.addMenu(Text("Insert %1").arg(index + 1));
        FillSlotMenu(*insert, context, {SlotPlace::EKind::kInsert, id, index}, &window);
    }
    FillMidiMenu(*menu.addMenu(Text("MIDI input")), context, id, &window);
    menu.addSeparator();
    struct Plan {
        const char* title;
        ETool tool;
    };
    for (const Plan& plan : {Plan{TextKey("Automation"), ETool::kAutomation}, Plan{TextKey("Ball pad"), ETool::kBall},
                             Plan{TextKey("Arpeggiator"), ETool::kArpeggiator}}) {
        if (HasTool(plan.tool)) menu.addAction(Text(plan.title), [this, tool = plan.tool] { OpenTool(tool); });
    }
    menu.addSeparator();
    AddMoreSwitches(menu);
}

// Switches that a closed strip has no room for, each a step of undo.
void CInstrumentStripCtrl::AddMoreSwitches(QMenu& menu) {
    const auto add = [&](const QString& what, CValue& toggled, bool rebuilds) {
        QAction* const action = menu.addAction(what, [this, what, &toggled, rebuilds, held = instrument] {
            const float before = toggled.Get();
            toggled.Set(before != 0.0F ? 0.0F : 1.0F);
            std::function<void()> tell;
            if (rebuilds) {
                tell = [&station = context.station, id = held->Id()] {
                    station.Changes().Tell({EChange::kInstrument, id});
                };
            }
            context.station.Changes().ValueEdited(Part(held, toggled), before, toggled.Get(), what, tell);
            if (tell) tell();
        });
        action->setCheckable(true);
        action->setChecked(toggled.IsOn());
    };
    add(Text("Arpeggiator on"), instrument->arpeggiator.on, false);
    add(Text("Keyboard"), instrument->keyboardOn, true);
    add(Text("Synchro"), instrument->strip.synchro, false);
    add(Text("Equaliser"), instrument->strip.eqOn, false);
}

}  // namespace quib
