// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Pieces of the calls in both directions: how an effect finds its owner, the memory layout of an event
// block, the time as the interface has it. Used by CVst2Plugin alone, on the threads that call it.

#include <cstddef>
#include <span>

#include "model/MidiEvents.h"
#include "model/plugin/PlayTime.h"
#include "model/plugin/PluginMarks.h"
#include "model/plugin/vst2/Vst2.h"

namespace quib {

class CVst2Plugin;

// Calls a library's entry point; until it returns, callbacks of this thread belong to no plug-in.
vst2::AEffect* CallEntry(vst2::EntryProc entry, vst2::HostCallback host);

// Stores the owner in the fields of the effect that belong to the host, and finds it again. Null for
// an effect that is null, still being made, or not one of ours.
void SetOwner(vst2::AEffect& effect, CVst2Plugin* owner) noexcept;
CVst2Plugin* OwnerOf(const vst2::AEffect* effect) noexcept;

// What a request to the dispatcher is about.
EPluginCall CallOfOpcode(std::int32_t opcode) noexcept;

// Memory that a block of `count` events takes, and the block itself, built there.
std::size_t EventBlockBytes(std::size_t count) noexcept;
vst2::VstEvents* FillEventBlock(std::byte* memory, std::span<const BlockEvent> events) noexcept;

vst2::VstTimeInfo ToTimeInfo(const PlayTime& time) noexcept;

}  // namespace quib
