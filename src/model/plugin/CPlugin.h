// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One loaded plug-in of any format, with its buffers and parameter lanes. Loaded, asked and closed on the
// editing thread; while published, one render thread at a time feeds and processes it. Rendering never
// allocates. Foreign code runs inside: its floating-point mode is contained, its numbers are checked.
//
// It is long because it is the one face of plug-ins; a format derives from it and answers the virtual
// functions, which are all that knows its interface.

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "model/CEventLanes.h"
#include "model/CValue.h"
#include "model/MidiEvents.h"
#include "model/Preset.h"
#include "model/plugin/BankResult.h"
#include "model/plugin/CKeysDown.h"
#include "model/plugin/CPluginBuffers.h"
#include "model/plugin/EPluginCall.h"
#include "model/plugin/PlayTime.h"
#include "model/plugin/PluginEnvironment.h"
#include "model/plugin/PluginIdentity.h"
#include "model/sharing/CPublished.h"

namespace quib {

class CPlugin {
public:
    // Loads a library into a new object. Null when that is not possible; `error` then says why, and
    // a wrong category is also told to the user. `ESlotKind::kInstrument` takes synthesisers only, the
    // other kind everything else.
    static std::shared_ptr<CPlugin> Load(const std::filesystem::path& path, ESlotKind kind,
                                         PluginEnvironment& environment, std::string& error);
    // Loads whatever it is; for scanners.
    static std::shared_ptr<CPlugin> LoadAny(const std::filesystem::path& path, PluginEnvironment& environment,
                                            std::string& error);
    virtual ~CPlugin() = default;
    CPlugin(const CPlugin&) = delete;
    CPlugin& operator=(const CPlugin&) = delete;

    // --- Editing thread -------------------------------------------------------------------------

    const PluginIdentity& Identity() const noexcept { return identity; }
    PluginEnvironment& Environment() noexcept { return environment; }

    const std::vector<PluginParameter>& Parameters() const noexcept { return parameters; }
    // Value (0..1) of a parameter; 0 for one that the plug-in does not have.
    float Parameter(int index) noexcept;
    // Sets a parameter (0..1) if the plug-in has it; rendering goes on meanwhile.
    void SetParameter(int index, float value) noexcept;
    // The value as the plug-in writes it, and the unit of that text.
    virtual std::string ParameterText(int index) = 0;
    virtual std::string ParameterUnit(int index) = 0;
    // Of a parameter that the plug-in has. Not asked while loading: only windows want to know.
    virtual ParameterNature AskParameterNature(int /*index*/) { return {}; }
    // Sets a parameter by a text in the plug-in's own way. False when it understands none.
    virtual bool SetParameterText(int index, const std::string& text) = 0;

    // Programs that can be selected now.
    virtual int ProgramCount() const noexcept = 0;
    virtual int CurrentProgram() = 0;
    virtual std::string ProgramName(int program) = 0;
    // What the plug-in calls a key, such as a drum; empty when it has no name for it.
    virtual std::string KeyName(int key) = 0;
    // Selects a program unless it is selected already. False when the plug-in has no such program.
    bool SelectProgram(int program);

    // Whole state, and current program, as images in the layout of the format's files. Every length is checked
    // before the plug-in sees a byte; nothing changes unless the result is Done. Programs are walked where that
    // is the only way; the current one is as before afterwards, edits included. An open editor wants IdleEditor
    // after a change.
    EBankResult LoadBank(std::span<const std::byte> image);
    virtual EBankResult LoadProgram(std::span<const std::byte> image) = 0;
    StateImage SaveBank();
    virtual StateImage SaveProgram() = 0;

    // The whole state as it was last loaded, saved or kept; any thread, and the plug-in is not called.
    struct StoredState {
        std::shared_ptr<const StateImage> image;  // null: none yet
        int program = 0;
    };
    StoredState LastState() const;
    void KeepState(StoredState state);

    // That is what it was left at, automation apart.
    bool IsLastStateLeft() const noexcept { return keptEdits.load(std::memory_order_relaxed) == Edits(); }
    // Another number after every change of its state that is not automation's. Any thread.
    std::uint64_t Edits() const noexcept { return edits.load(std::memory_order_relaxed); }
    void CountEdit() noexcept { edits.fetch_add(1, std::memory_order_relaxed); }

    // The plug-in's own window, inside a window of the display (its native number).
    struct EditorSize {
        int width = 0;  // pixels of the screen
        int height = 0;
    };
    virtual bool HasEditor() const noexcept = 0;
    virtual void OpenEditor(std::uintptr_t parentWindow) = 0;
    virtual void CloseEditor() = 0;
    virtual void IdleEditor() = 0;
    // Nothing when the plug-in does not tell.
    virtual std::optional<EditorSize> AskEditorSize() = 0;
    // Keeps the library in memory for good. To be called before its editor is opened: what the toolkits of
    // editors register in the process runs on after them.
    virtual void PinLibrary() noexcept = 0;

