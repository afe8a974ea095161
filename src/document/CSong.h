// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The song as a whole: its length, its loop, and what is done to every instrument's part of it at once. Each
// function is one step of undo. Places are song steps. User-interface thread.

#include <functional>
#include <optional>

#include "document/CContents.h"
#include "document/DocumentContext.h"
#include "model/SongMarker.h"
#include "model/edits/PlaylistEdits.h"

namespace quib {

class CSong {
public:
    CSong(const DocumentContext& document, CContents& projectContents) : context(document), contents(projectContents) {}

    // No instrument has an item.
    bool IsEmpty() const;
    // Where the last item ends; a repeat without an end counts once, or up to the length that the project has.
    int Steps() const;
    int StepsPerBar() const;

    StepRange Loop() const;
    bool IsLoopOn() const { return context.audio.settings.loopOn.IsOn(); }
    // Part of a gesture that moves or draws the loop.
    void SetLoop(CGesture& gesture, StepRange range, bool on) const;
    // As a step of its own.
    void SetLoop(StepRange range);
    // On or off; where there is none yet, it becomes what is selected, else the whole song.
    void ToggleLoop();
    // What is selected of the song; whoever shows it tells.
    std::function<StepRange()> selectedRange;

    void InsertTime(int at, int steps);
    void DeleteTime(StepRange range);
    void DoubleSection(StepRange range);

    const SongMarkers& Markers() const noexcept { return markers; }
    // An empty name takes the marker away.
    void SetMarker(int step, const QString& name);
    // Another project has been published.
    void ProjectReplaced(const SongMarkers& next) { markers = next; }

    // The selected patterns of all instruments that have notes, repeated from the beginning.
    void PutSelectedPatterns();
    // The selected items of an instrument go to another one, so many steps away, or copies of them do. Their
    // patterns are copied into free places there unless the same notes are there already; `told` says which they
    // became, or why nothing was done. Gives the places of the items in the other's playlist.
    std::optional<PlaylistSelection> MoveToInstrument(const std::shared_ptr<CInstrument>& from,
                                                      const std::shared_ptr<CInstrument>& to,
                                                      const PlaylistState& state, int steps, bool copies,
                                                      QString& told);
    // A pattern that ends repeats of the song has got notes.
    void WarnOfEndMark(const CInstrument& instrument, int pattern) const;
    // The items play a copy of their pattern in a free place from then on. False when no place is free.
    bool MakeUnique(const std::shared_ptr<CInstrument>& instrument, const PlaylistState& state);

private:
    // Markers at or behind `from` go along by `way` steps; those between are taken out.
    template <class Edit>
    void EditAll(const QString& name, const Edit& edit, int from = 0, int way = 0);
    void PutMarkers(CGesture& gesture, SongMarkers next);

    const DocumentContext& context;
    CContents& contents;
    SongMarkers markers;
};

}  // namespace quib
