// SPDX-License-Identifier: GPL-3.0-or-later
// An instrument whose chunk is the sound that is heard now, without the number of its program. Like some
// real ones it brings back the factory's values when a program is selected, whichever it is. Silent.
#include <algorithm>
#include <array>

#include "TestPlugin.h"

class CPatchSynth final : public CTestPlugin {
public:
    explicit CPatchSynth(vst2::HostCallback hostCallback)
        : CTestPlugin(hostCallback, EKind::kSynth, "Patch synth", "tsPa", kParameters, 4) {
        effect.flags |= vst2::effFlagsProgramChunks;
    }

private:
    static constexpr int kParameters = 4;

    std::array<float, kParameters> chunk{};

    std::intptr_t Dispatch(const Call& call) override {
        switch (call.opcode) {
            case vst2::effSetProgram:
                program = call.value;
                for (auto& parameter : parameters) parameter = 0.1F * static_cast<float>(program);
                return 0;
            case vst2::effGetChunk:
                std::copy(parameters.begin(), parameters.end(), chunk.begin());
                *static_cast<void**>(call.pointer) = chunk.data();
                return sizeof chunk;
            case vst2::effSetChunk:
                if (call.value != sizeof chunk) return 0;
                std::memcpy(chunk.data(), call.pointer, sizeof chunk);
                TakeParameters(chunk);
                return 1;
            default:
                return CTestPlugin::Dispatch(call);
        }
    }

    void Process(const float* const*, float* const* out, std::int32_t frames) override { Fill(out, frames, 0.0F); }
};

QUIB_TEST_PLUGIN_ENTRY(CPatchSynth, VSTPluginMain)
