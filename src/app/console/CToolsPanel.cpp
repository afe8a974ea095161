// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CMasterPanels.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {

struct Plan {
    int glyph;
    ETool tool;
    const char* word;
    int infoString;
};

constexpr std::array<Plan, 6> kPlans = {{{picture::kGlyphPianoRoll, ETool::kPianoRoll, TextKey("Piano roll"), 442},
                                         {picture::kGlyphAutomation, ETool::kAutomation, TextKey("Automation"), 443},
                                         {picture::kGlyphArpeggiator, ETool::kArpeggiator, TextKey("Arpeggiator"), 444},
                                         {picture::kGlyphBall, ETool::kBall, TextKey("Ball pad"), 445},
                                         {picture::kGlyphPlaylist, ETool::kPlaylist, TextKey("Playlist"), 446},
                                         {picture::kGlyphHelp, ETool::kTutorial, TextKey("Tutorial"), 447}}};

constexpr int kWordsWidth = 250;  // from which the symbols have words

}  // namespace

CToolsPanel::CToolsPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, consoleLayout::kMargin, consoleLayout::kBar2Top, 0, consoleLayout::kBar2Height),
      CTicked(window),
      context(consoleContext) {}

void CToolsPanel::Build() {
    ClearChildren();
    const int pitch = (Width() - 12 + 2) / 3;
    for (std::size_t index = 0; index < kPlans.size(); ++index) {
        const Plan& plan = kPlans[index];
        const int place = static_cast<int>(index);
        auto& button = AddChild<CSwitchCtrl>(0U, 6 + place % 3 * pitch, 6 + place / 3 * 32, pitch - 2, 28,
                                             &shown[index], plan.glyph);
        if (Width() >= kWordsWidth) button.label = Text(plan.word);
        button.momentary = true;
        button.infoString = plan.infoString;
        button.enabled = context.actions.hasTool && context.actions.hasTool(plan.tool);
        button.onChange = [this, tool = plan.tool](CControl&) {
            if (context.actions.openTool) context.actions.openTool(tool);
        };
        buttons[index] = &button;
    }
    PaintChildren();
}

// A window that is open is a lit button.
void CToolsPanel::Tick() {
    if (!context.actions.isToolOpen || buttons[0] == nullptr) return;
    for (std::size_t index = 0; index < kPlans.size(); ++index) {
        const float open = context.actions.isToolOpen(kPlans[index].tool) ? 1.0F : 0.0F;
        if (open != shown[index].Get()) buttons[index]->SetValueAndUpdate(false, true, open);
    }
}

}  // namespace quib
