// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The tool window with the arpeggiator of one instrument, what it is about to play, and writing that into the
// pattern. User-interface thread.

#include "editors/base/CToolWindow.h"

namespace quib {

class CArpeggiatorCtrl;
class CArpeggiatorStripCtrl;
class CSwitchCtrl;

class CWinControlArpeggiator : public CToolWindow {
    Q_OBJECT

public:
    CWinControlArpeggiator(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);

    // The notes of the arpeggiator in place of those of the selected pattern; nothing without held keys.
    void WriteToPattern();

protected:
    void ShowSelection() override;
    void ShowPlaying(const PlayPicture& picture) override;
    void Translate() override;
    void DrawBackground() override;

private:
    void Build();
    // Without live keys the arpeggiator is silent.
    void ShowKeyboard(bool on);

    std::shared_ptr<CInstrument> shown;  // whose settings the panel is bound to
    std::vector<std::uint8_t> keys;      // held last
    CArpeggiatorCtrl* panel = nullptr;
    CArpeggiatorStripCtrl* strip = nullptr;
    CSwitchCtrl* latch = nullptr;
    CValue keyboardShown;
};

}  // namespace quib
