// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the lanes, the ruler and the commands of the song need of the pane around them. User-interface thread.

#include <QString>
#include <cstdint>
#include <vector>

namespace quib {

class CMasks;
class CPlayListCtrlEx;
class CSongPlayhead;
class CWorkstation;
struct SongColours;
struct SongView;

class ISongHost {
public:
    virtual ~ISongHost() = default;
    // The lane of the current instrument; null without instruments.
    virtual CPlayListCtrlEx* Current() const = 0;
    virtual const std::vector<CPlayListCtrlEx*>& Lanes() const = 0;
    // The lane's instrument becomes the current one; the selection of the one before is cleared.
    virtual void MakeCurrent(CPlayListCtrlEx& lane) = 0;
    // Whether keys are meant for this lane.
    virtual bool HasKeys(const CPlayListCtrlEx& lane) const = 0;
    virtual void OpenPattern(int pattern) = 0;
    virtual void ShowItemMenu(CPlayListCtrlEx& lane) = 0;
    virtual void ShowRulerMenu(int step) = 0;
    virtual void ScrollBy(int pixels) = 0;
    virtual void TurnWheel(int x, std::uint32_t word) = 0;
    virtual void Tell(const QString& text) = 0;
    virtual void Locate(int step) = 0;
    virtual void LoopMoved() = 0;
    // The pattern for new items is another one.
    virtual void CurrentPatternChanged(CPlayListCtrlEx& lane) = 0;
    // Items of the lane are dragged, and the mouse is at that height of the window.
    virtual void DraggedTo(CPlayListCtrlEx& lane, int py) = 0;
    // The button is up. True when they were dropped on another lane, which ends the drag.
    virtual bool Dropped(CPlayListCtrlEx& lane) = 0;
    virtual void AskMarker(int step) = 0;
    // The export of the loop's region or of the song.
    virtual void Bounce(bool loop) = 0;
};

struct SongParts {
    ISongHost& host;
    CWorkstation& station;
    SongView& view;
    CMasks& masks;
    const SongColours& colours;
    CSongPlayhead& playhead;
};

}  // namespace quib
