// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What every built-in plug-in shares: the VST 2 face, the program bank, smoothed parameters and a
// block cut at MIDI messages and control ticks. Ticks are counted in samples since the stream began,
// so no output depends on the host's block size. A plug-in derives from it and fills in the sound.

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "Vst2.h"
#include "dsp/CEventQueue.h"
#include "dsp/CProgramBank.h"
#include "dsp/CSmoothedParameters.h"

namespace quibplug {

struct PluginDescription {
    const char* name;
    std::int32_t uniqueId;
    std::int32_t version;
    vst2::PlugCategory category;
    int inputs;
    int outputs;
    std::span<const ParameterSpec> parameters;
    std::span<const ProgramSpec> programs;
};

class CPluginBase {
public:
    static constexpr int kMaximumTickFrames = 64;
    static constexpr int kMaximumChannels = 16;

    explicit CPluginBase(const PluginDescription& description);
    virtual ~CPluginBase() = default;
    CPluginBase(const CPluginBase&) = delete;
    CPluginBase& operator=(const CPluginBase&) = delete;

    vst2::AEffect* Effect() noexcept { return &m_effect; }

protected:
    // All of these are called on the render thread, or while no block is being rendered; none may
    // allocate, lock or throw.

    // The rate has changed, or the stream starts anew: forget everything that sounds.
    virtual void Reset() noexcept = 0;
    // False as long as rendering would only write zeros.
    virtual bool Sounding() const noexcept = 0;
    // Once per TickFrames() of the stream while Sounding(); `changed` tells that parameters moved.
    virtual void Tick(bool changed) noexcept = 0;
    // Parameters have jumped to their targets in silence.
    virtual void ParametersSnapped() noexcept = 0;
    // Writes `frames` frames, which all lie within the present tick, to every output.
    virtual void Render(const float* const* inputs, float* const* outputs, int frames) noexcept = 0;

    // Before each block, for what is asked of the host once a block.
    virtual void BeginBlock() noexcept;
    // Of the coming frames, how many a plug-in that is not Sounding() sleeps on through: all, unless
    // there is something in its inputs. When it is not all, parameters are snapped, WakeUp() is
    // called, and a tick begins.
    virtual int FramesToSleep(const float* const* inputs, int frames) const noexcept;
    virtual void WakeUp() noexcept;

    virtual void NoteOn(int key, int velocity) noexcept;
    virtual void NoteOff(int key) noexcept;
    virtual void ControlChange(int controller, int value) noexcept;
    virtual void PitchBend(float position) noexcept;   // -1..1
    virtual void Aftertouch(float pressure) noexcept;  // 0..1

    // The host's threads, while no block is being rendered; may allocate. Reset() follows.
    virtual void SampleRateChanged() noexcept;
    // Any thread: how long the output goes on after the input has ended. 0 says nothing about it.
    virtual std::int32_t TailFrames() const noexcept;
    // Any thread: what the outputs 2 * pair and 2 * pair + 1 carry.
    virtual const char* OutputPairName(int pair) const noexcept;
    // Any thread: what a key is called; null for one without a name.
    virtual const char* KeyName(int key) const noexcept;
    // Any thread, one at a time: false for one that measures nothing.
    virtual bool TellMeasured(vst2::Measured& told) noexcept;
    // Any thread: the parameter whose value holds for this one, another where two are linked.
    virtual int InEffect(int parameter) const noexcept;
    // Any thread: the real value that the host has set.
    float SetTo(int parameter) const noexcept;

    float SampleRate() const noexcept { return m_sampleRate; }
    int TickFrames() const noexcept { return m_tickFrames; }
    float TickRate() const noexcept { return m_sampleRate / static_cast<float>(m_tickFrames); }
    // Frames of the present tick that are already rendered.
    int TickOffset() const noexcept { return m_tickOffset; }
    const CSmoothedParameters& Parameters() const noexcept { return m_parameters; }

private:
    bool TakesMidi() const noexcept { return m_description.category == vst2::kPlugCategSynth; }
    std::intptr_t Dispatch(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer, float option);
    std::intptr_t DispatchText(std::int32_t opcode, std::int32_t index, void* pointer);
    std::intptr_t DispatchState(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer);
    std::intptr_t NameKey(vst2::MidiKeyName* asked) const noexcept;
    std::intptr_t DescribePin(std::int32_t opcode, std::int32_t index, void* pointer) const noexcept;
    std::intptr_t DescribeParameter(std::int32_t index, void* pointer) const noexcept;
    std::intptr_t QueueEvents(const vst2::VstEvents* events) noexcept;
    void Resume() noexcept;
    void SetSampleRate(float hertz) noexcept;
    void ProcessReplacing(const float* const* inputs, float* const* outputs, int frames) noexcept;
    void ProcessAccumulating(const float* const* inputs, float* const* outputs, int frames) noexcept;
    void RenderSpan(const float* const* inputs, float* const* outputs, int begin, int end) noexcept;
    void HandleMessage(const MidiMessage& message) noexcept;

    const PluginDescription m_description;
    vst2::AEffect m_effect{};
    CProgramBank m_bank;
    CSmoothedParameters m_parameters;
    CEventQueue m_events;
    float m_sampleRate = 44100.0f;
    int m_tickFrames = 16;
    int m_tickOffset = 0;
    std::vector<std::uint8_t> m_chunk;  // what the host was last handed by effGetChunk
};

}  // namespace quibplug
