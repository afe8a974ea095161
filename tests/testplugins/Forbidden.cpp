// SPDX-License-Identifier: GPL-3.0-or-later
// A synthesiser that does in its process call what no render thread may: parameter 0 at 0.1 allocates, at
// 0.2 locks, at 0.3 enters the kernel.
#include <unistd.h>

#include <mutex>

#include "TestPlugin.h"

namespace {

class CForbidden final : public CTestPlugin {
public:
    explicit CForbidden(vst2::HostCallback hostCallback) : CTestPlugin(hostCallback) {
        BecomeSynth();
        SetParameterCount(1);
        name = "Forbidden";
        effect.uniqueId = vst2::FourCharacters('t', 's', 'F', 'b');
    }

private:
    void Process(float**, float** out, std::int32_t frames) override {
        const int deed = static_cast<int>(parameters[0] * 10.0F + 0.5F);
        if (deed == 1) {
            memory = new char[100];
            delete[] memory;
        }
        if (deed == 2) const std::lock_guard lock(mutex);
        if (deed == 3) process = getpid();
        for (int channel = 0; channel < 2; ++channel)
            std::memset(out[channel], 0, static_cast<std::size_t>(frames) * 4);
    }

    char* volatile memory = nullptr;
    volatile pid_t process = 0;
    std::mutex mutex;
};

}  // namespace

QUIB_TEST_PLUGIN_ENTRY(CForbidden, VSTPluginMain)
