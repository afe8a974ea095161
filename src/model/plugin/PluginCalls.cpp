// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/PluginCalls.h"

#include <new>

#include "model/plugin/CPlugin.h"

namespace quib {

using namespace vst2;

namespace {

thread_local bool renderThread = false;
thread_local bool insideEntry = false;
thread_local const CPlugin* insidePlugin = nullptr;

// Header of an event block up to its pointers.
constexpr std::size_t kEventHeaderBytes = offsetof(VstEvents, events);

}  // namespace

CRenderThreadScope::CRenderThreadScope() noexcept : before(renderThread) { renderThread = true; }
CRenderThreadScope::~CRenderThreadScope() { renderThread = before; }

bool IsRenderThread() noexcept { return renderThread; }

AEffect* CallEntry(EntryProc entry, HostCallback host) {
    insideEntry = true;
    AEffect* const effect = entry(host);
    insideEntry = false;
    return effect;
}

void SetOwner(AEffect& effect, CPlugin* owner) noexcept {
    effect.hostReserved1 = reinterpret_cast<std::intptr_t>(owner);
    effect.hostReserved2 = ~effect.hostReserved1;
}

CPlugin* OwnerOf(const AEffect* effect) noexcept {
    if (effect == nullptr || insideEntry || effect->hostReserved2 != ~effect->hostReserved1) return nullptr;
    return reinterpret_cast<CPlugin*>(effect->hostReserved1);
}

CPluginCallScope::CPluginCallScope(const CPlugin* plugin) noexcept : before(insidePlugin) { insidePlugin = plugin; }
CPluginCallScope::~CPluginCallScope() { insidePlugin = before; }
bool CPluginCallScope::IsInside(const CPlugin* plugin) noexcept { return insidePlugin == plugin; }

std::size_t EventBlockBytes(std::size_t count) noexcept {
    return kEventHeaderBytes + count * (sizeof(VstEvent*) + sizeof(VstMidiEvent));
}

VstEvents* FillEventBlock(std::byte* memory, std::span<const BlockEvent> events) noexcept {
    auto* const block = new (memory) VstEvents{};
    block->numEvents = static_cast<std::int32_t>(events.size());
    std::byte* pointer = memory + kEventHeaderBytes;
    std::byte* place = pointer + events.size() * sizeof(VstEvent*);
    for (const BlockEvent& event : events) {
        auto* const midi = new (place) VstMidiEvent{};
        midi->type = kVstMidiType;
        midi->byteSize = sizeof(VstMidiEvent);
        midi->deltaFrames = event.deltaFrames;
        midi->flags = kVstMidiEventIsRealtime;
        midi->midiData[0] = event.status;
        midi->midiData[1] = event.data1;
        midi->midiData[2] = event.data2;
        new (pointer) VstEvent*(reinterpret_cast<VstEvent*>(midi));
        pointer += sizeof(VstEvent*);
        place += sizeof(VstMidiEvent);
    }
    return block;
}

}  // namespace quib
