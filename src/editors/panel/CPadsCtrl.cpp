// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/CPadsCtrl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"
#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLook.h"

namespace quib {

namespace {

constexpr int kPadGap = 4;
constexpr int kPadMargin = 10;
constexpr int kSends = 4;

}  // namespace

CPadsCtrl::CPadsCtrl(CWinControl& window, const QRect& place, CPanelValues& panelValues, std::vector<Pad> padList,
                     int padsAcross)
    : CControl(window, 0, place.x(), place.y(), place.width(), place.height()),
      values(panelValues),
      pads(std::move(padList)),
      across(std::max(1, padsAcross)) {
    hoverLook = true;
}

QRectF CPadsCtrl::Area(std::size_t pad) const {
    const int rows = (static_cast<int>(pads.size()) + across - 1) / across;
    const int wide = (Width() - kPadGap * (across - 1)) / across;
    const int high = (Height() - kPadGap * (rows - 1)) / rows;
    const int index = static_cast<int>(pad);
    return QRectF(X() + index % across * (wide + kPadGap), Y() + index / across * (high + kPadGap), wide, high);
}

int CPadsCtrl::PadAt(int px, int py) const {
    for (std::size_t pad = 0; pad < pads.size(); ++pad) {
        if (Area(pad).contains(px, py)) return static_cast<int>(pad);
    }
    return -1;
}

void CPadsCtrl::OnMouseMove(int px, int py) {
    const int now = PadAt(px, py);
    if (std::exchange(under, now) != now) Update(false, true);
    if (now >= 0) Owner().setCursor(Qt::PointingHandCursor);
}

void CPadsCtrl::OnMouseLeave() {
    under = -1;
    Owner().unsetCursor();
    Update(false, true);
}

void CPadsCtrl::OnLButtonDown(int px, int py, int button) {
    const int pad = PadAt(px, py);
    if (pad < 0) return;
    const Pad& hit = pads[static_cast<std::size_t>(pad)];
    if (button == 0 && !hit.keys.empty() && onPlay) {
        const QRectF area = Area(static_cast<std::size_t>(pad));
        const double share = 1 - (py - area.top()) / area.height();
        playing = pad;
        onPlay(hit.keys.front(), std::clamp(static_cast<int>(std::lround(1 + 126 * share)), 1, 127));
    }
    page = hit.page;
    Update(false, true);
    // Last: it may lay the panel out anew, this control with it, once the button is up.
    if (onChoose) onChoose(page);
}

void CPadsCtrl::OnLButtonUp(int /*px*/, int /*py*/, int /*button*/) {
    const int pad = std::exchange(playing, -1);
    if (pad >= 0 && onPlay) onPlay(pads[static_cast<std::size_t>(pad)].keys.front(), 0);
    Update(false, true);
}

void CPadsCtrl::OnKeyDown(int key) {
    if (!hovered) return;
    const auto chosen = std::find_if(pads.begin(), pads.end(), [this](const Pad& pad) { return pad.page == page; });
    if (chosen == pads.end()) return;
    int step = 0;
    if (key == virtualKey::kLeft) step = -1;
    if (key == virtualKey::kRight) step = 1;
    if (key == virtualKey::kUp) step = -across;
    if (key == virtualKey::kDown) step = across;
    const auto next = (chosen - pads.begin()) + step;
    if (step == 0 || next < 0 || next >= static_cast<std::ptrdiff_t>(pads.size())) return;
    page = pads[static_cast<std::size_t>(next)].page;
    Update(false, true);
    if (onChoose) onChoose(page);
}

std::vector<float> CPadsCtrl::Values() const {
    std::vector<float> now;
    for (const Pad& pad : pads) {
        for (const int parameter : {pad.level, pad.pan, pad.send}) {
            if (parameter >= 0) now.push_back(values.Get(parameter));
        }
    }
    return now;
}

bool CPadsCtrl::HasChanged() const { return Values() != drawn; }

void CPadsCtrl::Draw() {
    drawn = Values();
    Canvas().Fill(Rectangle(), backgroundColour);
    for (std::size_t pad = 0; pad < pads.size(); ++pad)
        DrawPad(pads[pad], Area(pad), static_cast<int>(pad) == playing, hovered && static_cast<int>(pad) == under);
}

void CPadsCtrl::DrawPad(const Pad& pad, const QRectF& area, bool isHit, bool isHot) {
    const QRgb accent = Palette().Accent(section);
    const bool chosen = pad.page == page;
    Canvas().Box(area, 4, isHit ? accent : Colour(isHot ? "knobHover" : "panelRaised"), Colour("knobEdge"));
    if (chosen) Canvas().Frame(area.adjusted(1, 1, -1, -1), 4, Colour("text"), 2);
    const QRgb ink = Colour(isHit ? "onAccent" : "text");
    const qreal left = area.left() + kPadMargin;
    const qreal room = area.width() - 2 * kPadMargin;
    const QRectF title(left, area.top() + 8, room - (pad.chokes ? 18 : 0), 20);
    Canvas().Text(title, pad.name, ink, FittingHeight(pad.name, title.width(), true, 14),
                  Qt::AlignLeft | Qt::AlignVCenter, true);
    if (pad.chokes) Canvas().Glyph(Skin(), picture::kGlyphChain, {area.right() - 17, area.top() + 18}, ink);
    QStringList keys;
    for (const int key : pad.keys) keys += QString::number(key);
    const QRgb quiet = Colour(isHit ? "onAccent" : "textMuted");
    Canvas().Glyph(Skin(), picture::kGlyphKeyboard, {left + 7, area.top() + 39}, quiet);
    Canvas().Text(QRectF(left + 18, area.top() + 30, room - 18, 18), keys.join(QStringLiteral(" · ")), quiet, 12,
                  Qt::AlignLeft | Qt::AlignVCenter);
    const auto bar = [&](int parameter, qreal bottom, float zero) {
        if (parameter < 0) return;
        const QRectF track(left, area.bottom() - bottom, room, 4);
        Canvas().FillRound(track, 2, Colour("wellDeep"));
        const auto from = static_cast<qreal>(zero);
        const auto to = static_cast<qreal>(values.Get(parameter));
        const qreal start = left + room * std::min(from, to);
        Canvas().FillRound(QRectF(start - 1, track.top(), room * std::abs(to - from) + 2, 4), 2,
                           isHit ? Colour("onAccent") : Palette().Accent(ESection::kMix));
    };
    bar(pad.pan, 22, 0.5F);
    bar(pad.level, 12, 0);
    if (pad.send < 0) return;
    const int send = static_cast<int>(std::lround(values.Get(pad.send) * kSends));
    if (send == 0) return;
    const QRectF mark(area.right() - kPadMargin - 24, area.top() + 30, 24, 18);
    Canvas().FillRound(mark, 3, Palette().Accent(ESection::kEffects));
    Canvas().Text(mark, QStringLiteral("S%1").arg(send), Colour("onAccent"), 11, Qt::AlignCenter, true);
}

}  // namespace quib
