// SPDX-License-Identifier: GPL-3.0-or-later
// A synthesiser that misbehaves as its first parameter asks: 0.1 output is no number, 0.2 output is far
// too loud, 0.3 leaves another rounding mode behind, 0.5 allocates, 0.6 locks, 0.7 enters the kernel. Turns
// flush-to-zero on while it loads, and reports every parameter as moved from inside effSetProgram.
//
// The environment's QUIB_TROUBLE="how:where:program" gives it a state in a chunk and an editor, and makes it do worse
// in programs of that name: abort, exit, throw or hang in load, open, setChunk, process, editor or close.
#include <immintrin.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

#include "TestPlugin.h"

class CTrouble final : public CTestPlugin {
public:
    explicit CTrouble(vst2::HostCallback hostCallback)
        : CTestPlugin(hostCallback, EKind::kSynth, "Trouble", "tsTr", 8) {
        _mm_setcsr(_mm_getcsr() | 0x8040);
        if (!worse.empty()) effect.flags |= vst2::effFlagsProgramChunks | vst2::effFlagsHasEditor;
        DoWorse("load");
    }

private:
    void DoWorse(const char* where) const {
        if (worse.empty()) return;
        if (worse.find(std::string(1, ':') + where + ':' + program_invocation_short_name) == std::string::npos) return;
        if (worse.starts_with("abort")) std::abort();
        if (worse.starts_with("exit")) std::exit(0);
        if (worse.starts_with("throw")) throw std::runtime_error("of a plug-in");
        for (;;) std::this_thread::sleep_for(std::chrono::hours(1));
    }
    void Close() override { DoWorse("close"); }

    void Process(const float* const*, float* const* out, std::int32_t frames) override {
        DoWorse("process");
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
        if (call.opcode == vst2::effOpen) DoWorse("open");
        if (call.opcode == vst2::effSetChunk) DoWorse("setChunk");
        if (call.opcode == vst2::effEditOpen) DoWorse("editor");
        if (call.opcode == vst2::effGetChunk) {
            *static_cast<const void**>(call.pointer) = state.data();
            return static_cast<std::intptr_t>(state.size());
        }
        if (call.opcode == vst2::effEditGetRect) {
            *static_cast<vst2::ERect**>(call.pointer) = &rectangle;
            return 1;
        }
        if (call.opcode == vst2::effSetProgram || call.opcode == vst2::effEditIdle) {
            for (int parameter = 0; parameter < effect.numParams; ++parameter) {
                host(&effect, vst2::audioMasterAutomate, parameter, 0, nullptr, 0.5F);
            }
        }
        return CTestPlugin::Dispatch(call);
    }

    const std::string worse = std::getenv("QUIB_TROUBLE") != nullptr ? std::getenv("QUIB_TROUBLE") : "";
    const std::string state = "a state of its own";
    vst2::ERect rectangle{0, 0, 200, 300};
    char* volatile memory = nullptr;
    volatile pid_t process = 0;
    std::mutex mutex;
};

QUIB_TEST_PLUGIN_ENTRY(CTrouble, VSTPluginMain)
