// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A built-in plug-in as the tests see it: its library loaded, driven through the VST 2 interface
// alone. Messages are given by frame of the stream and handed over block by block.

#include "Testing.h"
#include "Vst2.h"

namespace quibtest {

// At which instruments are tested.
constexpr double kRate = 44100.0;
constexpr long kSecond = 44100;

struct Message {
    long frame;
    int status;
    int first;
    int second;
};

using Channels = std::vector<std::vector<float>>;

class CLoadedPlugin {
public:
    // `name` without folder and extension; opened and resumed at `sampleRate`.
    explicit CLoadedPlugin(const std::string& name, float sampleRate = kRate,
                           const std::string& folder = "PluginInstruments");
    ~CLoadedPlugin();
    CLoadedPlugin(const CLoadedPlugin&) = delete;
    CLoadedPlugin& operator=(const CLoadedPlugin&) = delete;

    vst2::AEffect& Effect() { return *m_effect; }
    std::intptr_t Call(int opcode, int index = 0, std::intptr_t value = 0, void* pointer = nullptr, float option = 0);
    std::string Text(int opcode, int index = 0);
    int Find(const std::string& parameter);
    void Set(int index, float value) { m_effect->setParameter(m_effect, index, value); }
    // Sets a parameter by its name to what its display shows, such as "-6" or "Saw".
    void Set(const std::string& parameter, const char* shown);
    void Set(std::initializer_list<std::pair<const char*, const char*>> all) {
        for (const auto& [parameter, shown] : all) Set(parameter, shown);
    }
    float Get(int index) { return m_effect->getParameter(m_effect, index); }
    void Resume(float sampleRate);

    // Renders `frames` of an instrument in blocks of the given sizes, used in turn; `between` is called before each
    // block with the frame it begins at.
    Channels Render(long frames, const std::vector<Message>& messages, const std::vector<int>& blocks = {256},
                    const std::function<void(long)>& between = {});

    // The same of a plug-in with inputs: as long as `input`, which has a row for each of them.
    Channels Process(Channels input, const std::vector<Message>& messages, const std::vector<int>& blocks = {256},
                     const std::function<void(long)>& between = {});

    std::vector<char> Chunk(bool bank = true);
    std::intptr_t SetChunk(std::vector<char> chunk, bool bank = true);

    // What the host tells when it is asked for the time; null, as at first, for a host that knows none.
    void SetTime(vst2::VstTimeInfo* time) { m_effect->hostReserved1 = reinterpret_cast<std::intptr_t>(time); }

private:
    Channels Play(Channels& input, long frames, const std::vector<Message>& messages, const std::vector<int>& blocks,
                  const std::function<void(long)>& between);

    vst2::AEffect* m_effect = nullptr;
};

float PeakOf(const std::vector<float>& samples, long begin = 0, long end = -1);
float PeakOf(const Channels& channels);
bool AllFinite(const Channels& channels);
// The largest step from one sample to the next.
float LargestStep(const std::vector<float>& samples, long begin, long end);
// Amplitude of a sine of `hertz` within the samples, by a Blackman-windowed correlation.
double AmplitudeAt(const std::vector<float>& samples, double hertz, double sampleRate, long begin, long end);

}  // namespace quibtest
