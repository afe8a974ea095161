// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugins/CEffectRunner.h"

#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <stdexcept>

namespace quibtest {

namespace {

// Of the plug-in that asks; while it is being opened there is none yet.
vst2::VstTimeInfo* hostTime = nullptr;

std::intptr_t Host(vst2::AEffect*, std::int32_t opcode, std::int32_t, std::intptr_t, void*, float) {
    if (opcode == vst2::audioMasterGetTime) return reinterpret_cast<std::intptr_t>(hostTime);
    return opcode == vst2::audioMasterVersion ? 2400 : 0;
}

}  // namespace

CEffectRunner::CEffectRunner(const std::string& name, float sampleRate) {
    const std::string file = std::string(QUIB_BIN_DIR) + "/PluginEffects/" + name + ".so";
    // Never unloaded: the sanitizers name the code of a report by it.
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw std::runtime_error(dlerror());
    m_effect = reinterpret_cast<vst2::EntryProc>(dlsym(library, "VSTPluginMain"))(Host);
    Call(vst2::effOpen);
    Resume(sampleRate);
}

CEffectRunner::~CEffectRunner() { Call(vst2::effClose); }

void CEffectRunner::SetTempo(double beatsPerMinute) {
    m_time.tempo = beatsPerMinute;
    m_time.flags = beatsPerMinute > 0.0 ? vst2::kVstTempoValid : 0;
}

std::intptr_t CEffectRunner::Call(int opcode, int index, std::intptr_t value, void* pointer, float option) {
    return m_effect->dispatcher(m_effect, opcode, index, value, pointer, option);
}

std::string CEffectRunner::Text(int opcode, int index) {
    char text[64] = "";
    Call(opcode, index, 0, text);
    return text;
}

void CEffectRunner::Set(const std::string& parameter, const std::string& shown) {
    std::string text = shown;
    for (int i = 0; i < m_effect->numParams; ++i) {
        if (Text(vst2::effGetParamName, i) != parameter) continue;
        if (Call(vst2::effString2Parameter, i, 0, text.data()) != 1) throw std::runtime_error("no value " + text);
        return;
    }
    throw std::runtime_error("no parameter " + parameter);
}

void CEffectRunner::Resume(float sampleRate) {
    Call(vst2::effMainsChanged, 0, 0);
    Call(vst2::effSetSampleRate, 0, 0, nullptr, sampleRate);
    Call(vst2::effSetBlockSize, 0, 16384);
    Call(vst2::effMainsChanged, 0, 1);
}

StereoSignal CEffectRunner::Run(const StereoSignal& input, const std::vector<int>& blocks,
                                const std::function<void(long)>& between) {
    StereoSignal from = input;
    StereoSignal output(input.Frames());
    std::size_t turn = 0;
    for (long begin = 0; begin < input.Frames();) {
        const long end = std::min(input.Frames(), begin + blocks[turn++ % blocks.size()]);
        if (between) between(begin);
        hostTime = (m_time.flags & vst2::kVstTempoValid) != 0 ? &m_time : nullptr;
        float* inputs[] = {from.left.data() + begin, from.right.data() + begin};
        float* outputs[] = {output.left.data() + begin, output.right.data() + begin};
        m_effect->processReplacing(m_effect, inputs, outputs, static_cast<std::int32_t>(end - begin));
        begin = end;
    }
    return output;
}

void CEffectRunner::RunInPlace(StereoSignal& signal, long begin, int frames) {
    hostTime = (m_time.flags & vst2::kVstTempoValid) != 0 ? &m_time : nullptr;
    float* both[] = {signal.left.data() + begin, signal.right.data() + begin};
    m_effect->processReplacing(m_effect, both, both, frames);
}

std::vector<char> CEffectRunner::Chunk(bool bank) {
    void* data = nullptr;
    const std::intptr_t size = Call(vst2::effGetChunk, bank ? 0 : 1, 0, &data);
    const char* bytes = static_cast<const char*>(data);
    return {bytes, bytes + size};
}

std::intptr_t CEffectRunner::SetChunk(std::vector<char> chunk, bool bank) {
    return Call(vst2::effSetChunk, bank ? 0 : 1, static_cast<std::intptr_t>(chunk.size()), chunk.data());
}

StereoSignal Impulse(long frames, float left, float right) {
    StereoSignal signal(frames);
    signal.left[0] = left;
    signal.right[0] = right;
    return signal;
}

StereoSignal SineTone(long frames, double hertz, double sampleRate, float amplitude) {
    StereoSignal signal(frames);
    for (std::size_t i = 0; i < signal.left.size(); ++i) {
        const double turns = hertz * static_cast<double>(i) / sampleRate;
        signal.left[i] = signal.right[i] = amplitude * static_cast<float>(std::sin(2.0 * std::numbers::pi * turns));
    }
    return signal;
}

StereoSignal Noise(long frames, float amplitude, unsigned seed) {
    StereoSignal signal(frames);
    std::minstd_rand random(seed);
    std::uniform_real_distribution<float> range(-amplitude, amplitude);
    for (float& sample : signal.left) sample = range(random);
    for (float& sample : signal.right) sample = range(random);
    return signal;
}

float Peak(const std::vector<float>& samples, long begin, long end) {
    float peak = 0.0f;
    const long last = end < 0 ? static_cast<long>(samples.size()) : end;
    for (long i = begin; i < last; ++i) peak = std::max(peak, std::fabs(samples[static_cast<std::size_t>(i)]));
    return peak;
}

double Rms(const std::vector<float>& samples, long begin, long end) {
    double sum = 0.0;
    for (long i = begin; i < end; ++i) {
        const auto sample = static_cast<double>(samples[static_cast<std::size_t>(i)]);
        sum += sample * sample;
    }
    return std::sqrt(sum / static_cast<double>(end - begin));
}

bool Finite(const StereoSignal& signal) {
    const auto finite = [](float sample) { return std::isfinite(sample); };
    return std::all_of(signal.left.begin(), signal.left.end(), finite) &&
           std::all_of(signal.right.begin(), signal.right.end(), finite);
}

float LargestJump(const std::vector<float>& samples, long begin, long end) {
    float largest = 0.0f;
    for (auto i = static_cast<std::size_t>(begin) + 1; i < static_cast<std::size_t>(end); ++i) {
        largest = std::max(largest, std::fabs(samples[i] - samples[i - 1]));
    }
    return largest;
}

double Amplitude(const std::vector<float>& samples, double hertz, double sampleRate, long begin, long end) {
    const double turn = 2.0 * std::numbers::pi;
    std::complex<double> sum = 0.0;
    double weight = 0.0;
    for (long i = begin; i < end; ++i) {
        const double place = static_cast<double>(i - begin) / static_cast<double>(end - begin);
        const double window = 0.5 - 0.5 * std::cos(turn * place);
        sum += window * static_cast<double>(samples[static_cast<std::size_t>(i)]) *
               std::polar(1.0, turn * hertz * static_cast<double>(i) / sampleRate);
        weight += window;
    }
    return 2.0 * std::abs(sum) / weight;
}

}  // namespace quibtest
