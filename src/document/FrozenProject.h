// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// All that decides what an instrument gives before its strip, as a project of its own, and the key that stands for
// it: equal where a project file would say the same. User-interface thread.

#include <string>

#include "document/DetachedProject.h"
#include "document/DocumentContext.h"
#include "model/PlaylistSpans.h"

namespace quib {

struct FrozenProject {
    ProjectState state;     // the instrument alone, its plug-ins named with their states
    PlaylistLength length;  // of what it plays; to the end of the song when that is endless
    std::string key;        // 64 characters
};

// `whole`: the project, `instrument` one of it.
FrozenProject FrozenProjectOf(const CAudio& audio, const ProjectState& whole, CInstrument& instrument,
                              const StateOfPlugin& stateOf);

// Why the instrument cannot be frozen, in the language of the windows; empty when it can.
QString FreezeRefusal(const CAudio& audio, const CInstrument& instrument);

}  // namespace quib
