// SPDX-License-Identifier: GPL-3.0-or-later
// What the built-in instruments cost: one iteration is one second of sound at 44.1 kHz in blocks of
// 256 frames, so a time of 10 ms is 1 % of a core. amsynth, if it is installed, plays sixteen notes in
// the same run, as a measure. A plug-in whose sound has died away may cost no more than one that has
// not yet played: the rows "Silence".
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Vst2.h"

namespace {

constexpr int kBlock = 256;
constexpr int kBlocks = 44100 / kBlock;

std::intptr_t Host(vst2::AEffect*, std::int32_t opcode, std::int32_t, std::intptr_t, void*, float) {
    return opcode == vst2::audioMasterVersion ? 2400 : 0;
}

vst2::AEffect* OpenFile(const std::string& file) {
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return nullptr;
    void* entry = dlsym(library, "VSTPluginMain");
    if (entry == nullptr) entry = dlsym(library, "main");
    if (entry == nullptr) return nullptr;
    vst2::AEffect* effect = reinterpret_cast<vst2::EntryProc>(entry)(Host);
    if (effect == nullptr) return nullptr;
    effect->dispatcher(effect, vst2::effOpen, 0, 0, nullptr, 0.0f);
    effect->dispatcher(effect, vst2::effSetSampleRate, 0, 0, nullptr, 44100.0f);
    effect->dispatcher(effect, vst2::effSetBlockSize, 0, kBlock, nullptr, 0.0f);
    return effect;
}

vst2::AEffect* Open(const std::string& name) {
    return OpenFile(std::string(QUIB_BIN_DIR) + "/PluginInstruments/" + name + ".so");
}

void Set(vst2::AEffect* effect, const char* parameter, std::string shown) {
    for (int i = 0; i < effect->numParams; ++i) {
        char name[64] = "";
        effect->dispatcher(effect, vst2::effGetParamName, i, 0, name, 0.0f);
        if (std::strcmp(name, parameter) == 0) {
            effect->dispatcher(effect, vst2::effString2Parameter, i, 0, shown.data(), 0.0f);
        }
    }
}

// All of them in one call: a plug-in may keep only what it was handed last before a block.
void Play(vst2::AEffect* effect, const std::vector<int>& keys, int velocity = 100) {
    std::vector<vst2::VstMidiEvent> notes(keys.size());
    std::vector<std::byte> list(sizeof(vst2::VstEvents) + keys.size() * sizeof(void*));
    const auto count = static_cast<std::int32_t>(keys.size());
    std::memcpy(list.data(), &count, sizeof count);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        notes[i].type = vst2::kVstMidiType;
        notes[i].byteSize = sizeof notes[i];
        notes[i].midiData[0] = 0x90;
        notes[i].midiData[1] = static_cast<std::uint8_t>(keys[i]);
        notes[i].midiData[2] = static_cast<std::uint8_t>(velocity);
        void* note = &notes[i];
        std::memcpy(list.data() + offsetof(vst2::VstEvents, events) + i * sizeof note, &note, sizeof note);
    }
    effect->dispatcher(effect, vst2::effProcessEvents, 0, 0, list.data(), 0.0f);
}

std::vector<int> Keys(std::int64_t count) {
    std::vector<int> keys;
    keys.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < static_cast<int>(count); ++i) keys.push_back(40 + 2 * i);
    return keys;
}

void RenderSecond(vst2::AEffect* effect, std::vector<std::vector<float>>& buffers) {
    std::vector<float*> outputs;
    outputs.reserve(buffers.size());
    for (auto& buffer : buffers) outputs.push_back(buffer.data());
    for (int i = 0; i < kBlocks; ++i) effect->processReplacing(effect, nullptr, outputs.data(), kBlock);
    benchmark::DoNotOptimize(buffers[0][0]);
}

void SynthVoices(benchmark::State& state) {
    vst2::AEffect* effect = Open("QUIB synth");
    if (effect == nullptr) return state.SkipWithError("the synthesiser is not built");
    std::vector<std::vector<float>> buffers(2, std::vector<float>(kBlock));
    Set(effect, "Play Mode", "Poly");
    Set(effect, "Osc 1 Wave", "Saw");
    Set(effect, "Osc 2 Wave", "Saw");
    Set(effect, "Osc 2 Level", "0");
    Set(effect, "Sub Level", "-oo");
    Set(effect, "Drive", "0");
    Set(effect, "Amp Sustain", "0");
    Set(effect, "Unison Voices", std::to_string(state.range(1)));
    effect->dispatcher(effect, vst2::effMainsChanged, 0, 1, nullptr, 0.0f);
    Play(effect, Keys(state.range(0)));
    for (auto _ : state) RenderSecond(effect, buffers);
    effect->dispatcher(effect, vst2::effClose, 0, 0, nullptr, 0.0f);
}
BENCHMARK(SynthVoices)
    ->ArgNames({"voices", "unison"})
    ->Args({0, 1})
    ->Args({1, 1})
    ->Args({16, 1})
    ->Args({16, 7})
    ->Unit(benchmark::kMillisecond);

