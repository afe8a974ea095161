// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Writes the settings that the user moves while the engine plays and automation is armed into their lanes: of the
// song while it plays by its playlists, else of the pattern that plays. What is held wins over its lane until it
// is let go, armed or not. A movement takes the place of what stood in its span, with few points; all movements
// from the start of playing to its end are one step of undo. User-interface thread.

#include <map>

#include "document/CAutomationTake.h"
#include "document/CGesture.h"
#include "document/CLanes.h"
#include "engine/PlayPicture.h"
#include "model/control/ControlBinding.h"
#include "model/edits/LaneEdits.h"

namespace quib {

class CAutomationRecording {
public:
    CAutomationRecording(const DocumentContext& document, const CLanes& projectLanes)
        : context(document), lanes(projectLanes), gesture(document.changes) {}

    // A control has taken hold of a setting, or let it go. Settings without a lane are ignored.
    void Hold(const CValue* setting, bool held);
    // The user moves a parameter of a plug-in in its own window; when no more of it comes it is let go.
    void ParameterMoved(const CPlugin* plugin, int parameter);
    // The same from a plug-in that tells when its parameter is taken hold of.
    void HoldParameter(const CPlugin* plugin, int parameter, bool held);
    // A point of a MIDI lane has come in.
    void PointPlayed(const EngineNotice& notice);
    // What has been touched is written to the end of the pass, in place of what was there; else only while the hand
    // is on it. Kept in the settings.
    bool Replaces() const;
    void SetReplaces(bool on);
    // A MIDI controller has moved it, or a hand a ball: what follows the ball then.
    void ControllerMoved(const ControlTarget& target);
    void BallMoved(const std::shared_ptr<CInstrument>& instrument, int ball, int axis);
    // The user has moved a setting, or a parameter of a plug-in: see CChanges::ValueMoved.
    void Touched(const void* thing, int part);
    // The instrument (0: the master section) and the lane of what was moved last.
    using TouchedLane = std::pair<std::uint32_t, LaneKey>;
    const std::optional<TouchedLane>& LastTouched() const noexcept { return lastTouched; }
    void Tick();
    // Another project comes: what is held and recorded is forgotten.
    void Abandon();
    // A movement of that lane is being written.
    bool IsWriting(const LaneKey& lane) const noexcept;

private:
    using Key = TouchedLane;
    struct Held {
        InstrumentLane lane;
        LaneEntry entry;
        int slot = 0;
        int restingTicks = -1;  // until it is let go by itself; -1: when it is told
        bool isLetGo = false;   // and goes on until playing ends
        PointList samples;
    };

    void Begin(const InstrumentLane& lane, int restingTicks);
    void LetGo(std::map<Key, Held>::iterator held);
    bool IsWritten() const;
    void Release(std::map<Key, Held>::iterator held);
    void Sample(Held& held, const PlayPicture& picture);
    void Commit(Held& held);
    void Mark(const InstrumentLane& lane, bool held);

    const DocumentContext& context;
    const CLanes& lanes;
    std::map<Key, Held> holding;
    CAutomationTake take;
    CGesture gesture;
    std::optional<TouchedLane> lastTouched;
};

}  // namespace quib
