// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The tool window with the arpeggiator of one instrument. User-interface thread.

#include "editors/base/CToolWindow.h"

namespace quib {

class CArpeggiatorCtrl;

class CWinControlArpeggiator : public CToolWindow {
    Q_OBJECT

public:
    CWinControlArpeggiator(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);

protected:
    void ShowSelection() override;
    void Translate() override;

private:
    void Build();

    std::shared_ptr<CInstrument> shown;  // whose settings the panel is bound to
    CArpeggiatorCtrl* panel = nullptr;
};

}  // namespace quib
