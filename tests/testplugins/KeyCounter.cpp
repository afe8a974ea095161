// SPDX-License-Identifier: GPL-3.0-or-later
// An instrument that tells how many keys are down, the sustain pedal among them: the left output is their number / 256,
// the right one 0.25, which says that it runs, or 0.5 once a key has been struck.
#include <bitset>

#include "TestPlugin.h"

class CKeyCounter final : public CTestPlugin {
public:
    explicit CKeyCounter(vst2::HostCallback hostCallback)
        : CTestPlugin(hostCallback, EKind::kSynth, "Key counter", "tsKC") {}

private:
    void Process(const float* const*, float* const* out, std::int32_t frames) override {
        for (const Event& event : events) {
            const bool on = (event.status & 0xf0) == 0x90 && event.data2 > 0;
            struck = struck || on;
            if (on || (event.status & 0xf0) == 0x80 || (event.status & 0xf0) == 0x90)
                down.set(static_cast<std::size_t>(event.data1 & 127), on);
            if ((event.status & 0xf0) == 0xb0 && event.data1 == 64) down.set(128, event.data2 > 0);
        }
        for (std::int32_t i = 0; i < frames; ++i) {
            out[0][i] = static_cast<float>(down.count()) / 256.0F;
            out[1][i] = struck ? 0.5F : 0.25F;
        }
    }

    std::bitset<129> down;
    bool struck = false;
};

QUIB_TEST_PLUGIN_ENTRY(CKeyCounter, VSTPluginMain)
