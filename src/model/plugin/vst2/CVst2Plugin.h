// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One loaded VST 2 plug-in: the only part of the host that knows that interface. Threads as in CPlugin.
// Never keeps a value that the plug-in may change.

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "model/plugin/CPlugin.h"
#include "model/plugin/vst2/Vst2.h"
#include "platform/CDynamicLibrary.h"
#include "platform/CGuardedMemory.h"

namespace quib {

class CImageNumbers;
class CImageWriter;
struct ImageHeader;

class CVst2Plugin final : public CPlugin {
public:
    // Loads the library and calls its entry point; opens nothing yet.
    static std::shared_ptr<CPlugin> Load(const std::filesystem::path& path, PluginEnvironment& environment,
                                         std::string& error);
    explicit CVst2Plugin(PluginEnvironment& pluginEnvironment) : CPlugin(pluginEnvironment) {}
    ~CVst2Plugin() override;

    vst2::AEffect& Effect() noexcept { return *effect; }
    // One request to the plug-in. What it reports back meanwhile counts as ours, not the user's.
    std::intptr_t Dispatch(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                           void* pointer = nullptr, float option = 0.0F);
    // The text that a request writes, at most `kTextSize` characters.
    std::string Text(std::int32_t opcode, std::int32_t index = 0);
    static constexpr std::size_t kTextSize = 1024;

    std::string ParameterText(int index) override { return Text(vst2::effGetParamDisplay, index); }
    std::string ParameterUnit(int index) override { return Text(vst2::effGetParamLabel, index); }
    ParameterNature AskParameterNature(int index) override;
    bool SetParameterText(int index, const std::string& text) override;
    int ProgramCount() const noexcept override { return effect->numPrograms; }
    int CurrentProgram() override { return static_cast<int>(Dispatch(vst2::effGetProgram)); }
    std::string KeyName(int key) override;
    std::string ProgramName(int program) override { return Text(vst2::effGetProgramNameIndexed, program); }
    EBankResult LoadProgram(std::span<const std::byte> image) override;
    // See the function of that name in BankUnheard.h.
    StateImage SaveBankUnheard(const StateImage& last);
    StateImage SaveProgram() override;
    bool HasEditor() const noexcept override { return (effect->flags & vst2::effFlagsHasEditor) != 0; }
    void OpenEditor(std::uintptr_t parentWindow) override;
    void CloseEditor() override { Dispatch(vst2::effEditClose); }
    void IdleEditor() override { Dispatch(vst2::effEditIdle); }
    std::optional<EditorSize> AskEditorSize() override;
    void PinLibrary() noexcept override { library.Pin(); }
    void Idle() override { Dispatch(vst2::effIdle); }

    // The function that plug-ins call.
    static std::intptr_t VST2_CALL HostCallback(vst2::AEffect* effect, std::int32_t opcode, std::int32_t index,
                                                std::intptr_t value, void* pointer, float option) noexcept;

private:
    using Values = std::vector<float>;  // of all parameters

    bool IsInstrument() override;
    void Open(PluginIdentity& described) override;
    Ports AskPorts() override;
    void Start(PluginIdentity& described) override;
    std::vector<PluginParameter> DescribeParameters() override;
    void Restart() override;
    EBankResult TakeBank(std::span<const std::byte> image) override;
    StateImage MakeBank() override;
    void ChangeProgram(int program) override { Dispatch(vst2::effSetProgram, 0, program); }
    void* Export(const char* name) const noexcept override { return library.Symbol(name); }
    float ReadParameter(int index) noexcept override;
    void WriteParameter(std::int32_t index, float value) noexcept override;
    void TakeEvents(std::span<const BlockEvent> events) noexcept override;
    void Render(const float* const* from, float* const* to, int frames) noexcept override;

    bool LoadEffect(const std::filesystem::path& path, std::string& error);
    void SendFormat();
    std::intptr_t AnswerTime();
    // Banks and programs
    bool HasChunks() const noexcept { return (effect->flags & vst2::effFlagsProgramChunks) != 0; }
    Values CurrentValues();
    void RestoreValues(const Values& wanted);
    void SetChunk(std::int32_t scope, std::span<const std::byte> chunk);
    std::span<const std::byte> GetChunk(std::int32_t scope);
    EBankResult LoadChunk(std::int32_t scope, const CImageNumbers& numbers, std::size_t offset);
    void ApplyProgramRecord(const CImageNumbers& numbers, std::size_t offset, int count);
    EBankResult LoadPrograms(const CImageNumbers& numbers, std::int32_t programs);
    EBankResult CheckHeader(std::span<const std::byte> image, ImageHeader& header) const;
    void WriteProgramRecord(CImageWriter& writer, const Values& values);
    StateImage SavePrograms();

    CDynamicLibrary library;
    vst2::AEffect* effect = nullptr;
    std::intptr_t category = 0;
    bool opened = false;

    // Events of the block in the layout of the interface: header with pointers, then the events.
    // Pages of it cost memory only once a block has had that many events.
    CGuardedMemory eventMemory;

    vst2::VstTimeInfo blockTime{};    // render thread
    vst2::VstTimeInfo editingTime{};  // editing thread
};

}  // namespace quib
