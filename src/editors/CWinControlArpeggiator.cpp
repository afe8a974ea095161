// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/CWinControlArpeggiator.h"

#include <cmath>

#include "controls/CArpeggiatorCtrl.h"
#include "texts/Texts.h"

namespace quib {

CWinControlArpeggiator::CWinControlArpeggiator(const CControlSettings& controlSettings, QWidget* parent)
    : CWinControl(controlSettings, Palette().Colour(QStringLiteral("panel")), parent),
      panel(&Add<CArpeggiatorCtrl>(0U, 0, 0, ArpeggiatorValues())) {
    setWindowFlag(Qt::Tool);
    SetScale(1);
    panel->SetGesture([this](CControl& changed, float before) {
        if (onEdited) onEdited(*changed.Value(), before, changed.ValueNow(), changed.name);
    });
}

void CWinControlArpeggiator::ShowInstrument(const std::shared_ptr<CInstrument>& shown) {
    instrument = shown;
    ArpeggiatorValues values;
    if (instrument) {
        ArpeggiatorSettings& shownSettings = instrument->arpeggiator;
        values = {&shownSettings.on,       &shownSettings.mode,     &shownSettings.hole,
                  &shownSettings.ext,      &shownSettings.extMode,  &shownSettings.velocity,
                  &shownSettings.interval, &shownSettings.gateTime, &shownSettings.tempo};
        setWindowTitle(Text("%1 - Arpeggiator").arg(QString::fromStdString(instrument->title)));
    }
    panel->BindTo(values);
}

void CWinControlArpeggiator::SetScale(qreal scale) {
    setFixedSize(static_cast<int>(std::ceil(CArpeggiatorCtrl::kWidth * scale)),
                 static_cast<int>(std::ceil(CArpeggiatorCtrl::kHeight * scale)));
    SetUiScale(scale);
}

}  // namespace quib
