// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Pieces that CPlugin's calls in both directions share: which plug-in a thread is inside of, how an
// effect finds its owner, the memory layout of an event block. Used by the plug-in host alone.

#include <cstddef>
#include <span>

#include "model/MidiEvents.h"
#include "model/plugin/Vst2.h"

namespace quib {

class CPlugin;

// Calls a library's entry point; until it returns, callbacks of this thread belong to no plug-in.
vst2::AEffect* CallEntry(vst2::EntryProc entry, vst2::HostCallback host);

// Stores the owner in the fields of the effect that belong to the host, and finds it again. Null for
// an effect that is null, still being made, or not one of ours.
void SetOwner(vst2::AEffect& effect, CPlugin* owner) noexcept;
CPlugin* OwnerOf(const vst2::AEffect* effect) noexcept;

// The calling thread is inside a call of ours into `plugin` (null: a call whose reports count as the
// user's) until the end of the scope.
class CPluginCallScope {
public:
    explicit CPluginCallScope(const CPlugin* plugin) noexcept;
    ~CPluginCallScope();
    CPluginCallScope(const CPluginCallScope&) = delete;
    CPluginCallScope& operator=(const CPluginCallScope&) = delete;

    static bool IsInside(const CPlugin* plugin) noexcept;

private:
    const CPlugin* before;
};

// True on a thread that renders.
bool IsRenderThread() noexcept;

// Memory that a block of `count` events takes, and the block itself, built there.
std::size_t EventBlockBytes(std::size_t count) noexcept;
vst2::VstEvents* FillEventBlock(std::byte* memory, std::span<const BlockEvent> events) noexcept;

}  // namespace quib
