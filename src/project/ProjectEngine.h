// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Between a project as plain values and the engine that plays it: the one way there and the one way back.
// Editing thread.

#include "engine/CAudio.h"
#include "project/ProjectState.h"

namespace quib {

// Makes the engine play this project: everything is prepared first, then published; the sound of what
// was there before goes on until then. The engine shares the project's instruments and plug-ins.
void PublishProject(const ProjectState& state, CAudio& audio);

// The way back: what the engine plays, into the state. What no engine knows stays as it is: steps of the
// playlist, selected preset, rhythm detector, warnings.
void GatherProject(const CAudio& audio, ProjectState& state);

// Length of the song in steps: where the last pattern of any playlist ends, or the end of the playlist
// itself when a pattern repeats up to it; 0 without playlist entries.
int SongSteps(const ProjectState& state);

// Length in steps of two passes of what plays longest in pattern mode: the selected pattern of an instrument,
// or the whole chain from there.
int PatternModeSteps(const ProjectState& state);

}  // namespace quib
