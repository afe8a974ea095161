// SPDX-License-Identifier: GPL-3.0-or-later
// An instrument that keeps its programs in an opaque chunk. While a note is held its output is the sum
// of the current program's parameters. The vendor-specific request tells how many chunks it was given.
#include <array>

#include "TestPlugin.h"

namespace {

class CChunkSynth final : public CTestPlugin {
public:
    explicit CChunkSynth(vst2::HostCallback hostCallback) : CTestPlugin(hostCallback) {
        BecomeSynth();
        SetParameterCount(kParameters);
        effect.numPrograms = kPrograms;
        effect.flags |= vst2::effFlagsProgramChunks;
        effect.uniqueId = vst2::FourCharacters('t', 's', 'C', 'h');
        name = "Chunk synth";
        for (int index = 0; index < kPrograms; ++index) bank.programs[static_cast<std::size_t>(index)][0] = 0.01F;
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

    std::intptr_t Dispatch(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer,
                           float option) override {
        switch (opcode) {
            case vst2::effSetProgram:
                Store();
                program = value;
                Recall();
                return 0;
            case vst2::effGetChunk:
                Store();
                bank.current = static_cast<std::int32_t>(program);
                *static_cast<void**>(pointer) = index == 0 ? static_cast<void*>(&bank) : Current().data();
                return index == 0 ? sizeof bank : sizeof(Program);
            case vst2::effSetChunk:
                SetChunk(index, value, pointer);
                // Tells the host of every parameter, as real ones do.
                for (int i = 0; i < kParameters; ++i) host(&effect, vst2::audioMasterAutomate, i, 0, nullptr, 0.5F);
                return 1;
            case vst2::effGetProgramName:
                return Copy("Chunk " + std::to_string(program), pointer);
            case vst2::effVendorSpecific:
                return chunksGiven;
            default:
                return CTestPlugin::Dispatch(opcode, index, value, pointer, option);
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

    void Process(float**, float** out, std::int32_t frames) override {
        for (const Event& event : events) held = event.status == 0x90 && event.data2 > 0;
        float sum = 0;
        for (const float value : parameters) sum += value;
        for (int i = 0; i < frames; ++i) out[0][i] = out[1][i] = held ? sum : 0.0F;
    }

    Bank bank;
    std::intptr_t chunksGiven = 0;
    bool held = false;
};

}  // namespace

QUIB_TEST_PLUGIN_ENTRY(CChunkSynth, VSTPluginMain)
