// SPDX-License-Identifier: GPL-3.0-or-later
// A synthesiser that misbehaves as its first parameter asks: 0.1 output is no number, 0.2 output is far
// too loud, 0.3 leaves another rounding mode behind, 0.5 allocates, 0.6 locks, 0.7 enters the kernel. Turns
// flush-to-zero on while it loads, and reports every parameter as moved from inside effSetProgram.
#include <immintrin.h>
#include <unistd.h>

#include <limits>
#include <mutex>

#include "TestPlugin.h"

class CTrouble final : public CTestPlugin {
public:
    explicit CTrouble(vst2::HostCallback hostCallback)
        : CTestPlugin(hostCallback, EKind::kSynth, "Trouble", "tsTr", 8) {
        _mm_setcsr(_mm_getcsr() | 0x8040);
    }

private:
    void Process(const float* const*, float* const* out, std::int32_t frames) override {
        const int trick = static_cast<int>(parameters[0] * 10.0F + 0.5F);
        Fill(out, frames, 0.25F);
        if (trick == 1) out[1][frames / 2] = std::numeric_limits<float>::quiet_NaN();
        if (trick == 2) out[0][frames - 1] = -16.0F;
        if (trick == 3) _mm_setcsr(_mm_getcsr() | 0x6000);
        if (trick == 5) {
            memory = new char[100];
            delete[] memory;
        }
        if (trick == 6) const std::lock_guard lock(mutex);
        if (trick == 7) process = getpid();
    }

    std::intptr_t Dispatch(const Call& call) override {
        if (call.opcode == vst2::effSetProgram || call.opcode == vst2::effEditIdle) {
            for (int parameter = 0; parameter < effect.numParams; ++parameter) {
                host(&effect, vst2::audioMasterAutomate, parameter, 0, nullptr, 0.5F);
            }
        }
        return CTestPlugin::Dispatch(call);
    }

    char* volatile memory = nullptr;
    volatile pid_t process = 0;
    std::mutex mutex;
};

QUIB_TEST_PLUGIN_ENTRY(CTrouble, VSTPluginMain)
