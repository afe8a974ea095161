// SPDX-License-Identifier: GPL-3.0-or-later
// A synthesiser that misbehaves as its first parameter asks: 0.1 output is no number, 0.2 output is far
// too loud, 0.3 leaves another rounding mode behind. Turns flush-to-zero on while it loads, and reports
// every parameter as moved from inside effSetProgram.
#include <immintrin.h>

#include <limits>

#include "TestPlugin.h"

namespace {

class CTrouble final : public CTestPlugin {
public:
    explicit CTrouble(vst2::HostCallback hostCallback) : CTestPlugin(hostCallback) {
        _mm_setcsr(_mm_getcsr() | 0x8040);
        BecomeSynth();
        SetParameterCount(8);
        name = "Trouble";
        effect.uniqueId = vst2::FourCharacters('t', 's', 'T', 'r');
    }

private:
    int Trick() const { return static_cast<int>(parameters[0] * 10.0F + 0.5F); }

    void Process(float**, float** out, std::int32_t frames) override {
        for (int channel = 0; channel < 2; ++channel) {
            for (int i = 0; i < frames; ++i) out[channel][i] = 0.25F;
        }
        if (Trick() == 1) out[1][frames / 2] = std::numeric_limits<float>::quiet_NaN();
        if (Trick() == 2) out[0][frames - 1] = -16.0F;
        if (Trick() == 3) _mm_setcsr(_mm_getcsr() | 0x6000);
    }

    std::intptr_t Dispatch(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer,
                           float option) override {
        if (opcode == vst2::effSetProgram || opcode == vst2::effEditIdle) {
            for (int parameter = 0; parameter < effect.numParams; ++parameter) {
                host(&effect, vst2::audioMasterAutomate, parameter, 0, nullptr, 0.5F);
            }
        }
        return CTestPlugin::Dispatch(opcode, index, value, pointer, option);
    }
};

}  // namespace

QUIB_TEST_PLUGIN_ENTRY(CTrouble, VSTPluginMain)
