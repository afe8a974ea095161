// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The song in a pane of a window: a row of tools, the ruler, a lane for each instrument under one time line,
// scroll bars. It follows the document, the selection and the playing state, and keeps zoom, scroll and raster
// in the settings. User-interface thread.

#include <QTimer>
#include <functional>

#include "controls/CSwitchCtrl.h"
#include "document/CWorkstation.h"
#include "editors/base/CEditTarget.h"
#include "editors/grid/CPlayhead.h"
#include "editors/playlist/CLaneHeadCtrl.h"
#include "editors/playlist/CPlayListCtrlEx.h"
#include "editors/playlist/CScrollbarCtrl.h"

class QMenu;

namespace quib {

class CLabelCtrl;
class CLabelMenuCtrl;
class CZoomCtrl;

// Nothing of its children is shown outside of it.
class CClipCtrl : public CControl {
public:
    using CControl::CControl;
    void Draw() override { Canvas().Fill(Rectangle(), backgroundColour); }
    void OnMove() override {
        for (const auto& child : Children()) child->Layout(X(), Y(), ShownRectangle());
    }
    void Resize(int newWidth, int newHeight) override { SetSize(newWidth, newHeight); }
};

class CSongPane : public CControl, private ISongHost {
public:
    static constexpr int kToolRow = 28;
    static constexpr int kRuler = 44;
    static constexpr int kRulerHeader = 4;
    static constexpr int kBar = 10;
    static constexpr int kHead = 200;
    static constexpr int kLowest = kToolRow + kRuler + kBar + SongView::kLowestLane;

    CSongPane(CWinControl& window, std::uint32_t number, CWorkstation& workstation);
    ~CSongPane() override;

    void Draw() override;
    void Resize(int newWidth, int newHeight) override;
    void OnShow(bool nowVisible) override;
    void OnKeyDown(int key) override;

    // --- For the window

    void Follow(const Change& change);
    // Another instrument is the current one.
    void ShowCurrent();
    // With each tick.
    void FollowEngine();
    // Keys are meant for the pane: it was pressed last.
    void SetActive(bool on) noexcept { active = on; }
    bool IsActive() const noexcept { return active && IsShown(); }
    // A held key again. False when it means nothing here.
    bool RepeatKey(int key);
    bool CanEdit(EEdit command) const;
    void Edit(EEdit command);
    void KeepView() const;
    // The next item, or the one before, is the selection. False without items.
    bool SelectNext(int way);

    std::function<void(int index)> onCurrent;  // a press made this instrument the current one
    std::function<void()> onOpenPianoRoll;
    std::function<void()> onClose;
    std::function<void()> onWholeWindow;

    // --- For tests

    CPlayListCtrlEx* Lane(int index) const;
    CPlayListCtrlEx& Ruler() const noexcept { return *ruler; }
    SongView& View() noexcept { return view; }
    void ScrollTo(int pixels);
    void ShowPlayhead(double step) { MovePlayhead(step); }

private:
    void BuildTools();
    void PlaceTools();
    void BuildLanes();
    void PlaceLanes();
    void ViewMoved();
    bool ShiftPicture();
    void ShowLoop();
    void ShowTexts();
    void UpdateExtent();
    void MovePlayhead(double step);
    double PlayingStep() const;
    CPlayListCtrlEx* Current() const;
    QRgb TrackColour(int index) const;
    void Zoom(bool in, int anchor);
    void SetLaneHeight(int height);
    StepRange Section() const;
    void AskMarker(int step);
    void Perform();
    void FillPatterns(QMenu& menu);
    void FillSnaps(QMenu& menu);
    void FillItemMenu(QMenu& menu, CPlayListCtrlEx& lane);
    void MakeUnique();
    void SplitAtPlayhead();
    void Duplicate();
    void LoopSelection();
    bool RunKey(int key);

    void MakeCurrent(CPlayListCtrlEx& lane) override;
    bool HasKeys(const CPlayListCtrlEx& lane) const override;
    void OpenPattern(int pattern) override;
    void ShowItemMenu(CPlayListCtrlEx& lane) override;
    void ScrollBy(int pixels) override;
    void TurnWheel(int x, std::uint32_t word) override;
    void Tell(const char* text) override;
    void Locate(int step) override;
    void LoopMoved() override { ShowLoop(); }
    void CurrentPatternChanged(CPlayListCtrlEx& lane) override;

    CWorkstation& station;
    SongView view;
    SongColours colours;
    CMasks masks;
    CPlayhead playhead;
    QTimer frames;
    bool active = false;
    std::uint32_t currentId = 0;
    int drawnScroll = 0;
    int drawnStepWidth = 0;
    Playlist clipboard;
    CValue followShown;
    CValue laneScroll;

    struct Tool {
        CControl* control;
        int width;
    };
    std::vector<Tool> tools;
    CLabelCtrl* title = nullptr;
    CLabelMenuCtrl* patternMenu = nullptr;
    CLabelMenuCtrl* snapMenu = nullptr;
    CLabelCtrl* loopText = nullptr;
    CLabelCtrl* lengthText = nullptr;
    CZoomCtrl* zoom = nullptr;
    CSwitchCtrl* whole = nullptr;
    CSwitchCtrl* close = nullptr;
    CPlayListCtrlEx* ruler = nullptr;
    CClipCtrl* area = nullptr;
    std::vector<CLaneHeadCtrl*> heads;
    std::vector<CPlayListCtrlEx*> lanes;
    CScrollbarCtrl* timeBar = nullptr;
    CScrollCtrl* laneBar = nullptr;
};

}  // namespace quib
