// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The tool window with the arpeggiator of one instrument. User-interface thread.

#include <functional>
#include <memory>

#include "controls/CWinControl.h"
#include "model/CInstrument.h"

namespace quib {

class CArpeggiatorCtrl;

class CWinControlArpeggiator : public CWinControl {
    Q_OBJECT

public:
    explicit CWinControlArpeggiator(const CControlSettings& controlSettings, QWidget* parent = nullptr);

    // Shows the settings of this instrument, or none for null.
    void ShowInstrument(const std::shared_ptr<CInstrument>& shown);
    // The window has the size of its panel, whatever the scale.
    void SetScale(qreal scale);

    // A gesture on a setting has ended.
    std::function<void(CValue& setting, float before, float after, const QString& name)> onEdited;

private:
    std::shared_ptr<CInstrument> instrument;
    CArpeggiatorCtrl* panel;
};

}  // namespace quib
