// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The ball pad's window: the balls of the current instrument, what follows them, and how they move by themselves.
// A hand's movement reaches the engine as a command that it obeys with its next block; while the window is shown
// the engine tells where the balls are. User-interface thread.

#include "editors/automation/CLaneCatalog.h"
#include "editors/ball/CBallMemory.h"
#include "editors/ball/CBallPadCtrl.h"
#include "editors/base/CToolWindow.h"
#include "model/edits/BallEdits.h"

namespace quib {

class CBallAssignmentsCtrl;
class CBallListCtrl;
class CLabelCtrl;
class CLabelMenuCtrl;
class CSwitchCtrl;

class CWinControlBall : public CToolWindow {
    Q_OBJECT

public:
    CWinControlBall(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);
    ~CWinControlBall() override;

    CBallPadCtrl& Pad() noexcept { return *pad; }
    int Selected() const noexcept { return selected; }
    void AddBall();
    void DeleteBall();
    // The next setting that the user moves follows the selected ball's axis (0 or 1); -1: none.
    void Learn(int axis);
    // Writes the last minute of the selected ball's movement to the lanes of what follows it.
    void KeepMovement();

protected:
    void ShowSelection() override;
    void ShowChange(const Change& change) override;
    void ShowPlaying(const PlayPicture& picture) override;
    void Translate() override;
    void Arrange(const QSize& size) override;
    void DrawBackground() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool /*next*/) override { return false; }
    void hideEvent(QHideEvent* event) override;

private:
    void Build();
    void BuildColumn();
    void BuildFoot();
    const BallSoundList& Balls() const;
    const BallSound* Ball() const;
    void ShowBalls();
    void ShowAssignments();
    void Select(int ball);
    void Publish(BallSoundList next, const char* name);
    void ChangeBall(const std::function<void(BallSound&)>& change, const char* name);
    void Place(int ball, const PadPlace& place);
    void Dropped(int ball, const PadPlace& before);
    void SetSpan(int axis, int assignment, float low, float high);
    void Assign(const InstrumentLane& lane);
    InstrumentLane LaneOf(const BallAssignment& assignment) const;
    const LaneEntry* EntryOf(const BallAssignment& assignment) const;
    std::vector<float> ValuesNow() const;
    void Remember(const PlayPicture& picture);

    CLaneCatalog catalog;
    std::shared_ptr<CInstrument> shown;
    std::vector<LaneEntry> lanes;
    int selected = 0;
    int learning = -1;
    std::unique_ptr<CGesture> span;  // a handle is dragged
    bool publishing = false;         // the change that is told is our own
    CBallMemory memory;

    CBallPadCtrl* pad = nullptr;
    CBallListCtrl* list = nullptr;
    CBallAssignmentsCtrl* assignments = nullptr;
    std::array<CValue, kHighestBallRate + 1> rateShown;
    CLabelMenuCtrl* channel = nullptr;
    std::array<CLabelCtrl*, 2> controllers{};
    CLabelCtrl* name = nullptr;
    std::array<CValue, 2> learnShown;
};

}  // namespace quib