void ReferenceSynthVoices(benchmark::State& state) {
    const char* other = std::getenv("QUIB_REFERENCE_SYNTH");  // NOLINT(concurrency-mt-unsafe): never set here
    vst2::AEffect* effect = OpenFile(other != nullptr ? other : "/usr/lib/vst/amsynth_vst.so");
    if (effect == nullptr) return state.SkipWithError("amsynth is not installed");
    std::vector<std::vector<float>> buffers(static_cast<std::size_t>(effect->numOutputs), std::vector<float>(kBlock));
    effect->dispatcher(effect, vst2::effMainsChanged, 0, 1, nullptr, 0.0f);
    Play(effect, Keys(state.range(0)));
    for (auto _ : state) RenderSecond(effect, buffers);
    float peak = 0.0f;
    for (const float sample : buffers[0]) peak = std::max(peak, std::fabs(sample));
    state.counters["peak"] = static_cast<double>(peak);
    effect->dispatcher(effect, vst2::effClose, 0, 0, nullptr, 0.0f);
}
BENCHMARK(ReferenceSynthVoices)->ArgName("voices")->Arg(1)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond);

// Beats and tones in both ways of stretching, at 120 beats per minute.
void LoopsPlaying(benchmark::State& state) {
    vst2::AEffect* effect = Open("QUIB Loops");
    if (effect == nullptr) return state.SkipWithError("the loop player is not built");
    std::vector<std::vector<float>> buffers(2, std::vector<float>(kBlock));
    Set(effect, "Stretch", state.range(0) == 0 ? "Slices" : "Smooth");
    effect->dispatcher(effect, vst2::effMainsChanged, 0, 1, nullptr, 0.0f);
    Play(effect, {36, 44, 60, 64});
    for (auto _ : state) RenderSecond(effect, buffers);
    effect->dispatcher(effect, vst2::effClose, 0, 0, nullptr, 0.0f);
}
BENCHMARK(LoopsPlaying)->ArgName("smooth")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Before the first note, or after every program's longest release.
void Silence(benchmark::State& state, const char* name, bool played) {
    vst2::AEffect* effect = Open(name);
    if (effect == nullptr) return state.SkipWithError("the plug-in is not built");
    std::vector<std::vector<float>> buffers(10, std::vector<float>(kBlock));
    effect->dispatcher(effect, vst2::effMainsChanged, 0, 1, nullptr, 0.0f);
    if (played) {
        Play(effect, {36, 42, 49, 60});
        RenderSecond(effect, buffers);
        Play(effect, {36, 42, 49, 60}, 0);
        for (int second = 0; second < 15; ++second) RenderSecond(effect, buffers);
    }
    for (auto _ : state) RenderSecond(effect, buffers);
    effect->dispatcher(effect, vst2::effClose, 0, 0, nullptr, 0.0f);
}
BENCHMARK_CAPTURE(Silence, synth_cold, "QUIB synth", false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Silence, synth_after, "QUIB synth", true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Silence, drums_cold, "QUIB drums", false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Silence, drums_after, "QUIB drums", true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Silence, loops_cold, "QUIB Loops", false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Silence, loops_after, "QUIB Loops", true)->Unit(benchmark::kMicrosecond);

// Every drum is struck once a second.
void DrumsAll(benchmark::State& state) {
    vst2::AEffect* effect = Open("QUIB drums");
    if (effect == nullptr) return state.SkipWithError("the drums are not built");
    std::vector<std::vector<float>> buffers(10, std::vector<float>(kBlock));
    effect->dispatcher(effect, vst2::effMainsChanged, 0, 1, nullptr, 0.0f);
    for (auto _ : state) {
        Play(effect, {35, 38, 39, 42, 44, 46, 41, 45, 48, 49, 51, 37, 56, 54, 70, 75});
        RenderSecond(effect, buffers);
    }
    effect->dispatcher(effect, vst2::effClose, 0, 0, nullptr, 0.0f);
}
BENCHMARK(DrumsAll)->Unit(benchmark::kMillisecond);

void OpenSynth(benchmark::State& state) {
    for (auto _ : state) {
        vst2::AEffect* effect = Open("QUIB synth");
        if (effect == nullptr) return state.SkipWithError("the synthesiser is not built");
        effect->dispatcher(effect, vst2::effClose, 0, 0, nullptr, 0.0f);
    }
}
BENCHMARK(OpenSynth)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
