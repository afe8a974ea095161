// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The automation window: the lanes of the current instrument and of the master section, of its selected pattern
// or of the song, one of them as a curve. It publishes what the hands make, each gesture one step of undo, and
// follows playing. User-interface thread.

#include <QTimer>

#include "editors/automation/CEventCtrl.h"
#include "editors/automation/CLaneCatalog.h"
#include "editors/automation/CLaneSource.h"
#include "editors/base/CToolWindow.h"
#include "editors/grid/CPlayhead.h"

class QLineEdit;

namespace quib {

class CEventBar;
class CLaneListCtrl;
class CScrollCtrl;
class CZoomCtrl;

class CWinControlParamEvent : public CToolWindow {
    Q_OBJECT

public:
    CWinControlParamEvent(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);
    ~CWinControlParamEvent() override;

    bool CanEdit(EEdit command) const override;
    void Edit(EEdit command) override;

    // --- For its bars and for those who show a lane here

    CWorkstation& Project() const noexcept { return Document(); }
    CEventCtrl& Curve() noexcept { return *curve; }
    bool IsSong() const noexcept { return song; }
    void SetSong(bool on);
    int Tool() const noexcept { return static_cast<int>(tool); }
    void SetTool(int number);
    const Snap& SnapNow() const noexcept { return curve->View().time.snap; }
    void SetSnap(const Snap& snap);
    // Shows a lane; nothing happens where there is none of that key.
    void ChooseLane(const LaneKey& key);
    void ClearLane();
    void TypeTime(const QString& text);
    void TypeValue(const QString& text);

    std::optional<ESection> LaneSection() const;
    QString LaneName() const;
    QString OwnerName() const;
    QString TimeText() const;
    QString ValueText() const;
    bool HasSelection() const noexcept { return !curve->Edit().State().selection.empty(); }

protected:
    void ShowSelection() override;
    void ShowChange(const Change& change) override;
    void ShowPlaying(const PlayPicture& picture) override;
    void Translate() override;
    QString Title() const override;
    void Arrange(const QSize& size) override;
    void DrawBackground() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool /*next*/) override { return false; }
    void hideEvent(QHideEvent* event) override;

private:
    void Build();
    void ShowList();
    // What was moved last stands on top of the list and is shown.
    void ShowTouched();
    bool TakeTouched();
    void ShowLane();
    void FitPattern(double steps);
    void ShowPoints();
    void UpdateScrollBars();
    int Slot() const noexcept { return song ? CEventLanes::kSongSlot : pattern; }
    void Locate(double step);
    double LastStep() const;

    CLaneCatalog catalog;
    CLaneSource source;
    std::shared_ptr<CInstrument> shown;
    int pattern = 0;
    bool song = false;
    double fitted = 0;  // steps of the pattern that the zoom was chosen for
    ELaneTool tool = ELaneTool::kPoints;
    std::optional<LaneKey> touched;
    std::optional<CAutomationRecording::TouchedLane> seenTouch;

    CPlayhead playhead;
    QTimer frames;  // 16 ms, only while playing and shown

    QLineEdit* search;
    CLaneListCtrl* list = nullptr;
    CEventBar* bar = nullptr;
    CEventCtrl* curve = nullptr;
    CScrollCtrl* listScroll = nullptr;
    CScrollCtrl* timeScroll = nullptr;
    CZoomCtrl* zoom = nullptr;
    CValue listPlace;
    CValue timePlace;
};

}  // namespace quib