    // It has asked for idle calls; they may be made at any time.
    bool NeedsIdle() const noexcept { return needsIdle.load(std::memory_order_relaxed); }
    virtual void Idle() = 0;

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
    // Loop player: has its folders looked through again, for all of its instances. Editing thread.
    void CountLoops();

    // Values that only plug-ins of this program's own understand; others are not told.
    static constexpr std::int32_t kPatternMaskCode = 0x500008;  // marks of the patterns, pattern 0 in bit 15
    void SendInternalCode(std::int32_t code, float value) noexcept;
    // True once after the plug-in's output had to be muted; for a message to the user.
    bool TakeFaultReport() noexcept;
    // The call from which it has thrown an exception, once; `kNone` when there is nothing to tell.
    EPluginCall TakeThrown() noexcept;
    // Its library in the marks of what threads are inside of.
    int MarkedAs() const noexcept { return marked; }

    CPublished<CEventLanes> lanes;  // automation of the plug-in's parameters

    // The hand is on a parameter: its lane plays nothing. Any thread.
    void Hold(int index, bool on) noexcept;
    bool IsHeld(int index) const noexcept {
        return index >= 0 && index < static_cast<int>(parameters.size()) &&
               heldParameters[static_cast<std::size_t>(index)].IsOn();
    }

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
    void FadeOut() noexcept { fade.store(EFade::kOut); }
    void FadeIn() noexcept { fade.store(EFade::kIn); }
    bool IsFadedOut() const noexcept { return fade.load() == EFade::kSilent; }

    // --- Render thread --------------------------------------------------------------------------

    // False for one that cannot fill output buffers; it is not processed.
    bool CanReplace() const noexcept { return canReplace; }
    int InputCount() const noexcept { return inputCount; }
    int OutputCount() const noexcept { return outputCount; }
    // Behind the main pair stands one pair of outputs for each send, in place of the strip's own.
    bool FeedsSends() const noexcept { return feedsSends; }
    // Largest block that the buffers hold.
    static constexpr int kMaximumFrames = CPluginBuffers::kFrames;

    // Time that the plug-in is told when it asks during this block.
    void SetBlockTime(const PlayTime& time) noexcept { blockTime = time; }
    // Hands over the events of the block, earliest first; those beyond kMaximumBlockEvents are left out.
    // False, and nothing is handed over, while the editing thread changes the plug-in's whole state.
    bool SendEvents(std::span<const BlockEvent> events) noexcept;
    // What is down by the events so far.
    const CKeysDown& KeysDown() const noexcept { return keysDown; }
    // Sets a parameter (0..1) if the plug-in has it. False, and nothing is set, while the editing thread
    // changes the plug-in's whole state.
    bool PlayParameter(int index, float value) noexcept;
    // What a parameter is now; nothing for one that the plug-in does not have, and while its state changes.
    std::optional<float> PlayedParameter(int index) noexcept;
    // As PlayParameter, from automation: only when the lane's value is not the one it gave last.
    void AutomateParameter(int index, float value) noexcept;
    bool WouldAutomate(int index, float value) const noexcept {
        return index >= 0 && index < static_cast<int>(lastAutomation.size()) &&
               (lastAutomation[static_cast<std::size_t>(index)] != value || IsHeld(index));
    }
    void ForgetAutomation() noexcept;

    // Inputs that callers fill; at least two, zero after loading.
    float* Input(int channel) noexcept { return inputs.Channel(channel); }
    // Renders `frames` samples from the own inputs, or from a stereo signal of another owner, which
    // is left as it is. An output that is no number or above +24 dBFS makes them silent. Of a block in
    // pieces each begins at frame `first` of all buffers.
    void Process(int frames, int first = 0) noexcept;
    void Process(const float* left, const float* right, int frames, int first = 0) noexcept;
    // The stereo result of the block: a mono plug-in's single output stands on both sides, one
    // without outputs gives silence.
    const float* Left() const noexcept { return outputs.Channel(0); }
    const float* Right() const noexcept { return outputs.Channel(outputCount == 1 ? 0 : 1); }
    const float* Output(int channel) const noexcept { return outputs.Channel(channel); }

    // Latency in samples as the plug-in told it after the last block. Any thread.
    int Latency() const noexcept { return latency.load(std::memory_order_relaxed); }

    // Plug-ins with more are refused.
    static constexpr int kMaximumParameters = 1 << 16;

protected:
    explicit CPlugin(PluginEnvironment& pluginEnvironment) : environment(pluginEnvironment) {}

