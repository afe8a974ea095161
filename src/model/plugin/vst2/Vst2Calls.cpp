// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/vst2/Vst2Calls.h"

#include <new>

#include "model/plugin/vst2/CVst2Plugin.h"

namespace quib {

using namespace vst2;

namespace {

thread_local bool insideEntry = false;

// Header of an event block up to its pointers.
constexpr std::size_t kEventHeaderBytes = offsetof(VstEvents, events);

}  // namespace

AEffect* CallEntry(EntryProc entry, HostCallback host) {
    struct Scope {
        Scope() { insideEntry = true; }
        ~Scope() { insideEntry = false; }
    } const scope;
    return entry(host);
}

void SetOwner(AEffect& effect, CVst2Plugin* owner) noexcept {
    effect.hostReserved1 = reinterpret_cast<std::intptr_t>(owner);
    effect.hostReserved2 = ~effect.hostReserved1;
}

CVst2Plugin* OwnerOf(const AEffect* effect) noexcept {
    if (effect == nullptr || insideEntry || effect->hostReserved2 != ~effect->hostReserved1) return nullptr;
    return reinterpret_cast<CVst2Plugin*>(effect->hostReserved1);
}

EPluginCall CallOfOpcode(std::int32_t opcode) noexcept {
    switch (opcode) {
        case effOpen:
            return EPluginCall::kLoad;
        case effClose:
            return EPluginCall::kClose;
        case effSetProgram:
        case effBeginSetProgram:
        case effEndSetProgram:
            return EPluginCall::kProgram;
        case effSetSampleRate:
        case effSetBlockSize:
        case effMainsChanged:
            return EPluginCall::kSwitch;
        case effEditGetRect:
        case effEditOpen:
            return EPluginCall::kOpenEditor;
        case effEditClose:
            return EPluginCall::kCloseEditor;
        case effEditIdle:
            return EPluginCall::kEditor;
        case effGetChunk:  // at every backup: a process that is killed then was killed by somebody else
            return EPluginCall::kAsk;
        case effSetChunk:
            return EPluginCall::kState;
        case effProcessEvents:
            return EPluginCall::kEvents;
        case effIdle:
            return EPluginCall::kIdle;
        case effString2Parameter:
            return EPluginCall::kParameter;
        default:
            return EPluginCall::kAsk;
    }
}

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

VstTimeInfo ToTimeInfo(const PlayTime& time) noexcept {
    VstTimeInfo info{};
    info.samplePos = time.samplePosition;
    info.sampleRate = time.sampleRate;
    info.ppqPos = time.quarterNotes;
    info.tempo = time.tempo;
    info.barStartPos = time.barStart;
    info.cycleStartPos = time.loopStart;
    info.cycleEndPos = time.loopEnd;
    info.timeSigNumerator = time.beatsPerBar;
    info.timeSigDenominator = time.beatUnit;
    if (time.known)
        info.flags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstCyclePosValid | kVstTimeSigValid;
    if (time.playing) info.flags |= kVstTransportPlaying;
    if (time.transportChanged) info.flags |= kVstTransportChanged;
    if (time.looping) info.flags |= kVstTransportCycleActive;
    if (time.recording) info.flags |= kVstTransportRecording;
    return info;
}

}  // namespace quib
