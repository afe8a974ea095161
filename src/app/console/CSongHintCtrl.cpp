// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CSongHintCtrl.h"

#include "app/console/CSongModeCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

CSongHintCtrl::CSongHintCtrl(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, 0, 0, 100, kHeight), context(consoleContext) {
    CWorkstation& station = context.station;
    int left = 10;
    const auto button = [&](const QString& text, int info, const std::function<void()>& run) {
        const int room = static_cast<int>(CCanvas::TextWidth(text, 11, true)) + 24;
        auto& made = AddChild<CSwitchCtrl>(0U, left, 8, room, kHeight - 16, nullptr, text);
        made.momentary = true;
        made.section = ESection::kTransport;
        made.infoString = info;
        made.onChange = [run](CControl&) { run(); };
        left += room + 8;
    };
    button(Text("Play the patterns"), 503, [&station] { SetSongMode(station, false); });
    button(Text("Put the selected patterns into the song"), 504, [&station] { station.Song().PutSelectedPatterns(); });
    textLeft = left + 8;
    PaintChildren();
}

void CSongHintCtrl::Draw() {
    CPanelCtrl::Draw();
    Canvas().Text(QRectF(X() + textLeft, Y(), Width() - textLeft - 8, Height()),
                  Text("The song is empty, so it plays silence."), Palette().Colour(QStringLiteral("text")), 13,
                  Qt::AlignLeft | Qt::AlignVCenter, true);
}

}  // namespace quib
