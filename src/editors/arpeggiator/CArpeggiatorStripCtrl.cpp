// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/arpeggiator/CArpeggiatorStripCtrl.h"

#include <algorithm>

#include "controls/CWinControl.h"
#include "controls/Colours.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kStep = 8;  // skin pixels
constexpr int kHeight = 28;
}  // namespace

CArpeggiatorStripCtrl::CArpeggiatorStripCtrl(CWinControl& window, std::uint32_t number, int left, int top)
    : CControl(window, number, left, top, kSteps * kStep, kHeight) {}

void CArpeggiatorStripCtrl::Show(std::vector<Note> next, bool isSilent) {
    if (next == notes && isSilent == silent) return;
    notes = std::move(next);
    silent = isSilent;
    Refresh();
}

void CArpeggiatorStripCtrl::Draw() {
    Canvas().Fill(Rectangle(), Colour("glass"));
    if (silent)
        return Canvas().Text(QRectF(Rectangle()), Text("Keys are silent: show the strip's keyboard"), Colour("warning"),
                             10);
    if (notes.empty()) return Canvas().Text(QRectF(Rectangle()), Text("Hold keys to hear it"), Colour("textMuted"), 10);
    // Not behind a text, which they would strike through.
    for (int step = 0; step < kSteps; step += 4) {
        Canvas().Fill(QRectF(X() + step * kStep, Y(), 1, kHeight), Colour(step % 16 == 0 ? "gridBar" : "gridBeat"));
    }
    const auto [lowest, highest] =
        std::minmax_element(notes.begin(), notes.end(), [](const Note& a, const Note& b) { return a.key < b.key; });
    const double span = std::max(1, highest->key - lowest->key);
    for (const Note& note : notes) {
        const double share = (note.key - lowest->key) / span;
        const double left = X() + static_cast<double>(note.position) * kStep;
        const double wide = std::clamp(static_cast<double>(note.length) * kStep, 1.0, kStep - 1.0);
        const float bright = 0.3F + 0.7F * static_cast<float>(note.velocity) / 127;
        Canvas().Fill(QRectF(left, Y() + 3 + (1 - share) * (kHeight - 9), wide, 3),
                      Mix(Colour("glass"), Palette().Accent(ESection::kKeyboard), bright));
    }
}

}  // namespace quib
