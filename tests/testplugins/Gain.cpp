// SPDX-License-Identifier: GPL-3.0-or-later
// An effect that multiplies by twice its parameter and, like some real ones, can't work in place: with
// equal input and output buffers its output is a constant. Exports `main` alone.
#include "TestPlugin.h"

class CGain final : public CTestPlugin {
public:
    explicit CGain(vst2::HostCallback hostCallback) : CTestPlugin(hostCallback, EKind::kEffect, "Gain", "tsGn", 1) {
        parameters[0] = 0.5F;
    }

private:
    void Process(const float* const* in, float* const* out, std::int32_t frames) override {
        for (int channel = 0; channel < 2; ++channel) {
            const bool inPlace = in[channel] == out[channel];
            for (int i = 0; i < frames; ++i) out[channel][i] = inPlace ? 0.77F : in[channel][i] * 2.0F * parameters[0];
        }
    }
};

extern "C" __attribute__((visibility("default"))) vst2::AEffect* OldEntry(vst2::HostCallback host) __asm__("main");
vst2::AEffect* OldEntry(vst2::HostCallback host) { return &(new CGain(host))->effect; }
