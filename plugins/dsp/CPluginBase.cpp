// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CPluginBase.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "dsp/CFlushToZero.h"
#include "dsp/PinProperties.h"

namespace quibplug {

namespace {

constexpr const char* kVendor = "QUIB";
constexpr std::int32_t kVst24 = 2400;
constexpr std::intptr_t kLongestChunk = 1 << 24;

CPluginBase* PluginOf(vst2::AEffect* effect) noexcept { return static_cast<CPluginBase*>(effect->object); }

// Up to 23 characters, always terminated.
std::intptr_t Answer(void* pointer, const std::string& text) {
    if (pointer == nullptr) return 0;
    const std::size_t length = std::min(text.size(), CProgramBank::kNameLength);
    std::memcpy(pointer, text.data(), length);
    static_cast<char*>(pointer)[length] = '\0';
    return 1;
}

std::intptr_t CanDo(const char* what, bool takesMidi) {
    if (what == nullptr) return 0;
    if (std::strcmp(what, "receiveVstEvents") == 0 || std::strcmp(what, "receiveVstMidiEvent") == 0) {
        return takesMidi ? 1 : -1;
    }
    return 0;
}

}  // namespace

CPluginBase::CPluginBase(const PluginDescription& description)
    : m_description(description),
      m_bank(description.uniqueId, description.parameters, description.programs),
      m_parameters(m_bank) {
    m_effect.magic = vst2::kEffectMagic;
    m_effect.numPrograms = m_bank.ProgramCount();
    m_effect.numParams = m_bank.ParameterCount();
    m_effect.numInputs = description.inputs;
    m_effect.numOutputs = description.outputs;
    m_effect.flags = vst2::effFlagsCanReplacing | vst2::effFlagsProgramChunks;
    if (description.category == vst2::kPlugCategSynth) m_effect.flags |= vst2::effFlagsIsSynth;
    m_effect.ioRatio = 1.0f;
    m_effect.object = this;
    m_effect.uniqueId = description.uniqueId;
    m_effect.version = description.version;
    m_effect.dispatcher = [](vst2::AEffect* effect, std::int32_t opcode, std::int32_t index, std::intptr_t value,
                             void* pointer, float option) -> std::intptr_t {
        CPluginBase* plugin = PluginOf(effect);
        if (opcode == vst2::effClose) {
            delete plugin;
            return 1;
        }
        return plugin->Dispatch(opcode, index, value, pointer, option);
    };
    m_effect.process = [](vst2::AEffect* effect, const float* const* inputs, float* const* outputs,
                          std::int32_t frames) { PluginOf(effect)->ProcessAccumulating(inputs, outputs, frames); };
    m_effect.processReplacing = [](vst2::AEffect* effect, const float* const* inputs, float* const* outputs,
                                   std::int32_t frames) {
        PluginOf(effect)->ProcessReplacing(inputs, outputs, frames);
    };
    m_effect.setParameter = [](vst2::AEffect* effect, std::int32_t index, float value) {
        PluginOf(effect)->m_bank.SetValue(index, value);
    };
    m_effect.getParameter = [](vst2::AEffect* effect, std::int32_t index) {
        return PluginOf(effect)->m_bank.Value(index);
    };
}

void CPluginBase::NoteOn(int, int) noexcept {}
void CPluginBase::NoteOff(int) noexcept {}
void CPluginBase::ControlChange(int, int) noexcept {}
void CPluginBase::PitchBend(float) noexcept {}
void CPluginBase::Aftertouch(float) noexcept {}
void CPluginBase::SampleRateChanged() noexcept {}
void CPluginBase::BeginBlock() noexcept {}
void CPluginBase::WakeUp() noexcept {}
int CPluginBase::FramesToSleep(const float* const*, int frames) const noexcept { return frames; }
std::int32_t CPluginBase::TailFrames() const noexcept { return 0; }

int CPluginBase::InEffect(int parameter) const noexcept { return parameter; }

const char* CPluginBase::KeyName(int) const noexcept { return nullptr; }

bool CPluginBase::TellMeasured(vst2::Measured&) noexcept { return false; }

const char* CPluginBase::OutputPairName(int) const noexcept { return "Main"; }

float CPluginBase::SetTo(int parameter) const noexcept {
    return m_bank.Parameter(parameter).ToReal(m_bank.Value(parameter));
}

std::intptr_t CPluginBase::Dispatch(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer,
                                    float option) {
    switch (opcode) {
        case vst2::effSetSampleRate:
            SetSampleRate(option);
            return 1;
        case vst2::effMainsChanged:
            if (value != 0) Resume();
            return 1;
        case vst2::effProcessEvents:
            return QueueEvents(static_cast<const vst2::VstEvents*>(pointer));
        case vst2::effCanBeAutomated:
            return index >= 0 && index < m_bank.ParameterCount() ? 1 : 0;
        case vst2::effGetPlugCategory:
            return m_description.category;
        case vst2::effGetVendorVersion:
            return m_description.version;
        case vst2::effCanDo:
            return CanDo(static_cast<const char*>(pointer), TakesMidi());
        case vst2::effGetTailSize:
            return TailFrames();
        case vst2::effGetVstVersion:
            return kVst24;
        case vst2::effGetInputProperties:
        case vst2::effGetOutputProperties:
            return DescribePin(opcode, index, pointer);
        case vst2::effGetParameterProperties:
            return DescribeParameter(index, pointer);
        case vst2::effVendorSpecific:
            return index == vst2::kTellMeasured && pointer != nullptr &&
                           TellMeasured(*static_cast<vst2::Measured*>(pointer))
                       ? 1
                       : 0;
        case vst2::effGetMidiKeyName:
            return NameKey(static_cast<vst2::MidiKeyName*>(pointer));
        case vst2::effSetProgram:
        case vst2::effGetProgram:
        case vst2::effSetProgramName:
        case vst2::effGetChunk:
        case vst2::effSetChunk:
        case vst2::effString2Parameter:
            return DispatchState(opcode, index, value, pointer);
        default:
            return DispatchText(opcode, index, pointer);
    }
}

std::intptr_t CPluginBase::NameKey(vst2::MidiKeyName* asked) const noexcept {
    const char* const name = asked != nullptr ? KeyName(asked->key) : nullptr;
    if (name == nullptr) return 0;
    std::snprintf(asked->name, sizeof(asked->name), "%s", name);
    return 1;
}

std::intptr_t CPluginBase::DispatchState(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer) {
    switch (opcode) {
        case vst2::effSetProgram:
            m_bank.SelectProgram(value >= 0 && value < m_bank.ProgramCount() ? static_cast<int>(value) : -1);
            return 0;
        case vst2::effGetProgram:
            return m_bank.Program();
        case vst2::effSetProgramName:
            if (pointer != nullptr) m_bank.RenameProgram(static_cast<const char*>(pointer));
            return 0;
        case vst2::effGetChunk:
            if (pointer == nullptr) return 0;
            m_chunk = m_bank.Save(index == 0);
            *static_cast<void**>(pointer) = m_chunk.data();
            return static_cast<std::intptr_t>(m_chunk.size());
        case vst2::effSetChunk:
            if (pointer == nullptr || value <= 0 || value > kLongestChunk) return 0;
            return m_bank.Load({static_cast<const std::uint8_t*>(pointer), static_cast<std::size_t>(value)}, index == 0)
                       ? 1
                       : 0;
        case vst2::effString2Parameter: {
            if (index < 0 || index >= m_bank.ParameterCount()) return 0;
            if (pointer == nullptr) return 1;
            float normalised = 0.0f;
            if (!m_bank.Parameter(index).Parse(static_cast<const char*>(pointer), normalised)) return 0;
            m_bank.SetValue(index, normalised);
            return 1;
        }
        default:
            return 0;
    }
}

std::intptr_t CPluginBase::DispatchText(std::int32_t opcode, std::int32_t index, void* pointer) {
    const bool parameter = index >= 0 && index < m_bank.ParameterCount();
    switch (opcode) {
        case vst2::effGetEffectName:
        case vst2::effGetProductString:
            return Answer(pointer, m_description.name);
        case vst2::effGetVendorString:
            return Answer(pointer, kVendor);
        case vst2::effGetProgramName:
            return Answer(pointer, m_bank.ProgramName(m_bank.Program()));
        case vst2::effGetProgramNameIndexed:
            return index >= 0 && index < m_bank.ProgramCount() ? Answer(pointer, m_bank.ProgramName(index)) : 0;
        case vst2::effGetParamName:
            return parameter ? Answer(pointer, m_bank.Parameter(index).name) : 0;
        case vst2::effGetParamLabel:
            return parameter ? Answer(pointer, m_bank.Parameter(index).label) : 0;
        case vst2::effGetParamDisplay:
            return parameter ? Answer(pointer, m_bank.Parameter(index).Display(m_bank.Value(InEffect(index)))) : 0;
        default:
            return 0;
    }
}

std::intptr_t CPluginBase::DescribePin(std::int32_t opcode, std::int32_t index, void* pointer) const noexcept {
    const bool input = opcode == vst2::effGetInputProperties;
    if (pointer == nullptr || index < 0 || index >= (input ? m_description.inputs : m_description.outputs)) return 0;
    const PinProperties pin = StereoPin(input ? "Input" : OutputPairName(index / 2), index);
    std::memcpy(pointer, &pin, sizeof pin);
    return 1;
}

// Which values a parameter of steps has; of the others there is nothing to tell.
std::intptr_t CPluginBase::DescribeParameter(std::int32_t index, void* pointer) const noexcept {
    if (pointer == nullptr || index < 0 || index >= m_bank.ParameterCount()) return 0;
    const std::size_t steps = m_bank.Parameter(index).stepNames.size();
    if (steps < 2) return 0;
    vst2::ParameterProperties told{};
    told.flags = steps == 2 ? vst2::kParameterIsSwitch : vst2::kParameterHasWholeRange;
    told.highest = static_cast<std::int32_t>(steps) - 1;
    std::memcpy(pointer, &told, sizeof told);
    return 1;
}

std::intptr_t CPluginBase::QueueEvents(const vst2::VstEvents* events) noexcept {
    if (events == nullptr || !TakesMidi()) return 0;
    vst2::VstEvent* const* list = events->events;
    for (std::int32_t i = 0; i < events->numEvents; ++i) {
        if (list[i] == nullptr || list[i]->type != vst2::kVstMidiType) continue;
        vst2::VstMidiEvent event;
        std::memcpy(&event, list[i], sizeof event);
        m_events.Push({event.deltaFrames, event.midiData[0], static_cast<std::uint8_t>(event.midiData[1] & 0x7f),
                       static_cast<std::uint8_t>(event.midiData[2] & 0x7f)});
    }
    return 1;
}

void CPluginBase::Resume() noexcept {
    m_events.Clear();
    m_tickOffset = 0;
    m_parameters.SetTickRate(TickRate());
    m_parameters.Snap();
    Reset();
    ParametersSnapped();
}

// Ticks last some 0.36 ms at any rate.
void CPluginBase::SetSampleRate(float hertz) noexcept {
    if (!(hertz >= 8000.0f && hertz <= 768000.0f)) return;
    m_sampleRate = hertz;
    m_tickFrames = hertz < 64000.0f ? 16 : (hertz < 128000.0f ? 32 : kMaximumTickFrames);
    SampleRateChanged();
    Resume();
}

void CPluginBase::ProcessReplacing(const float* const* inputs, float* const* outputs, int frames) noexcept {
    const CFlushToZero flushToZero;
    BeginBlock();
    int position = 0;
    while (position < frames) {
        while (const MidiMessage* message = m_events.TakeUntil(position)) {
            if (!Sounding() && m_parameters.Snap()) ParametersSnapped();
            HandleMessage(*message);
        }
        const int end = m_events.NextFrame(frames);
        RenderSpan(inputs, outputs, position, end);
        position = end;
    }
    m_events.EndBlock(std::max(frames, 0));
}

void CPluginBase::RenderSpan(const float* const* inputs, float* const* outputs, int begin, int end) noexcept {
    std::array<const float*, kMaximumChannels> from{};
    std::array<float*, kMaximumChannels> to{};
    for (int position = begin; position < end;) {
        for (int i = 0; i < m_description.inputs; ++i) from[static_cast<std::size_t>(i)] = inputs[i] + position;
        for (int i = 0; i < m_description.outputs; ++i) to[static_cast<std::size_t>(i)] = outputs[i] + position;
        int count = end - position;
        bool woken = false;
        if (!Sounding()) {
            const int rest = count;
            count = FramesToSleep(from.data(), rest);
            for (int i = 0; i < m_description.outputs; ++i) std::fill_n(to[static_cast<std::size_t>(i)], count, 0.0f);
            if (count < rest) {
                m_parameters.Snap();
                WakeUp();
                woken = true;
            }
        } else {
            if (m_tickOffset == 0) Tick(m_parameters.Advance());
            if (!Sounding()) continue;
            count = std::min(count, m_tickFrames - m_tickOffset);
            Render(from.data(), to.data(), count);
        }
        position += count;
        m_tickOffset = woken ? 0 : (m_tickOffset + count) % m_tickFrames;
    }
}

// The accumulating call of VST 1, for hosts that still make it.
void CPluginBase::ProcessAccumulating(const float* const* inputs, float* const* outputs, int frames) noexcept {
    constexpr int kPiece = 64;
    float storage[kMaximumChannels][kPiece];
    std::array<float*, kMaximumChannels> to{};
    std::array<const float*, kMaximumChannels> from{};
    for (std::size_t i = 0; i < to.size(); ++i) to[i] = storage[i];
    for (int begin = 0; begin < frames; begin += kPiece) {
        const int count = std::min(kPiece, frames - begin);
        for (int i = 0; i < m_description.inputs; ++i) from[static_cast<std::size_t>(i)] = inputs[i] + begin;
        ProcessReplacing(from.data(), to.data(), count);
        for (int i = 0; i < m_description.outputs; ++i) {
            for (int k = 0; k < count; ++k) outputs[i][begin + k] += storage[i][k];
        }
    }
}

void CPluginBase::HandleMessage(const MidiMessage& message) noexcept {
    switch (message.status & 0xf0) {
        case 0x80:
            NoteOff(message.first);
            break;
        case 0x90:
            if (message.second != 0) {
                NoteOn(message.first, message.second);
            } else {
                NoteOff(message.first);
            }
            break;
        case 0xb0:
            ControlChange(message.first, message.second);
            break;
        case 0xc0:
            m_bank.SelectProgram(message.first);
            break;
        case 0xd0:
            Aftertouch(static_cast<float>(message.first) / 127.0f);
            break;
        case 0xe0: {
            const int bend = message.first + 128 * message.second - 8192;
            PitchBend(static_cast<float>(bend) / (bend < 0 ? 8192.0f : 8191.0f));
            break;
        }
        default:
            break;
    }
}

}  // namespace quibplug
