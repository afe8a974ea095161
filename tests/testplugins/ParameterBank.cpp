// SPDX-License-Identifier: GPL-3.0-or-later
// An effect that knows no chunks. Like some real ones it forgets the edits of a program when another
// one is selected; only what follows the naming of a program, as in a bank that is loaded, stays.
// Output is input times the sum of its parameters.
#include <array>

#include "TestPlugin.h"

class CParameterBank final : public CTestPlugin {
public:
    explicit CParameterBank(vst2::HostCallback hostCallback)
        : CTestPlugin(hostCallback, EKind::kEffect, "Parameter bank", "tsPB", kParameters, kPrograms) {
        effect.version = 7;
        for (std::size_t index = 0; index < kPrograms; ++index)
            programs[index].name = "Program " + std::to_string(index);
    }

private:
    static constexpr int kParameters = 6;
    static constexpr int kPrograms = 4;
    struct Program {
        std::string name;
        std::array<float, kParameters> values{};
        bool named = false;
    };
    Program& Current() { return programs[static_cast<std::size_t>(program)]; }

    void SetParameter(std::int32_t index, float value) override {
        CTestPlugin::SetParameter(index, value);
        if (Current().named) Current().values[static_cast<std::size_t>(index)] = value;
    }

    std::intptr_t Dispatch(const Call& call) override {
        switch (call.opcode) {
            case vst2::effSetProgram:
                Current().named = false;
                program = call.value;
                TakeParameters(Current().values);
                return 0;
            case vst2::effSetProgramName:
                Current().name = static_cast<const char*>(call.pointer);
                Current().named = true;
                return 1;
            case vst2::effGetProgramName:
                return Copy(Current().name, call.pointer);
            default:
                return CTestPlugin::Dispatch(call);
        }
    }

    void Process(const float* const* in, float* const* out, std::int32_t frames) override {
        const float sum = Sum();
        for (int channel = 0; channel < 2; ++channel) {
            for (int i = 0; i < frames; ++i) out[channel][i] = in[channel][i] * sum;
        }
    }

    std::array<Program, kPrograms> programs;
};

QUIB_TEST_PLUGIN_ENTRY(CParameterBank, VSTPluginMain)
