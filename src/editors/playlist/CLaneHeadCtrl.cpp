// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CLaneHeadCtrl.h"

#include "controls/CSwitchCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kButton = 24;
constexpr int kMeterMargin = 3;
}  // namespace

CLaneHeadCtrl::CLaneHeadCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                             CWorkstation& workstation, std::shared_ptr<CInstrument> shown, QRgb trackColour)
    : CControl(window, number, left, top, newWidth, newHeight),
      CTicked(window),
      station(workstation),
      instrument(std::move(shown)),
      track(trackColour) {
    infoString = 492;
    mute = &AddChild<CSwitchCtrl>(0U, newWidth - 68, 2, kButton, 20, &instrument->strip.mute, QStringLiteral("M"));
    mute->onColour = Palette().Colour(QStringLiteral("warning"));
    mute->infoString = 471;
    mute->onGesture = [this](CControl& changed, float before) {
        station.Changes().ValueEdited(Part(instrument, instrument->strip.mute), before, changed.ValueNow(),
                                      Text("Mute"));
    };
    solo = &AddChild<CSwitchCtrl>(0U, newWidth - 42, 2, kButton, 20, &soloShown, QStringLiteral("S"));
    solo->onColour = Palette().Colour(QStringLiteral("pattern"));
    solo->infoString = 472;
    solo->onChange = [this](CControl&) { station.Stack().ToggleSolo(station.Stack().IndexOf(instrument->Id())); };
    meter = &AddChild<CVuCtrl>(0U, newWidth - 14, kMeterMargin, 8, newHeight - 2 * kMeterMargin,
                               &instrument->strip.peak, nullptr, true);
    for (CSwitchCtrl* const button : {mute, solo}) button->backgroundColour = Palette().Colour(QStringLiteral("panel"));
}

void CLaneHeadCtrl::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    meter->SetSize(meter->Width(), newHeight - 2 * kMeterMargin);
}

void CLaneHeadCtrl::OnLButtonDown(int /*px*/, int /*py*/, int /*button*/) {
    if (onPress) onPress();
}

void CLaneHeadCtrl::Tick() {
    if (!IsShown()) return;
    const float now = station.Stack().IsSolo(station.Stack().IndexOf(instrument->Id())) ? 1.0F : 0.0F;
    if (now != soloShown.Get()) solo->SetValueAndUpdate(false, true, now);
}

void CLaneHeadCtrl::Draw() {
    const CPalette& palette = Palette();
    const int index = station.Stack().IndexOf(instrument->Id());
    const bool current = index == station.Selection().CurrentIndex();
    const QRectF area(Rectangle());
    Canvas().Fill(area, palette.Colour(current ? QStringLiteral("panelRaised") : QStringLiteral("panel")));
    Canvas().Fill(QRectF(X(), Y(), 4, Height()), track);
    Canvas().Fill(QRectF(X(), Y() + Height() - 1, Width(), 1), palette.Colour(QStringLiteral("well")));
    Canvas().Text(QRectF(X() + 6, Y(), 22, 24), QString::number(index + 1), palette.Colour(QStringLiteral("textDim")),
                  11, Qt::AlignRight | Qt::AlignVCenter);
    Canvas().Text(QRectF(X() + 34, Y(), Width() - 106, 24), QString::fromStdString(instrument->title),
                  palette.Colour(QStringLiteral("text")), 13, Qt::AlignLeft | Qt::AlignVCenter, true);
    if (current) Canvas().Frame(area.adjusted(0.5, 0.5, -0.5, -1.5), 0, palette.Colour(QStringLiteral("textMuted")));
    const QRgb ground = palette.Colour(current ? QStringLiteral("panelRaised") : QStringLiteral("panel"));
    mute->backgroundColour = solo->backgroundColour = meter->backgroundColour = ground;
}

}  // namespace quib
