// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/ToolTable.h"

#include <algorithm>
#include <array>

#include "editors/arpeggiator/CWinControlArpeggiator.h"
#include "editors/automation/CWinControlParamEvent.h"
#include "editors/ball/CWinControlBall.h"
#include "editors/loopcreator/CWinControlLoopCreator.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "editors/rhythm/CWinControlRhythm.h"
#include "editors/tutorial/CWinControlTutorial.h"
#include "texts/Texts.h"

namespace quib {

namespace {

template <class Window>
std::unique_ptr<CToolWindow> Make(const ToolContext& context, const ToolRow& row, QWidget* parent) {
    return std::make_unique<Window>(context, row, parent);
}

const std::array kRows = {
    ToolRow{ETool::kPianoRoll,
            "PianoRoll",
            TextKey("Piano roll"),
            {900, 600},
            false,
            false,
            Qt::Key_F2,
            Make<CWinControlPianoRoll>},
    ToolRow{ETool::kAutomation,
            "ParamEvent",
            TextKey("Automation"),
            {900, 500},
            false,
            false,
            Qt::Key_F3,
            Make<CWinControlParamEvent>},
    ToolRow{ETool::kArpeggiator,
            "Arpeggiator",
            TextKey("Arpeggiator"),
            {270, 150},
            true,
            true,
            Qt::Key_F4,
            Make<CWinControlArpeggiator>},
    ToolRow{ETool::kBall, "Ball", TextKey("Ball pad"), {445, 436}, true, false, Qt::Key_F5, Make<CWinControlBall>},
    ToolRow{ETool::kRhythm,
            "Rhythm",
            TextKey("Rhythm detector"),
            {1000, 604},
            false,
            false,
            Qt::Key_F7,
            Make<CWinControlRhythm>},
    ToolRow{ETool::kLoopCreator,
            "LoopCreator",
            TextKey("Loop creator"),
            {1120, 648},
            false,
            false,
            Qt::Key_F8,
            Make<CWinControlLoopCreator>},
    ToolRow{ETool::kTutorial,
            "Tutorial",
            TextKey("Tutorial"),
            {640, 580},
            true,
            true,
            Qt::Key_unknown,
            Make<CWinControlTutorial>},
};

}  // namespace

std::span<const ToolRow> ToolTable() { return kRows; }

const ToolRow* FindTool(ETool tool) {
    const auto found =
        std::find_if(kRows.begin(), kRows.end(), [tool](const ToolRow& row) { return row.tool == tool; });
    return found == kRows.end() ? nullptr : &*found;
}

}  // namespace quib
