// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The piano roll's window: the notes of the current instrument's selected pattern with their velocities or a
// lane of its automation, and the instrument's MIDI input. It publishes what the roll's gestures make, each gesture one
// step of undo, and follows playing. User-interface thread.

#include <QTimer>
#include <map>

#include "editors/automation/CLaneCatalog.h"
#include "editors/automation/CLaneSource.h"
#include "editors/base/CToolWindow.h"
#include "editors/grid/CPlayhead.h"
#include "editors/pianoroll/CPianoRollCtrlEx.h"

namespace quib {

class CEventCtrl;
class CRollLaneBar;
class CRollStatusBar;
class CRollToolBar;
class CScrollCtrl;
class CSplitCtrl;
class CVelocityLaneCtrl;
class CZoomCtrl;

class CWinControlPianoRoll : public CToolWindow, public IPianoRollHost {
    Q_OBJECT

public:
    CWinControlPianoRoll(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);
    ~CWinControlPianoRoll() override;

    bool CanEdit(EEdit command) const override;
    void Edit(EEdit command) override;

    // --- For its bars

    CPianoRollCtrlEx& Roll() noexcept { return *roll; }
    CWorkstation& Project() const noexcept { return Document(); }
    const std::shared_ptr<CInstrument>& Shown() const noexcept { return shown; }
    int ShownPattern() const noexcept { return pattern; }
    bool IsFolded() const noexcept { return folded; }
    void SetFolded(bool on);
    void SetDrums(bool on);
    ERowOrder RowOrder() const noexcept { return rowOrder; }
    void SetRowOrder(ERowOrder order);
    void SetScaleShown(const Scale& scale);
    // Another setting of the roll has changed.
    void OptionsChanged();
    // Ghosts: other patterns of the instrument by number, other instruments by id.
    struct Ghosts {
        std::vector<int> patterns;
        std::vector<std::uint32_t> instruments;
        bool IsEmpty() const noexcept { return patterns.empty() && instruments.empty(); }
    };
    const Ghosts& ShownGhosts() const noexcept { return ghosts; }
    void SetGhosts(Ghosts next);
    // An edit of the roll's notes as one step; `name` in English.
    void Apply(const NoteState& next, const char* name);
    void ZoomTime(bool in);
    void ZoomKeys(bool in);
    // Keys played while nothing plays are written at the cursor.
    void SetStepEntry(bool on);
    // The limit that waits for a key: 0 lower, 1 upper, -1 none.
    int ArmedLimit() const;
    void ArmLimit(int limit);
    // The lane below the notes: a lane of the pattern's automation; nothing: the velocities.
    const CLaneSource& Lanes() const noexcept { return lanes; }
    void ChooseLane(const std::optional<LaneKey>& key);
    void FillLanes(QMenu& menu);
    CEventCtrl& Curve() noexcept { return *curve; }
    void FillEditMenu(QMenu& menu);
    // Of all notes of a key.
    void FillRowMenu(QMenu& menu, int key);

protected:
    void ShowSelection() override;
    void ShowChange(const Change& change) override;
    void ShowPlaying(const PlayPicture& picture) override;
    void Translate() override;
    QString Title() const override;
    void Arrange(const QSize& size) override;
    void DrawBackground() override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool /*next*/) override { return false; }
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    // --- The roll's host
    void Hold(bool on) override { Document().NoteRecording().Hold(on); }
    void Preview(const NoteState& state) override;
    void Finish(const char* name) override;
    void Cancel() override;
    void SelectionChanged(const NoteState& state) override;
    void SetLength(int steps) override;
    void Audition(int key, int velocity, bool on) override;
    bool TakeKey(int key) override;
    void SetKeyLimit(bool upper, int key, bool done) override;
    void ShowMenu(int x, int y) override;
    void ShowRowMenu(int key) override;
    void ViewChanged() override;
    void RowFocused(int key) override;

    void Build();
    void BuildLane();
    void ArrangeLane(const QRect& room);
    void ShowLane();
    void GiveKeys(bool toCurve);
    bool IsCurveKeyed() const;
    void ShowPattern();
    void ShowMeter();
    void ShowInput();
    void ShowPlayhead();
    void ShowSounding(const PlayPicture& picture);
    void ShowRows();
    void ShowKeyNames();
    void ShowGhosts();
    void CentreKeys();
    void UpdateScrollBars();
    void MoveSplit(int place);
    void Paste();
    static void AddMenuItem(QMenu& menu, const char* text, const char* key, std::function<void()> run);
    void FillShapes(QMenu& menu);
    void FillChords(QMenu& menu);
    NoteSelection SelectionOf(const std::shared_ptr<const CPattern>& notes);
    void RememberSelection(const NoteState& state);

    std::shared_ptr<CInstrument> shown;
    int pattern = 0;
    bool folded = false;
    KeySet namedKeys;  // of the plug-in
    ERowOrder rowOrder = ERowOrder::kByKey;
    Ghosts ghosts;
    std::unique_ptr<CGesture> gesture;
    bool stepEntry = false;
    bool publishing = false;  // the change that is told is our own
    int limitBefore = 0;
    bool limitDragged = false;

    // What was selected in patterns that undo may bring back.
    struct Selected {
        std::weak_ptr<const CPattern> notes;
        NoteSelection selection;
    };
    std::map<const CPattern*, Selected> selections;

    CLaneCatalog catalog;
    CLaneSource lanes;
    CPlayhead playhead;
    QTimer frames;  // 16 ms, only while playing and shown

    CRollToolBar* tools = nullptr;
    CPianoRollCtrlEx* roll = nullptr;
    CSplitCtrl* split = nullptr;
    CRollLaneBar* laneBar = nullptr;
    CVelocityLaneCtrl* lane = nullptr;
    CEventCtrl* curve = nullptr;  // in its place
    CRollStatusBar* status = nullptr;
    CScrollCtrl* keyScroll = nullptr;
    CScrollCtrl* timeScroll = nullptr;
    CZoomCtrl* keyZoom = nullptr;
    CZoomCtrl* timeZoom = nullptr;
    CValue keyPlace;
    CValue timePlace;
    int splitPlace = 448;  // skin pixels from the top
};

}  // namespace quib
