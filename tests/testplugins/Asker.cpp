// SPDX-License-Identifier: GPL-3.0-or-later
// Asks its host whatever a test wants: effVendorSpecific with a host opcode as its index passes the
// question on and returns the answer. Negative indices tell what it found out by itself: -1 the answer to
// audioMasterGetTime during the entry call, -2 that to audioMasterVersion, -3 the address of the time told
// in the last process call, -4 the number of events it was given. Reports a parameter as moved whenever it
// processes.
#include "TestPlugin.h"

class CAsker final : public CTestPlugin {
public:
    explicit CAsker(vst2::HostCallback hostCallback) : CTestPlugin(hostCallback, EKind::kSynth, "Asker", "tsAs", 2) {
        timeInEntry = Ask(vst2::audioMasterGetTime, nullptr);
        versionInEntry = host(nullptr, vst2::audioMasterVersion, 0, 0, nullptr, 0.0F);
    }

private:
    std::intptr_t Ask(std::int32_t opcode, void* pointer) { return host(&effect, opcode, 0, 0, pointer, 0.75F); }

    void Process(const float* const*, float* const* out, std::int32_t frames) override {
        Fill(out, frames, 0.0F);
        timeInProcess = Ask(vst2::audioMasterGetTime, nullptr);
        Ask(vst2::audioMasterAutomate, nullptr);
        eventCount = static_cast<std::intptr_t>(events.size());
    }

    std::intptr_t Dispatch(const Call& call) override {
        if (call.opcode == vst2::effEditIdle) {
            Ask(vst2::audioMasterBeginEdit, nullptr);
            return Ask(vst2::audioMasterAutomate, nullptr);
        }
        if (call.opcode != vst2::effVendorSpecific) return CTestPlugin::Dispatch(call);
        const std::intptr_t known[] = {timeInEntry, versionInEntry, timeInProcess, eventCount};
        return call.index < 0 ? known[-call.index - 1] : Ask(call.index, call.pointer);
    }

    std::intptr_t timeInEntry = 0;
    std::intptr_t versionInEntry = 0;
    std::intptr_t timeInProcess = 0;
    std::intptr_t eventCount = 0;
};

QUIB_TEST_PLUGIN_ENTRY(CAsker, VSTPluginMain)
