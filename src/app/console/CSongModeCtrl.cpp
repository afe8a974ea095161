// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CSongModeCtrl.h"

#include <algorithm>
#include <cmath>

#include "app/learn/LearnMenu.h"
#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "editors/playlist/LaunchMenu.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kTextHeight = 12;
constexpr int kInset = 2;     // of the halves in their frame
constexpr int kSymbol = 22;   // pixels before a word
constexpr int kMinimum = 94;  // of a half with a symbol

int RoomOf(const char* word, bool symbol) {
    const int letters = static_cast<int>(std::ceil(CCanvas::TextWidth(Text(word), kTextHeight, true)));
    return symbol ? std::max(kMinimum, letters + kSymbol + 16) : letters + 12;
}
}  // namespace

CSongModeCtrl::CSongModeCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                             CWorkstation& workstation, bool withSymbols)
    : CControl(window, number, left, top,
               RoomOf(TextKey("SONG"), withSymbols) + RoomOf(TextKey("PATTERN"), withSymbols) + 2 * kInset, newHeight,
               &workstation.Audio().settings.songMode),
      station(workstation),
      symbols(withSymbols) {
    hoverLook = true;
    name = Text("Song mode");
    infoString = 433;
    learns = station.Controllers().TargetOf(nullptr, Value());
    onAlternativeClick = [this](CControl&) {
        PopUpMenu(Owner(), [this](QMenu& menu) {
            FillLaunchMenu(menu, station);
            menu.addSeparator();
            AddLearnItems(menu, station.Controllers(), *learns);
        });
    };
}

QRectF CSongModeCtrl::Half(bool song) const {
    const int first = RoomOf(TextKey("SONG"), symbols);
    const qreal left = X() + kInset + (song ? 0 : first);
    return {left, qreal(Y() + kInset), qreal(song ? first : Width() - 2 * kInset - first),
            qreal(Height() - 2 * kInset)};
}

void CSongModeCtrl::OnMouseMove(int /*px*/, int /*py*/) { Owner().setCursor(Qt::PointingHandCursor); }

void CSongModeCtrl::OnMouseLeave() { Owner().unsetCursor(); }

void CSongModeCtrl::OnLButtonDown(int px, int /*py*/, int button) {
    if (button == 0) SetSongMode(station, IsSongAt(px));
    Update(false, true);
}

ControlPart CSongModeCtrl::PartAt(int part) const {
    return {Text(part == 0 ? TextKey("SONG") : TextKey("PATTERN")), {}, Half(part == 0).toRect(), part == ChosenPart()};
}

// The one that holds is filled, the other one is a word on the ground.
void CSongModeCtrl::Draw() {
    const bool song = station.Audio().settings.songMode.IsOn();
    const CPalette& palette = Palette();
    Canvas().Fill(Rectangle(), backgroundColour);
    Canvas().Box(QRectF(Rectangle()), 4, palette.Colour(QStringLiteral("well")),
                 palette.Colour(hovered ? QStringLiteral("textDim") : QStringLiteral("edge")));
    for (const bool half : {true, false}) {
        const bool holds = half == song;
        const QRectF area = Half(half);
        if (holds) Canvas().FillRound(area, 3, palette.Accent(section));
        const QRgb colour = palette.Colour(holds ? QStringLiteral("onAccent") : QStringLiteral("textMuted"));
        const QString word = Text(half ? TextKey("SONG") : TextKey("PATTERN"));
        if (!symbols) {
            Canvas().Text(area, word, colour, kTextHeight, Qt::AlignCenter, holds);
            continue;
        }
        const qreal whole = kSymbol + CCanvas::TextWidth(word, kTextHeight, holds);
        const qreal left = std::round(area.center().x() - whole / 2);
        Canvas().Glyph(Skin(), half ? picture::kGlyphSong : picture::kGlyphPattern, {left + 8, area.center().y()},
                       colour);
        Canvas().Text({left + kSymbol, area.top(), area.right() - left - kSymbol, area.height()}, word, colour,
                      kTextHeight, Qt::AlignLeft | Qt::AlignVCenter, holds);
    }
}

}  // namespace quib
