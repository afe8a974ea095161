// SPDX-License-Identifier: GPL-3.0-or-later
// What the built-in effects cost: one iteration is one second of sound at 44.1 kHz in blocks of 256
// frames, so a time of 10 ms is 1 % of a core. A hall reverb of Debian's, if it is installed, is
// measured in the same run; the environment's QUIB_REFERENCE_REVERB may name another library.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "model/plugin/vst2/Vst2.h"
#include "platform/FloatingPointMode.h"

namespace {

constexpr int kBlock = 256;
constexpr int kBlocks = 44100 / kBlock;
constexpr float kSampleRate = 44100.0f;

std::intptr_t Host(vst2::AEffect*, std::int32_t opcode, std::int32_t, std::intptr_t, void*, float) {
    static vst2::VstTimeInfo time{};
    time.sampleRate = static_cast<double>(kSampleRate);
    time.tempo = 125.0;
    time.flags = vst2::kVstTempoValid;
    switch (opcode) {
        case vst2::audioMasterVersion:
            return 2400;
        case vst2::audioMasterGetTime:
            return reinterpret_cast<std::intptr_t>(&time);
        case vst2::audioMasterGetSampleRate:
            return static_cast<std::intptr_t>(kSampleRate);
        case vst2::audioMasterGetBlockSize:
            return kBlock;
        default:
            return 0;
    }
}

class CRunning {
public:
    explicit CRunning(const std::string& file, std::intptr_t program) {
        void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) return;
        void* entry = dlsym(library, "VSTPluginMain");
        if (entry == nullptr) entry = dlsym(library, "main");
        if (entry == nullptr) return;
        m_effect = reinterpret_cast<vst2::EntryProc>(entry)(Host);
        if (m_effect == nullptr) return;
        Call(vst2::effOpen);
        Call(vst2::effSetProgram, program);
        Call(vst2::effSetSampleRate, 0, kSampleRate);
        Call(vst2::effSetBlockSize, kBlock);
        Call(vst2::effMainsChanged, 1);
        std::minstd_rand random(1);
        std::uniform_real_distribution<float> range(-0.3f, 0.3f);
        for (float& sample : m_noise) sample = range(random);
    }
    ~CRunning() {
        if (m_effect != nullptr) Call(vst2::effClose);
    }
    CRunning(const CRunning&) = delete;
    CRunning& operator=(const CRunning&) = delete;

    bool Loaded() const { return m_effect != nullptr; }
    void Call(int opcode, std::intptr_t value = 0, float option = 0.0f) {
        m_effect->dispatcher(m_effect, opcode, 0, value, nullptr, option);
    }
    // The noise, or silence.
    void RenderSecond(bool sound) {
        static std::vector<float> silence(kBlock);
        float* source = sound ? m_noise.data() : silence.data();
        float* inputs[] = {source, source};
        float* outputs[] = {m_left.data(), m_right.data()};
        for (int i = 0; i < kBlocks; ++i) m_effect->processReplacing(m_effect, inputs, outputs, kBlock);
        benchmark::DoNotOptimize(m_left[0]);
    }

private:
    vst2::AEffect* m_effect = nullptr;
    std::vector<float> m_noise = std::vector<float>(kBlock);
    std::vector<float> m_left = std::vector<float>(kBlock);
    std::vector<float> m_right = std::vector<float>(kBlock);
};

enum Input { kSound, kSilence, kSilenceAfterSound };

void Measure(benchmark::State& state, const std::string& file, Input input, std::intptr_t program) {
    quib::SetFlushToZero();
    CRunning effect(file, program);
    if (!effect.Loaded()) return state.SkipWithError("the library is not there");
    const int seconds = input == kSilence ? 0 : (input == kSound ? 2 : 40);
    for (int second = 0; second < seconds; ++second) effect.RenderSecond(input == kSound || second == 0);
    for (auto _ : state) effect.RenderSecond(input == kSound);
}

std::string BuiltIn(const char* name) { return std::string(QUIB_BIN_DIR) + "/PluginEffects/" + name + ".so"; }

void ReferenceReverb(benchmark::State& state) {
    const char* other = std::getenv("QUIB_REFERENCE_REVERB");  // NOLINT(concurrency-mt-unsafe): never set here
    Measure(state, other != nullptr ? other : "/usr/lib/lxvst/DragonflyHallReverb-vst.so", kSound, 0);
}

// Sound through two programs of each; then silence, before anything has sounded and after a tail.
const bool registered = [] {
    for (const char* name : {"QUIB chorus", "QUIB reverb", "QUIB delay", "QUIB compressor", "QUIB flanger"}) {
        const auto add = [&](const char* what, Input input, std::intptr_t program) {
            const std::string row = std::string(name) + what + std::to_string(program);
            benchmark::RegisterBenchmark(row.c_str(), [=](benchmark::State& state) {
                Measure(state, BuiltIn(name), input, program);
            })->Unit(input == kSound ? benchmark::kMillisecond : benchmark::kMicrosecond);
        };
        add("/program:", kSound, 0);
        add("/program:", kSound, 5);
        add("/cold/program:", kSilence, 0);
        add("/after/program:", kSilenceAfterSound, 0);
    }
    return true;
}();
BENCHMARK(ReferenceReverb)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
