// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CSongModeCtrl.h"

#include <cmath>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kTextHeight = 11;
constexpr qreal kRoom = 14;  // beside a word

qreal RoomOf(const char* word) { return CCanvas::TextWidth(Text(word), kTextHeight, true) + kRoom; }
}  // namespace

void SetSongMode(CWorkstation& station, bool on) {
    CValue& mode = station.Audio().settings.songMode;
    const float before = mode.Get();
    const float after = on ? 1.0F : 0.0F;
    mode.Set(after);
    station.Changes().ValueEdited(EnginePart(mode), before, after, Text("Song mode"));
}

CSongModeCtrl::CSongModeCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                             CWorkstation& workstation)
    : CControl(window, number, left, top, kWidth, newHeight, &workstation.Audio().settings.songMode),
      station(workstation) {
    hoverLook = true;
    name = Text("Song mode");
    infoString = 433;
    learns = station.Controllers().TargetOf(nullptr, Value());
}

QRectF CSongModeCtrl::Half(bool song) const {
    const qreal first =
        std::floor(Width() * RoomOf(TextKey("SONG")) / (RoomOf(TextKey("SONG")) + RoomOf(TextKey("PATTERN"))));
    return song ? QRectF(X(), Y(), first, Height()) : QRectF(X() + first, Y(), Width() - first, Height());
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

void CSongModeCtrl::Draw() {
    const bool song = station.Audio().settings.songMode.IsOn();
    Canvas().Fill(Rectangle(), backgroundColour);
    for (const bool half : {true, false}) {
        const EState state = half == song ? EState::kOn : EState::kNormal;
        const QRectF area = Half(half);
        DrawCap(Canvas(), area, state, Palette().Accent(section));
        Canvas().Text(area, Text(half ? TextKey("SONG") : TextKey("PATTERN")),
                      CapTextColour(state, Palette().Accent(section)), kTextHeight, Qt::AlignCenter, true);
    }
}

}  // namespace quib
