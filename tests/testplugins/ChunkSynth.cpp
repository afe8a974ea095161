// SPDX-License-Identifier: GPL-3.0-or-later
// An instrument that keeps its programs in an opaque chunk. While a note is held its output is the sum
// of the current program's parameters. The vendor-specific request tells how many chunks it was given.
#include <array>

#include "TestPlugin.h"

class CChunkSynth final : public CTestPlugin {
public:
    explicit CChunkSynth(vst2::HostCallback hostCallback)
        : CTestPlugin(hostCallback, EKind::kSynth, "Chunk synth", "tsCh", kParameters, kPrograms) {
        effect.flags |= vst2::effFlagsProgramChunks;
        for (Program& made : bank.programs) made[0] = 0.01F;
        TakeParameters(bank.programs[0]);
    }

private:
    static constexpr int kParameters = 8;
    static constexpr int kPrograms = 16;
    using Program = std::array<float, kParameters>;
    struct Bank {
        std::int32_t current = 0;
        std::array<Program, kPrograms> programs{};
    };

    void Store() { std::copy(parameters.begin(), parameters.end(), Current().begin()); }
    void Recall() { TakeParameters(Current()); }
    Program& Current() { return bank.programs[static_cast<std::size_t>(program)]; }

    std::intptr_t Dispatch(const Call& call) override {
        switch (call.opcode) {
            case vst2::effSetProgram:
                Store();
                program = call.value;
                Recall();
                return 0;
            case vst2::effGetChunk:
                Store();
                bank.current = static_cast<std::int32_t>(program);
                *static_cast<void**>(call.pointer) = call.index == 0 ? static_cast<void*>(&bank) : Current().data();
                return call.index == 0 ? sizeof bank : sizeof(Program);
            case vst2::effSetChunk:
                SetChunk(call.index, call.value, call.pointer);
                // Tells the host of every parameter, as real ones do.
                for (int i = 0; i < kParameters; ++i) host(&effect, vst2::audioMasterAutomate, i, 0, nullptr, 0.5F);
                return 1;
            case vst2::effGetProgramName:
                return Copy("Chunk " + std::to_string(program), call.pointer);
            case vst2::effVendorSpecific:
                return chunksGiven;
            default:
                return CTestPlugin::Dispatch(call);
        }
    }

    // Takes over what is whole; a chunk of another size means nothing to it.
    void SetChunk(std::int32_t index, std::intptr_t size, const void* data) {
        ++chunksGiven;
        if (index == 0 && size == sizeof bank) {
            std::memcpy(&bank, data, sizeof bank);
            program = bank.current >= 0 && bank.current < kPrograms ? bank.current : 0;
        } else if (index == 1 && size == sizeof(Program)) {
            std::memcpy(Current().data(), data, sizeof(Program));
        }
        Recall();
    }

    void Process(const float* const*, float* const* out, std::int32_t frames) override {
        for (const Event& event : events) held = event.status == 0x90 && event.data2 > 0;
        Fill(out, frames, held ? Sum() : 0.0F);
    }

    Bank bank;
    std::intptr_t chunksGiven = 0;
    bool held = false;
};

QUIB_TEST_PLUGIN_ENTRY(CChunkSynth, VSTPluginMain)
