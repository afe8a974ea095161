// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One loaded VST 2 plug-in with its buffers and parameter lanes. Loaded, asked and closed on the
// editing thread; while published, one render thread at a time feeds and processes it. Rendering never
// allocates. Foreign code runs inside: its floating-point mode is contained, its numbers are checked.

#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "model/CEventLanes.h"
#include "model/MidiEvents.h"
#include "model/plugin/CPluginBuffers.h"
#include "model/plugin/PluginEnvironment.h"
#include "model/plugin/Vst2.h"
#include "model/sharing/CPublished.h"
#include "platform/CDynamicLibrary.h"
#include "platform/CGuardedMemory.h"

namespace quib {

enum class SlotKind { Instrument, Effect };

// What a plug-in said when it was loaded.
struct PluginIdentity {
    std::string fileName;     // of the library, without its folder
    std::string displayName;  // effect name, or what replaces it for a built-in plug-in
    std::string effectName;
    std::string vendor;
    std::string product;
    std::intptr_t vendorVersion = 0;
    std::intptr_t category = 0;
    int programCount = 0;  // when it was loaded; banks may select fewer
    bool acceptsMidi = false;
    bool isDrumMachine = false;
    bool isLoopPlayer = false;
};

class CPlugin {
public:
    // Loads a library into a new object. Null when that is not possible; `error` then says why, and
    // a wrong category is also told to the user. `SlotKind::Instrument` takes synthesisers only, the
    // other kind everything else.
    static std::shared_ptr<CPlugin> Load(const std::filesystem::path& path, SlotKind kind,
                                         PluginEnvironment& environment, std::string& error);
    // Loads whatever it is; for scanners.
    static std::shared_ptr<CPlugin> LoadAny(const std::filesystem::path& path, PluginEnvironment& environment,
                                            std::string& error);
    ~CPlugin();
    CPlugin(const CPlugin&) = delete;
    CPlugin& operator=(const CPlugin&) = delete;

    // --- Editing thread -------------------------------------------------------------------------

    const PluginIdentity& Identity() const noexcept { return identity; }
    const std::vector<LaneDescription>& Parameters() const noexcept { return parameters; }
    bool HasChunks() const noexcept { return (effect->flags & vst2::effFlagsProgramChunks) != 0; }
    bool HasEditor() const noexcept { return (effect->flags & vst2::effFlagsHasEditor) != 0; }
    vst2::AEffect& Effect() noexcept { return *effect; }
    const vst2::AEffect& Effect() const noexcept { return *effect; }
    PluginEnvironment& Environment() noexcept { return environment; }

    // One request to the plug-in. What it reports back meanwhile counts as ours, not the user's.
    std::intptr_t Dispatch(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                           void* pointer = nullptr, float option = 0.0F);
    // The text that a request writes, at most `kTextSize` characters.
    std::string Text(std::int32_t opcode, std::int32_t index = 0);

    // Keeps the library in memory for good. To be called before its editor is opened: what the toolkits of
    // editors register in the process runs on after them.
    void PinLibrary() noexcept { library.Pin(); }

    // Whether it has the rate and block size of the environment.
    bool IsPrepared() const noexcept {
        return preparedRate == environment.sampleRate && preparedBlock == environment.blockSize;
    }
    // Switches off, sets rate and block size of the environment, switches on. Waits for a render call
    // that is under way.
    void Prepare();

    // Loop player: number of loops, and its further entry points (null in other plug-ins).
    struct LoopEntryPoints {
        void* waveBegin = nullptr;
        void* waveInfos = nullptr;
        void* waveCounter = nullptr;
        std::intptr_t waveNumber = 0;
    };
    const LoopEntryPoints& Loops() const noexcept { return loops; }

    bool NeedsIdle() const noexcept { return needsIdle.load(std::memory_order_relaxed); }
    // Sets a parameter (0..1) if the plug-in has it; rendering goes on meanwhile.
    void SetParameter(int index, float value) noexcept;
    // Values that only plug-ins of this program's own understand; others are not told.
    static constexpr std::int32_t kPatternMaskCode = 0x500008;  // marks of the patterns, pattern 0 in bit 15
    void SendInternalCode(std::int32_t code, float value) noexcept;
    // True once after the plug-in's output had to be muted; for a message to the user.
    bool TakeFaultReport() noexcept;

    CPublished<CEventLanes> lanes;  // automation of the plug-in's parameters

    // Keeps the render thread out while the editing thread changes the plug-in's whole state. The
    // render thread is silent for the blocks that fall into it and neither plays notes nor sets
    // parameters; the editing thread waits at most for the render call under way.
    class CExclusive {
    public:
        explicit CExclusive(CPlugin& owner) noexcept;
        ~CExclusive();
        CExclusive(const CExclusive&) = delete;
        CExclusive& operator=(const CExclusive&) = delete;

    private:
        CPlugin& plugin;
    };

    // Asks the render thread to fade the output out and keep it silent, or to let it be heard again, so
    // that a change of state does not click. IsFadedOut stays false while nothing renders the plug-in.
    void FadeOut() noexcept { fade.store(Fade::Out); }
    void FadeIn() noexcept { fade.store(Fade::In); }
    bool IsFadedOut() const noexcept { return fade.load() == Fade::Silent; }

