// SPDX-License-Identifier: GPL-3.0-or-later
// A mono effect with latency: its single output is its single input, and it tells its latency only
// after the first block.
#include "TestPlugin.h"

class CMono final : public CTestPlugin {
public:
    explicit CMono(vst2::HostCallback hostCallback)
        : CTestPlugin(hostCallback, EKind::kEffect, "QUIB compressor", "tsMo") {
        effect.numInputs = effect.numOutputs = 1;
    }

private:
    void Process(const float* const* in, float* const* out, std::int32_t frames) override {
        std::memcpy(out[0], in[0], static_cast<std::size_t>(frames) * sizeof(float));
        effect.initialDelay = 64;
    }
};

QUIB_TEST_PLUGIN_ENTRY(CMono, VSTPluginMain)
