// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What live playing leaves for the editing thread to do: recorded points go into their lanes, programs into
// their plug-ins.

#include <functional>

#include "engine/CAudio.h"

namespace quib {

// Told of an instrument whose MIDI lanes are about to take recorded points.
using LanesChange = std::function<void(const std::shared_ptr<CInstrument>&)>;

// Takes all notices of the engine and draws their consequences, each lane published once; from the 40 ms
// timer. `show` sees every notice afterwards: presets and what windows draw are its affair. A point at or
// before the last one of its lane is dropped, and so is what is meant for an instrument that is gone.
void FollowNotices(CAudio& audio, const std::function<void(const EngineNotice&)>& show = {},
                   const LanesChange& willRecord = {});

}  // namespace quib
