// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which plug-in a thread is inside of, and whether it renders. Used by the plug-in host and its formats alone.

#include "model/plugin/PluginMarks.h"

namespace quib {

class CPlugin;

// The calling thread is inside a call of ours into `plugin` (null: a call whose reports count as the
// user's), and marked as inside of its library, until the end of the scope.
class CPluginCallScope {
public:
    CPluginCallScope(const CPlugin* plugin, int library, EPluginCall call) noexcept;
    ~CPluginCallScope();
    CPluginCallScope(const CPluginCallScope&) = delete;
    CPluginCallScope& operator=(const CPluginCallScope&) = delete;

    static bool IsInside(const CPlugin* plugin) noexcept;

private:
    const CPlugin* before;
    Mark markBefore;
};

// True on a thread that renders.
bool IsRenderThread() noexcept;

}  // namespace quib
