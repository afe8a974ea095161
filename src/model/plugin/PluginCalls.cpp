// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/PluginCalls.h"

#include "model/plugin/CPlugin.h"

namespace quib {

namespace {

thread_local bool renderThread = false;
thread_local const CPlugin* insidePlugin = nullptr;

}  // namespace

CRenderThreadScope::CRenderThreadScope() noexcept : before(renderThread) { renderThread = true; }
CRenderThreadScope::~CRenderThreadScope() { renderThread = before; }

bool IsRenderThread() noexcept { return renderThread; }

CPluginCallScope::CPluginCallScope(const CPlugin* plugin, int library, EPluginCall call) noexcept
    : before(insidePlugin), markBefore(EnterCall(library, call, renderThread)) {
    insidePlugin = plugin;
}
CPluginCallScope::~CPluginCallScope() {
    insidePlugin = before;
    LeaveCall(markBefore);
}
bool CPluginCallScope::IsInside(const CPlugin* plugin) noexcept { return insidePlugin == plugin; }

}  // namespace quib
