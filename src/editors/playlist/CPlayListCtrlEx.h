// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The song on a time line: a lane with the items of one instrument, or the ruler above all lanes with loop and
// bars. The header is the upper part of the control; the upper half of what the header leaves is the loop's.
// In a lane the header is as high as the control, so it has no loop. User-interface thread.

#include "editors/pianoroll/CPaneCtrl.h"
#include "editors/playlist/CLanePainter.h"
#include "editors/playlist/CLoopGestures.h"
#include "editors/playlist/CPlaylistGestures.h"
#include "editors/playlist/ISongHost.h"

namespace quib {

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
    CPlaylistGestures& Gestures() const noexcept { return *gestures; }
    CInstrument& Instrument() const noexcept { return *edit->Instrument(); }
    int CurrentPattern() const noexcept { return gestures->currentPattern; }
    void SetCurrentPattern(int pattern);
    // The same, written into every selected item.
    void ChoosePattern(int pattern);
    // Arrow keys and those of the menu; repeats of a held key come here too.
    void RepeatKey(int key);

    // After a change of the document.
    void DocumentChanged();
    void SetSounding(double step);
    // Where items of another lane would come to lie, that are dragged over this one.
    void ShowGuests(std::vector<StepRange> ranges);
    // Something is dragged that scrolls when the mouse is beyond an edge.
    bool IsDragging() const noexcept;
    // A part of it, as counted from its upper left corner.
    void DrawAgain(const QRect& part) { DrawPart(part); }

    QRgb track = 0;

private:
    void Paint(const QRect& part) override;
    bool IsInLoopBand(int py) const { return py < Y() + LoopBand(); }
    int LoopBand() const { return (Height() - headerHeight) / 2; }
    void PressRuler(int px, int py, int button);
    void MoveOnRuler(int px, int py);
    void TellItem(int place);
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
    std::vector<StepRange> guests;
    std::int32_t toldItem = -1;
    bool shift = false, control = false;
    bool locating = false;
    int panX = -1;
};

}  // namespace quib