    // --- Render thread --------------------------------------------------------------------------

    bool CanReplace() const noexcept { return (effect->flags & vst2::effFlagsCanReplacing) != 0; }
    int InputCount() const noexcept { return inputCount; }
    int OutputCount() const noexcept { return outputCount; }
    // Largest block that the buffers hold.
    static constexpr int kMaximumFrames = CPluginBuffers::kFrames;

    // Time that the plug-in is told when it asks during this block.
    void SetBlockTime(const vst2::VstTimeInfo& time) noexcept { blockTime = time; }
    // Hands over the events of the block, earliest first; those beyond kMaximumBlockEvents are left out.
    // False, and nothing is handed over, while the editing thread changes the plug-in's whole state.
    bool SendEvents(std::span<const BlockEvent> events) noexcept;
    // Sets a parameter (0..1) if the plug-in has it. False, and nothing is set, while the editing thread
    // changes the plug-in's whole state.
    bool PlayParameter(int index, float value) noexcept;
    // The same from automation: only when the lane's value is not the one it gave last.
    void AutomateParameter(int index, float value) noexcept;
    void ForgetAutomation() noexcept;

    // Inputs that callers fill; at least two, zero after loading.
    float* Input(int channel) noexcept { return inputs.Channel(channel); }
    // Renders `frames` samples from the own inputs, or from a stereo signal of another owner, which
    // is left as it is. An output that is no number or above +24 dBFS makes the block silent.
    void Process(int frames) noexcept;
    void Process(const float* left, const float* right, int frames) noexcept;
    // The stereo result of the last call: a mono plug-in's single output stands on both sides, one
    // without outputs gives silence.
    const float* Left() const noexcept { return outputs.Channel(0); }
    const float* Right() const noexcept { return outputs.Channel(outputCount == 1 ? 0 : 1); }
    const float* Output(int channel) const noexcept { return outputs.Channel(channel); }

    // Latency in samples as the plug-in told it after the last block. Any thread.
    int Latency() const noexcept { return latency.load(std::memory_order_relaxed); }

    // The function that plug-ins call.
    static std::intptr_t VST2_CALL HostCallback(vst2::AEffect* effect, std::int32_t opcode, std::int32_t index,
                                                std::intptr_t value, void* pointer, float option) noexcept;

    static constexpr std::size_t kTextSize = 1024;
    // Plug-ins with more are refused.
    static constexpr int kMaximumParameters = 1 << 16;

private:
    class CRenderCall;

    explicit CPlugin(PluginEnvironment& pluginEnvironment);

    bool LoadLibrary(const std::filesystem::path& path, std::string& error);
    bool CheckCategory(SlotKind kind, std::string& error);
    void Open();
    void SendFormat();
    void RecogniseBuiltIn();
    void BuildParameters();
    void CallProcess(float** in, int frames) noexcept;
    void ApplyFade(int frames) noexcept;
    bool OutputsAreSane(int frames) const noexcept;
    void OnParameterReport(std::int32_t opcode, std::int32_t index, float value);
    bool OnSizeRequest(std::int32_t width, std::intptr_t height);
    std::intptr_t OnTimeRequest();

    PluginEnvironment& environment;
    CDynamicLibrary library;
    vst2::AEffect* effect = nullptr;
    PluginIdentity identity;
    LoopEntryPoints loops;
    std::vector<LaneDescription> parameters;
    double preparedRate = 0;
    int preparedBlock = 0;
    int inputCount = 0;
    int outputCount = 0;
    bool opened = false;

    CPluginBuffers inputs;
    CPluginBuffers outputs;
    std::vector<float*> foreignInputs;  // input pointers when the signal belongs to somebody else
    std::vector<float> lastAutomation;  // render thread; NaN: none

    // Events of the block in the layout of the interface: header with pointers, then the events.
    // Pages of it cost memory only once a block has had that many events.
    CGuardedMemory eventMemory;

    vst2::VstTimeInfo blockTime{};    // render thread
    vst2::VstTimeInfo editingTime{};  // editing thread
    std::thread::id editingThread = std::this_thread::get_id();

    enum class Fade { None, Out, Silent, In };
    std::atomic<Fade> fade{Fade::None};
    std::atomic<bool> busy{false};  // a call of a render thread or an exclusive change is under way
    std::atomic<bool> needsIdle{false};
    std::atomic<bool> faulty{false};
    std::atomic<bool> faultTold{false};
    std::atomic<int> latency{0};
};

// Marks the calling thread as one that renders, for its life. Plug-ins that call back from such a
// thread get answers that neither wait nor reach the application.
class CRenderThreadScope {
public:
    CRenderThreadScope() noexcept;
    ~CRenderThreadScope();
    CRenderThreadScope(const CRenderThreadScope&) = delete;
    CRenderThreadScope& operator=(const CRenderThreadScope&) = delete;

private:
    bool before;
};

}  // namespace quib
