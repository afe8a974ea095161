// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What can be done to the song from the pane, by button, menu or key, on the lane of the current instrument or on
// all instruments at once. User-interface thread.

#include "document/CWorkstation.h"
#include "editors/base/CEditTarget.h"
#include "editors/playlist/CPlayListCtrlEx.h"

class QMenu;

namespace quib {

class CLaneDrag;

class CSongCommands {
public:
    CSongCommands(CWorkstation& workstation, SongView& shown, ISongHost& songHost, CLaneDrag& lanesDrag)
        : station(workstation), view(shown), host(songHost), drag(lanesDrag) {}

    // What is selected in the lane of the current instrument.
    StepRange Selected() const;
    // What the tools for time mean: the selection, else the loop, else the bar of the playhead.
    StepRange Section() const;
    void LoopSelection() { station.Song().SetLoop(Section()); }
    void InsertTime() { station.Song().InsertTime(Section().first, Section().end - Section().first); }
    void DeleteTime() { station.Song().DeleteTime(Section()); }
    void DoubleSection() { station.Song().DoubleSection(Section()); }
    void MarkPlayhead() { host.AskMarker(view.SnapDown(std::max(0.0, view.playhead), station.Song().StepsPerBar())); }
    // Performing was armed or disarmed: what is performed are the patterns, so they are what plays.
    void Perform();
    void MakeUnique();
    void SplitAtPlayhead();
    // The selection once more behind itself.
    void Duplicate();

    // --- Menus

    void FillPatterns(QMenu& menu);
    void FillItemMenu(QMenu& menu);
    void FillRulerMenu(QMenu& menu, int step);
    // All that is done to the song, for whoever has no room for its button.
    void FillSongMenu(QMenu& menu);

    // --- Keys

    // False when the key means nothing here.
    bool RunKey(int key, bool control);
    // The next item, or the one before, is the selection. False without items.
    bool SelectNext(int way);
    bool CanEdit(EEdit command) const;
    void Edit(EEdit command);

private:
    void FillInstruments(QMenu& menu);
    void GoByBar(int way);

    CWorkstation& station;
    SongView& view;
    ISongHost& host;
    CLaneDrag& drag;
    Playlist clipboard;
};

}  // namespace quib
