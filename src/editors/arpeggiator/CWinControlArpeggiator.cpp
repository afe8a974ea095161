// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/arpeggiator/CWinControlArpeggiator.h"

#include "controls/CArpeggiatorCtrl.h"

namespace quib {

CWinControlArpeggiator::CWinControlArpeggiator(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent) {
    Build();
}

void CWinControlArpeggiator::Build() {
    RemoveAll();
    panel = &Add<CArpeggiatorCtrl>(0U, 0, 0, ArpeggiatorValues());
    panel->SetGesture([this](CControl& changed, float before) {
        Document().Changes().ValueEdited(Part(shown, *changed.Value()), before, changed.ValueNow(), changed.name);
    });
}

void CWinControlArpeggiator::Translate() {
    Build();
    ShowSelection();
    LayoutAndRefresh();
}

void CWinControlArpeggiator::ShowSelection() {
    const auto next = Instrument();
    ArpeggiatorValues values;
    if (next) {
        ArpeggiatorSettings& own = next->arpeggiator;
        values = {&own.on,       &own.mode,     &own.hole,     &own.ext,   &own.extMode,
                  &own.velocity, &own.interval, &own.gateTime, &own.tempo, &next->keyboardOn};
    }
    panel->BindTo(values);
    shown = next;
}

}  // namespace quib
