// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What live playing leaves for the editing thread to do: programs go into their plug-ins.

#include <functional>

#include "engine/CAudio.h"

namespace quib {

// Takes all notices of the engine and draws their consequences; from the 40 ms timer. `show` sees every notice
// afterwards: presets, recorded points and what windows draw are its affair. What is meant for an instrument that is
// gone is dropped.
void FollowNotices(CAudio& audio, const std::function<void(const EngineNotice&)>& show = {});

}  // namespace quib
