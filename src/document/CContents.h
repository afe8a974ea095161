// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the instruments play: patterns, playlist, automation, ball assignments. Each function is one step of
// undo; drags use a CGesture on the places of Place.h instead. User-interface thread.

#include "document/CInstrumentStack.h"
#include "document/DocumentContext.h"
#include "model/files/PatternRecords.h"

namespace quib {

enum class ELanes { kMidi, kMix, kPlugin, kInsert1, kInsert2 };

class CContents {
public:
    explicit CContents(const DocumentContext& document) : context(document) {}

    void SelectPattern(int instrument, int pattern);
    // The notes, the marks and the pattern's points of automation.
    void CopyPattern(int instrument, int from, int to);
    // What the clip holds in place of what is there: the notes, and of a whole pattern the automation, that
    // of the plug-in where it is the same one.
    void PastePattern(int instrument, int pattern, const PatternClip& clip);
    void SetPattern(std::uint32_t id, int pattern, std::shared_ptr<const CPattern> next, const QString& undoName);
    // Number of steps of a pattern, 1..kMaximumStepCount, and of those that follow; one step of undo.
    void SetSteps(int instrument, int pattern, int count);
    void SetPlaylist(std::uint32_t id, std::shared_ptr<const Playlist> next, const QString& undoName);
    void SetLanes(std::uint32_t id, ELanes family, std::shared_ptr<const CEventLanes> next, const QString& undoName);
    void SetMasterLanes(std::shared_ptr<const CEventLanes> next, const QString& undoName);
    void SetBallSounds(std::uint32_t id, std::shared_ptr<const BallSoundList> next, const QString& undoName);
    void SetStepNumberMode(int instrument, EStepNumberMode mode);
    bool LoadPattern(int index, const QString& path, QString& error);
    bool SavePattern(int index, const QString& path, QString& error);
    int PlaylistSteps() const noexcept { return playlistSteps; }
    void SetPlaylistSteps(int steps);
    // Lanes of a family; no target where the place has no plug-in.
    Place<CEventLanes> LanesPlace(const std::shared_ptr<CInstrument>& instrument, ELanes family) const;

    // Another project has been published.
    void ProjectReplaced(int steps) { playlistSteps = steps; }

private:
    const DocumentContext& context;
    int playlistSteps = 0;
};

}  // namespace quib
