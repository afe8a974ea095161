// SPDX-License-Identifier: GPL-3.0-or-later
#include "plugins/CLoadedPlugin.h"

#include <dlfcn.h>

#include <complex>
#include <stdexcept>

namespace quibtest {

namespace {

std::intptr_t Host(vst2::AEffect* effect, std::int32_t opcode, std::int32_t, std::intptr_t, void*, float) {
    if (opcode == vst2::audioMasterGetTime) return effect->hostReserved1;
    return opcode == vst2::audioMasterVersion ? 2400 : 0;
}

void SendMessages(vst2::AEffect* effect, const std::vector<Message>& messages, long begin, long end) {
    std::vector<vst2::VstMidiEvent> events;
    for (const Message& message : messages) {
        if (message.frame < begin || message.frame >= end) continue;
        vst2::VstMidiEvent& event = events.emplace_back();
        event.type = vst2::kVstMidiType;
        event.byteSize = sizeof event;
        event.deltaFrames = static_cast<std::int32_t>(message.frame - begin);
        event.midiData[0] = static_cast<std::uint8_t>(message.status);
        event.midiData[1] = static_cast<std::uint8_t>(message.first);
        event.midiData[2] = static_cast<std::uint8_t>(message.second);
    }
    if (events.empty()) return;
    std::vector<std::byte> list(sizeof(vst2::VstEvents) + events.size() * sizeof(void*));
    const auto count = static_cast<std::int32_t>(events.size());
    std::memcpy(list.data(), &count, sizeof count);
    for (std::size_t i = 0; i < events.size(); ++i) {
        void* event = &events[i];
        std::memcpy(list.data() + offsetof(vst2::VstEvents, events) + i * sizeof event, &event, sizeof event);
    }
    effect->dispatcher(effect, vst2::effProcessEvents, 0, 0, list.data(), 0.0f);
}

}  // namespace

CLoadedPlugin::CLoadedPlugin(const std::string& name, float sampleRate, const std::string& folder) {
    const std::string file = std::string(QUIB_BIN_DIR) + "/" + folder + "/" + name + ".so";
    // Never unloaded: the sanitizers name the code of a report by it.
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw std::runtime_error("cannot load " + file);
    const auto entry = reinterpret_cast<vst2::EntryProc>(dlsym(library, "VSTPluginMain"));
    m_effect = entry(Host);
    Call(vst2::effOpen);
    Resume(sampleRate);
}

CLoadedPlugin::~CLoadedPlugin() { Call(vst2::effClose); }

std::intptr_t CLoadedPlugin::Call(int opcode, int index, std::intptr_t value, void* pointer, float option) {
    return m_effect->dispatcher(m_effect, opcode, index, value, pointer, option);
}

std::string CLoadedPlugin::Text(int opcode, int index) {
    char text[64] = "";
    Call(opcode, index, 0, text);
    return text;
}

int CLoadedPlugin::Find(const std::string& parameter) {
    for (int i = 0; i < m_effect->numParams; ++i) {
        if (Text(vst2::effGetParamName, i) == parameter) return i;
    }
    throw std::runtime_error("no parameter " + parameter);
}

void CLoadedPlugin::Set(const std::string& parameter, const char* shown) {
    std::string text = shown;
    if (Call(vst2::effString2Parameter, Find(parameter), 0, text.data()) != 1) throw std::runtime_error(text);
}

void CLoadedPlugin::Resume(float sampleRate) {
    Call(vst2::effMainsChanged, 0, 0);
    Call(vst2::effSetSampleRate, 0, 0, nullptr, sampleRate);
    Call(vst2::effSetBlockSize, 0, 16384);
    Call(vst2::effMainsChanged, 0, 1);
}

Channels CLoadedPlugin::Render(long frames, const std::vector<Message>& messages, const std::vector<int>& blocks,
                               const std::function<void(long)>& between) {
    Channels none;
    return Play(none, frames, messages, blocks, between);
}

Channels CLoadedPlugin::Process(Channels input, const std::vector<Message>& messages, const std::vector<int>& blocks,
                                const std::function<void(long)>& between) {
    return Play(input, static_cast<long>(input.at(0).size()), messages, blocks, between);
}

Channels CLoadedPlugin::Play(Channels& input, long frames, const std::vector<Message>& messages,
                             const std::vector<int>& blocks, const std::function<void(long)>& between) {
    Channels channels(static_cast<std::size_t>(m_effect->numOutputs),
                      std::vector<float>(static_cast<std::size_t>(frames)));
    std::size_t turn = 0;
    for (long begin = 0; begin < frames;) {
        const long end = std::min(frames, begin + blocks[turn++ % blocks.size()]);
        if (between) between(begin);
        SendMessages(m_effect, messages, begin, end);
        std::vector<float*> inputs;
        for (auto& channel : input) inputs.push_back(channel.data() + begin);
        std::vector<float*> outputs;
        for (auto& channel : channels) outputs.push_back(channel.data() + begin);
        m_effect->processReplacing(m_effect, inputs.data(), outputs.data(), static_cast<std::int32_t>(end - begin));
        begin = end;
    }
    return channels;
}

std::vector<char> CLoadedPlugin::Chunk(bool bank) {
    void* data = nullptr;
    const std::intptr_t size = Call(vst2::effGetChunk, bank ? 0 : 1, 0, &data);
    const char* bytes = static_cast<const char*>(data);
    return {bytes, bytes + size};
}

std::intptr_t CLoadedPlugin::SetChunk(std::vector<char> chunk, bool bank) {
    return Call(vst2::effSetChunk, bank ? 0 : 1, static_cast<std::intptr_t>(chunk.size()), chunk.data());
}

float PeakOf(const std::vector<float>& samples, long begin, long end) {
    float peak = 0.0f;
    const long last = end < 0 ? static_cast<long>(samples.size()) : end;
    for (long i = begin; i < last; ++i) peak = std::max(peak, std::fabs(samples[static_cast<std::size_t>(i)]));
    return peak;
}

float PeakOf(const Channels& channels) {
    float peak = 0.0f;
    for (const auto& channel : channels) peak = std::max(peak, PeakOf(channel));
    return peak;
}

bool AllFinite(const Channels& channels) {
    return std::all_of(channels.begin(), channels.end(), [](const std::vector<float>& channel) {
        return std::all_of(channel.begin(), channel.end(), [](float sample) { return std::isfinite(sample); });
    });
}

float LargestStep(const std::vector<float>& samples, long begin, long end) {
    float largest = 0.0f;
    for (auto i = static_cast<std::size_t>(begin) + 1; i < static_cast<std::size_t>(end); ++i) {
        largest = std::max(largest, std::fabs(samples[i] - samples[i - 1]));
    }
    return largest;
}

double AmplitudeAt(const std::vector<float>& samples, double hertz, double sampleRate, long begin, long end) {
    const double turn = 2.0 * std::numbers::pi;
    const std::complex<double> windowStep = std::polar(1.0, turn / static_cast<double>(end - begin));
    const std::complex<double> step = std::polar(1.0, turn * hertz / sampleRate);
    std::complex<double> place = 1.0;
    std::complex<double> tone = 1.0;
    std::complex<double> sum = 0.0;
    double weight = 0.0;
    for (long i = begin; i < end; ++i) {
        const double cosine = place.real();
        const double window = 0.42 - 0.5 * cosine + 0.08 * (2.0 * cosine * cosine - 1.0);
        sum += window * static_cast<double>(samples[static_cast<std::size_t>(i)]) * tone;
        weight += window;
        place *= windowStep;
        tone *= step;
    }
    return 2.0 * std::abs(sum) / weight;
}

}  // namespace quibtest
