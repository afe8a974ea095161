// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Base of the plug-ins that the tests load. A derived class says what it is in its constructor and
// overrides what it does.

#include <algorithm>
#include <atomic>
#include <cstring>
#include <string>
#include <vector>

#include "model/plugin/vst2/Vst2.h"

class CTestPlugin {
public:
    enum class EKind { kEffect, kSynth };

    // `code` has four characters; `name` is the effect's name.
    CTestPlugin(vst2::HostCallback hostCallback, EKind kind, const char* pluginName, const char* code,
                int parameterCount = 0, int programCount = 1)
        : host(hostCallback), name(pluginName), parameters(static_cast<std::size_t>(parameterCount)) {
        effect.magic = vst2::kEffectMagic;
        effect.dispatcher = [](vst2::AEffect* e, std::int32_t opcode, std::int32_t index, std::intptr_t value,
                               void* pointer, float option) -> std::intptr_t {
            CTestPlugin* const self = Self(e);
            if (opcode == vst2::effClose) {
                self->Close();
                delete self;
                return 1;
            }
            return self->Dispatch({opcode, index, value, pointer, option});
        };
        effect.setParameter = [](vst2::AEffect* e, std::int32_t index, float value) {
            Self(e)->SetParameter(index, value);
        };
        effect.getParameter = [](vst2::AEffect* e, std::int32_t index) {
            return index >= 0 && index < e->numParams ? Self(e)->parameters[static_cast<std::size_t>(index)].load()
                                                      : 0.0F;
        };
        effect.processReplacing = [](vst2::AEffect* e, const float* const* in, float* const* out, std::int32_t frames) {
            Self(e)->Process(in, out, frames);
            Self(e)->events.clear();
        };
        const bool isSynth = kind == EKind::kSynth;
        category = isSynth ? vst2::kPlugCategSynth : vst2::kPlugCategEffect;
        effect.flags = vst2::effFlagsCanReplacing | (isSynth ? vst2::effFlagsIsSynth : 0);
        effect.numInputs = isSynth ? 0 : 2;
        effect.numOutputs = 2;
        effect.numParams = parameterCount;
        effect.numPrograms = programCount;
        effect.uniqueId = vst2::FourCharacters(code[0], code[1], code[2], code[3]);
        effect.object = this;
        effect.version = 1;
        events.reserve(4096);
    }
    virtual ~CTestPlugin() = default;
    CTestPlugin(const CTestPlugin&) = delete;
    CTestPlugin& operator=(const CTestPlugin&) = delete;

    vst2::AEffect effect{};

protected:
    struct Event {
        int frame;
        int status;
        int data1;
        int data2;
    };

    // What the host calls the dispatcher with.
    struct Call {
        std::int32_t opcode;
        std::int32_t index;
        std::intptr_t value;
        void* pointer;
        float option;
    };

    virtual void Process(const float* const* in, float* const* out, std::int32_t frames) = 0;
    virtual void SetParameter(std::int32_t index, float value) {
        if (index >= 0 && index < effect.numParams) parameters[static_cast<std::size_t>(index)] = value;
    }
    virtual void Close() {}
    virtual std::intptr_t Dispatch(const Call& call) {
        switch (call.opcode) {
            case vst2::effGetPlugCategory:
                return category;
            case vst2::effGetEffectName:
                return Copy(name, call.pointer);
            case vst2::effGetVendorString:
                return Copy("QUIB tests", call.pointer);
            case vst2::effGetParamName:
                return Copy("Parameter " + std::to_string(call.index), call.pointer);
            case vst2::effGetProgram:
                return program;
            case vst2::effSetProgram:
                program = call.value;
                events.clear();
                return 0;
            case vst2::effMainsChanged:
                events.clear();
                return 0;
            case vst2::effCanDo:
                return std::strcmp(static_cast<const char*>(call.pointer), "receiveVstMidiEvent") == 0;
            case vst2::effProcessEvents:
                return TakeEvents(*static_cast<const vst2::VstEvents*>(call.pointer));
            default:
                return 0;
        }
    }

    // Gives the first parameters these values; the count stays.
    template <class Range>
    void TakeParameters(const Range& values) {
        std::size_t index = 0;
        for (const float value : values) parameters[index++] = value;
    }

    static std::intptr_t Copy(const std::string& text, void* pointer) {
        std::memcpy(pointer, text.c_str(), text.size() + 1);
        return 1;
    }

    static void Fill(float* const* out, std::int32_t frames, float value) {
        for (const int channel : {0, 1}) std::fill_n(out[channel], frames, value);
    }

    float Sum() const {
        float sum = 0;
        for (const float value : parameters) sum += value;
        return sum;
    }

    vst2::HostCallback host;
    std::int32_t category;
    std::string name;
    std::intptr_t program = 0;
    // Set by the user's thread and by the one that renders, as the interface allows.
    std::vector<std::atomic<float>> parameters;
    std::vector<Event> events;

private:
    static CTestPlugin* Self(vst2::AEffect* e) { return static_cast<CTestPlugin*>(e->object); }

    std::intptr_t TakeEvents(const vst2::VstEvents& list) {
        for (std::int32_t index = 0; index < list.numEvents; ++index) {
            const auto& midi = *reinterpret_cast<const vst2::VstMidiEvent*>((&list.events[0])[index]);
            if (midi.type != vst2::kVstMidiType) continue;
            events.push_back({midi.deltaFrames, midi.midiData[0], midi.midiData[1], midi.midiData[2]});
        }
        return 1;
    }
};

#define QUIB_TEST_PLUGIN_ENTRY(Class, entry)                                            \
    VST2_EXPORT vst2::AEffect* entry(vst2::HostCallback host) { /* owned by effClose */ \
        return &(new Class(host))->effect;                                              \
    }
