// SPDX-License-Identifier: GPL-3.0-or-later
// An instrument whose chunk is the sound that is heard now, without the number of its program. Like some
// real ones it brings back the factory's values when a program is selected, whichever it is. Silent.
#include <algorithm>
#include <array>

#include "TestPlugin.h"

namespace {

class CPatchSynth final : public CTestPlugin {
public:
    explicit CPatchSynth(vst2::HostCallback hostCallback) : CTestPlugin(hostCallback) {
        BecomeSynth();
        SetParameterCount(kParameters);
        effect.numPrograms = 4;
        effect.flags |= vst2::effFlagsProgramChunks;
        effect.uniqueId = vst2::FourCharacters('t', 's', 'P', 'a');
        name = "Patch synth";
    }

private:
    static constexpr int kParameters = 4;

    std::array<float, kParameters> chunk{};

    std::intptr_t Dispatch(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer,
                           float option) override {
        switch (opcode) {
            case vst2::effSetProgram:
                program = value;
                for (auto& parameter : parameters) parameter = 0.1F * static_cast<float>(value);
                return 0;
            case vst2::effGetChunk:
                std::copy(parameters.begin(), parameters.end(), chunk.begin());
                *static_cast<void**>(pointer) = chunk.data();
                return sizeof chunk;
            case vst2::effSetChunk:
                if (value != sizeof chunk) return 0;
                std::memcpy(chunk.data(), pointer, sizeof chunk);
                TakeParameters(chunk);
                return 1;
            default:
                return CTestPlugin::Dispatch(opcode, index, value, pointer, option);
        }
    }

    void Process(float**, float** out, std::int32_t frames) override {
        for (int channel = 0; channel < 2; ++channel) std::fill_n(out[channel], frames, 0.0F);
    }
};

}  // namespace

QUIB_TEST_PLUGIN_ENTRY(CPatchSynth, VSTPluginMain)