    struct Ports {
        int inputs = 0;
        int outputs = 0;
        bool canReplace = true;
    };

    // --- For formats: what the plug-in reports and asks, on whatever thread it does ---------------

    void ReportParameter(int index, float value);
    void ReportTouch(int index, bool held);
    void ReportIdleWanted() noexcept { needsIdle.store(true, std::memory_order_relaxed); }
    void RunApplicationIdle();
    // Gives whether the window gets that size (pixels).
    bool RequestEditorSize(std::intptr_t width, std::intptr_t height);
    // The block's time on a thread that renders, the song's on the editing thread. Null on threads of the
    // plug-in's own: nothing could keep it from changing meanwhile.
    const PlayTime* AskTime();
    void SetLatency(int samples) noexcept {
        if (samples != latency.load(std::memory_order_relaxed)) latency.store(samples, std::memory_order_relaxed);
    }
    // An exception has left this call.
    void ReportThrown(EPluginCall call) noexcept;

private:
    class CRenderCall;

    // --- What a format answers ---------------------------------------------------------------------

    // In this order, once: what it is good for; opening it with the environment's rate and block size, and who
    // it is (all of `described` but format, file and display name); its ports; switching it on.
    virtual bool IsInstrument() = 0;
    virtual void Open(PluginIdentity& described) = 0;
    virtual Ports AskPorts() = 0;
    virtual void Start(PluginIdentity& described) = 0;
    virtual std::vector<PluginParameter> DescribeParameters() = 0;
    // Off, with the environment's rate and block size, on. The render thread is kept out.
    virtual void Restart() = 0;
    virtual EBankResult TakeBank(std::span<const std::byte> image) = 0;
    virtual StateImage MakeBank() = 0;
    virtual void ChangeProgram(int program) = 0;  // likewise
    // An exported symbol of the plug-in's library, or null.
    virtual void* Export(const char* name) const noexcept = 0;
    // Any thread that may call the plug-in; `value` is 0..1 but for internal codes.
    virtual float ReadParameter(int index) noexcept = 0;
    virtual void WriteParameter(std::int32_t index, float value) noexcept = 0;
    // Render thread. At most kMaximumBlockEvents events; both sides have at least two channels.
    virtual void TakeEvents(std::span<const BlockEvent> events) noexcept = 0;
    virtual void Render(const float* const* from, float* const* to, int frames) noexcept = 0;

    static std::shared_ptr<CPlugin> LoadLibrary(const std::filesystem::path& path, PluginEnvironment& environment,
                                                std::string& error);
    bool CheckCategory(ESlotKind kind, std::string& error);
    bool Finish(std::string& error);
    void RecogniseBuiltIn();
    bool PlayUncounted(int index, float value) noexcept;
    void CallRender(const float* const* from, int frames, int first) noexcept;
    void ApplyFade(int frames, int first) noexcept;
    bool OutputsAreSane(int frames, int first) const noexcept;
    void RememberFormat() noexcept;

    PluginEnvironment& environment;
    PluginIdentity identity;
    int marked = 0;
    LoopEntryPoints loops;
    std::vector<PluginParameter> parameters;
    double preparedRate = 0;
    int preparedBlock = 0;
    int inputCount = 0;
    int outputCount = 0;
    bool canReplace = false;
    bool feedsSends = false;

    CPluginBuffers inputs;
    CPluginBuffers outputs;
    std::vector<const float*> foreignInputs;  // input pointers when the signal belongs to somebody else
    std::vector<const float*> pieceInputs;    // and pointers into the middle of a block
    std::vector<float*> pieceOutputs;
    std::vector<float> lastAutomation;                       // render thread; NaN: none
    std::unique_ptr<CSharedSetting<bool>[]> heldParameters;  // one a parameter
    CKeysDown keysDown;                                      // render thread

    PlayTime blockTime;    // render thread
    PlayTime editingTime;  // editing thread
    std::thread::id editingThread = std::this_thread::get_id();

    enum class EFade { kNone, kOut, kSilent, kIn };
    std::atomic<EFade> fade{EFade::kNone};
    std::atomic<bool> busy{false};  // a call of a render thread or an exclusive change is under way
    std::atomic<bool> needsIdle{false};
    std::atomic<bool> faulty{false};
    std::atomic<bool> faultTold{false};
    std::atomic<EPluginCall> thrown{EPluginCall::kNone};
    std::atomic<bool> thrownTold{false};
    mutable std::mutex storedMutex;
    StoredState stored;
    std::atomic<int> latency{0};
    std::atomic<std::uint64_t> edits{0};
    std::atomic<std::uint64_t> keptEdits{0};  // when its state was stored
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
