// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The song in a pane of a window: a row of tools, the ruler, a lane for each instrument under one time line,
// scroll bars. It follows the document, the selection and the playing state, and keeps zoom, scroll and raster
// in the settings. User-interface thread.

#include <QTimer>
#include <functional>

#include "controls/CScrollCtrl.h"
#include "document/CWorkstation.h"
#include "editors/grid/CPlayhead.h"
#include "editors/playlist/CLaneDrag.h"
#include "editors/playlist/CLaneHeadCtrl.h"
#include "editors/playlist/CPlayListCtrlEx.h"
#include "editors/playlist/CScrollbarCtrl.h"
#include "editors/playlist/CSongCommands.h"
#include "editors/playlist/CSongPlayhead.h"
#include "editors/playlist/CSongToolBar.h"

namespace quib {

class CLabelCtrl;

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
    static constexpr int kToolRow = CSongToolBar::kHeight;
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
    bool CanEdit(EEdit command) const { return IsActive() && commands.CanEdit(command); }
    void Edit(EEdit command) { commands.Edit(command); }
    void KeepView() const;
    bool SelectNext(int way) { return commands.SelectNext(way); }

    std::function<void(int index)> onCurrent;  // a press made this instrument the current one
    std::function<void()> onOpenPianoRoll;
    std::function<void(bool loop)> onBounce;  // the loop's region or the song is to be exported
    CSongToolBar& Tools() noexcept { return *tools; }

    // --- For tests

    CPlayListCtrlEx* Lane(int index) const;
    CPlayListCtrlEx& Ruler() const noexcept { return *ruler; }
    SongView& View() noexcept { return view; }
    void ScrollTo(int pixels);
    void ShowPlayhead(double step) { MovePlayhead(step); }

private:
    void BuildParts();
    void BuildLanes();
    void PlaceLanes();
    void ViewMoved();
    bool ShiftPicture();
    void ShowLoop();
    void ShowTexts();
    void FollowLane(CPlayListCtrlEx& lane);
    void UpdateExtent();
    void MovePlayhead(double step);
    void ScrollAtEdges();
    double PlayingStep() const;
    QRect LaneArea() const;
    QRgb TrackColour(int index) const;
    void Zoom(bool in, int anchor);
    void SetLaneHeight(int height);

    CPlayListCtrlEx* Current() const override;
    const std::vector<CPlayListCtrlEx*>& Lanes() const override { return lanes; }
    void MakeCurrent(CPlayListCtrlEx& lane) override;
    bool HasKeys(const CPlayListCtrlEx& lane) const override;
    void OpenPattern(int pattern) override;
    void ShowItemMenu(CPlayListCtrlEx& lane) override;
    void ShowRulerMenu(int step) override;
    void ScrollBy(int pixels) override;
    void TurnWheel(int x, std::uint32_t word) override;
    void Tell(const QString& text) override;
    void Locate(int step) override;
    void LoopMoved() override { ShowLoop(); }
    void CurrentPatternChanged(CPlayListCtrlEx& lane) override;
    void DraggedTo(CPlayListCtrlEx& lane, int py) override;
    bool Dropped(CPlayListCtrlEx& lane) override { return drag.Drop(lane); }
    void AskMarker(int step) override;
    void Bounce(bool loop) override;

    CWorkstation& station;
    SongView view;
    SongColours colours;
    CMasks masks;
    CSongPlayhead line;
    CLaneDrag drag;
    CSongCommands commands;
    CPlayhead playhead;
    QTimer frames;
    bool active = false;
    std::uint32_t currentId = 0;
    int keptScroll = 0;  // of the last run, for the first project; pixels
    int drawnScroll = 0;
    int drawnStepWidth = 0;
    CValue laneScroll;

    CSongToolBar* tools = nullptr;
    CLabelCtrl* loopText = nullptr;
    CLabelCtrl* lengthText = nullptr;
    CPlayListCtrlEx* ruler = nullptr;
    CClipCtrl* area = nullptr;
    std::vector<CLaneHeadCtrl*> heads;
    std::vector<CPlayListCtrlEx*> lanes;
    CScrollbarCtrl* timeBar = nullptr;
    CScrollCtrl* laneBar = nullptr;
};

}  // namespace quib
