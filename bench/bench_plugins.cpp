// SPDX-License-Identifier: GPL-3.0-or-later
// What the built-in instruments cost: one iteration is one second of sound at 44.1 kHz in blocks of
// 256 frames, so a time of 10 ms is 1 % of a core.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "Vst2.h"

namespace {

constexpr int kBlock = 256;
constexpr int kBlocks = 44100 / kBlock;

std::intptr_t Host(vst2::AEffect*, std::int32_t, std::int32_t, std::intptr_t, void*, float) { return 2400; }

vst2::AEffect* Open(const std::string& name) {
    const std::string file = std::string(QUIB_BIN_DIR) + "/PluginInstruments/" + name + ".so";
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return nullptr;
    return reinterpret_cast<vst2::EntryProc>(dlsym(library, "VSTPluginMain"))(Host);
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

void Play(vst2::AEffect* effect, int key) {
    vst2::VstMidiEvent event{};
    event.type = vst2::kVstMidiType;
    event.byteSize = sizeof event;
    event.midiData[0] = 0x90;
    event.midiData[1] = static_cast<std::uint8_t>(key);
    event.midiData[2] = 100;
    vst2::VstEvents events{1, 0, {reinterpret_cast<vst2::VstEvent*>(&event), nullptr}};
    effect->dispatcher(effect, vst2::effProcessEvents, 0, 0, &events, 0.0f);
}

void RenderSecond(vst2::AEffect* effect, std::vector<std::vector<float>>& buffers) {
    std::vector<float*> outputs;
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
    for (int i = 0; i < state.range(0); ++i) Play(effect, 40 + 2 * i);
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

// Every drum is struck once a second.
void DrumsAll(benchmark::State& state) {
    vst2::AEffect* effect = Open("QUIB drums");
    if (effect == nullptr) return state.SkipWithError("the drums are not built");
    std::vector<std::vector<float>> buffers(10, std::vector<float>(kBlock));
    effect->dispatcher(effect, vst2::effMainsChanged, 0, 1, nullptr, 0.0f);
    for (auto _ : state) {
        for (int key = 36; key < 80; ++key) Play(effect, key);
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
