// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The song on a time line: a lane with the items of one instrument, or the ruler above all lanes with loop and
// bars. The header is the upper part of the control; the upper half of what the header leaves is the loop's.
// In a lane the header is as high as the control, so it has no loop. User-interface thread.

#include "editors/pianoroll/CPaneCtrl.h"
#include "editors/playlist/CLanePainter.h"
#include "editors/playlist/CLoopGestures.h"
#include "editors/playlist/CPlaylistGestures.h"

namespace quib {

class CPlayListCtrlEx;
class CWorkstation;

// What the controls need of the pane around them.
class ISongHost {
public:
    virtual ~ISongHost() = default;
    // The lane's instrument becomes the current one; the selection of the one before is cleared.
    virtual void MakeCurrent(CPlayListCtrlEx& lane) = 0;
    // Whether keys are meant for this lane.
    virtual bool HasKeys(const CPlayListCtrlEx& lane) const = 0;
    virtual void OpenPattern(int pattern) = 0;
    virtual void ShowItemMenu(CPlayListCtrlEx& lane) = 0;
    virtual void ScrollBy(int pixels) = 0;
    virtual void TurnWheel(int x, std::uint32_t word) = 0;
    virtual void Tell(const char* text) = 0;
    virtual void Locate(int step) = 0;
    virtual void LoopMoved() = 0;
    // The pattern for new items is another one.
    virtual void CurrentPatternChanged(CPlayListCtrlEx& lane) = 0;
};

struct SongParts {
    ISongHost& host;
    CWorkstation& station;
    SongView& view;
    CMasks& masks;
    const SongColours& colours;
};

class CPlayListCtrlEx : public CPaneCtrl, private IPlaylistSurface {
public:
    // Without an instrument it is the ruler.
    CPlayListCtrlEx(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                    int newHeaderHeight, const SongParts& songParts, std::shared_ptr<CInstrument> instrument);

    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnDoubleClick(int px, int py) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;
    void Resize(int newWidth, int newHeight) override;

    bool IsRuler() const noexcept { return edit == nullptr; }
    // A lane only.
    CPlaylistEdit& Edit() const noexcept { return *edit; }
    CInstrument& Instrument() const noexcept { return *edit->Instrument(); }
    int CurrentPattern() const noexcept { return gestures->currentPattern; }
    void SetCurrentPattern(int pattern);
    // The same, written into every selected item.
    void ChoosePattern(int pattern);
    // Arrow keys and those of the menu; repeats of a held key come here too.
    void RepeatKey(int key);

    // After a change of the document.
    void DocumentChanged();
    // The playhead was at that step and is at the view's now.
    void PlayheadMoved(double before);
    void SetSounding(double step);
    // A part of it, as counted from its upper left corner.
    void DrawAgain(const QRect& part) { DrawPart(part); }

    QRgb track = 0;

private:
    void Paint(const QRect& part) override;
    bool IsInLoopBand(int py) const { return py < Y() + LoopBand(); }
    int LoopBand() const { return (Height() - headerHeight) / 2; }
    void PressRuler(int px, int py, int button);
    void SyncModifiers();
    void Nudge(int way);

    void SetCursor(ESongCursor cursor) override;
    void LaneChanged() override { DrawPart({0, 0, Width(), Height()}); }
    void SelectionCleared() override {}
    void EndRefused() override;
    void ShowMenu() override { parts.host.ShowItemMenu(*this); }
    void ScrollBy(int pixels) override { parts.host.ScrollBy(pixels); }

    int headerHeight;
    SongParts parts;
    std::unique_ptr<CPlaylistEdit> edit;
    std::unique_ptr<CPlaylistGestures> gestures;
    CLanePainter painter;
    CLoopGestures loop;
    double sounding = -1;
    bool shift = false, control = false;
    bool locating = false;
    int panX = -1;
};

}  // namespace quib
