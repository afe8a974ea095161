// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/CPlugin.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

#include "model/plugin/PluginCalls.h"
#include "model/plugin/PluginFormats.h"
#include "platform/FloatingPointMode.h"

namespace quib {

namespace {

// Its outputs behind the main pair are made for the sends.
constexpr const char* kDrumMachine = "vst2:31366378";
// Longest fade around a change of state, in samples.
constexpr int kFadeFrames = 256;
// Largest sample that counts as sound: +24 dBFS.
constexpr float kLoudest = 15.848932F;
// Outputs that the strip can use: a main pair and one pair for each send.
constexpr int kCheckedOutputs = 10;

}  // namespace

std::shared_ptr<CPlugin> CPlugin::Load(const std::filesystem::path& path, ESlotKind kind,
                                       PluginEnvironment& environment, std::string& error) {
    auto plugin = LoadLibrary(path, environment, error);
    if (!plugin || !plugin->CheckCategory(kind, error)) return nullptr;
    return plugin->Finish(error) ? plugin : nullptr;
}

std::shared_ptr<CPlugin> CPlugin::LoadAny(const std::filesystem::path& path, PluginEnvironment& environment,
                                          std::string& error) {
    auto plugin = LoadLibrary(path, environment, error);
    if (!plugin) return nullptr;
    plugin->identity.isInstrument = plugin->IsInstrument();
    return plugin->Finish(error) ? plugin : nullptr;
}

std::shared_ptr<CPlugin> CPlugin::LoadLibrary(const std::filesystem::path& path, PluginEnvironment& environment,
                                              std::string& error) {
    const CFloatingPointScope keepMode;
    if (!environment.applicationFolder.empty()) {
        std::error_code ignored;
        std::filesystem::current_path(environment.applicationFolder, ignored);
    }
    const int marked = MarkedLibrary(path);
    const CPluginCallScope inside(nullptr, marked, EPluginCall::kLoad);
    error = "no plug-in format has files of this name";
    for (const PluginFormat& format : PluginFormats()) {
        if (!HasExtension(path.filename().string(), format.extension)) continue;
        const auto plugin = format.load(path, environment, error);
        if (!plugin) continue;
        plugin->marked = marked;
        plugin->identity.format = format.name;
        plugin->identity.fileName = path.filename().string();
        return plugin;
    }
    return nullptr;
}

bool CPlugin::CheckCategory(ESlotKind kind, std::string& error) {
    identity.isInstrument = IsInstrument();
    if (identity.isInstrument == (kind == ESlotKind::kInstrument)) return true;
    error =
        identity.isInstrument ? "This plugin is not a compatible category !" : "This plugin is not a synth category !";
    environment.Message(error, "QUIB");
    return false;
}

// One that throws already here is not let in.
bool CPlugin::Finish(std::string& error) {
    const CPluginCallScope inside(this, marked, EPluginCall::kLoad);
    RememberFormat();
    Open(identity);
    identity.displayName = identity.effectName;
    NameMarkedLibrary(marked, identity.displayName);
    RecogniseBuiltIn();
    const Ports ports = AskPorts();
    canReplace = ports.canReplace;
    inputCount = ports.inputs;
    outputCount = ports.outputs;
    inputs = CPluginBuffers(std::max(2, inputCount));
    outputs = CPluginBuffers(std::max(2, outputCount));
    foreignInputs.assign(inputs.Pointers(), inputs.Pointers() + inputs.Channels());
    pieceInputs.resize(foreignInputs.size());
    pieceOutputs.resize(static_cast<std::size_t>(outputs.Channels()));
    Start(identity);
    parameters = DescribeParameters();
    heldParameters = std::make_unique<CSharedSetting<bool>[]>(parameters.size());
    lastAutomation.assign(parameters.size(), std::numeric_limits<float>::quiet_NaN());
    if (const EPluginCall call = TakeThrown(); call != EPluginCall::kNone) {
        error = std::string("the plug-in threw an exception while ") + Describe(call);
        return false;
    }
    return true;
}

void CPlugin::RecogniseBuiltIn() {
    struct Known {
        const char* effectName;
        const char* displayName;
    };
    // The compressor shows under the name of what it is used for.
    static constexpr std::array<Known, 5> effects = {{{"QUIB chorus", "Chorus"},
                                                      {"QUIB reverb", "Reverb"},
                                                      {"QUIB delay", "Delay"},
                                                      {"QUIB compressor", "Limiter"},
                                                      {"QUIB flanger", "Flanger"}}};
    for (const Known& known : effects) {
        if (identity.effectName == known.effectName) identity.displayName = known.displayName;
    }
    identity.isDrumMachine = identity.effectName == "QUIB drums";
    identity.isLoopPlayer = identity.effectName == "QUIB Loops";
    feedsSends = identity.Key() == kDrumMachine;
    if (!identity.isLoopPlayer) return;
    loops.waveBegin = Export("GetWaveBegin");
    loops.waveInfos = Export("GetWaveInfos");
    loops.waveCounter = Export("GetWaveCompter");
    CountLoops();
}

void CPlugin::CountLoops() {
    if (!identity.isLoopPlayer) return;
    if (void* const count = Export("GetWaveNumber")) {
        loops.waveNumber = reinterpret_cast<std::intptr_t (*)()>(count)();
    }
}

void CPlugin::RememberFormat() noexcept {
    preparedRate = environment.sampleRate;
    preparedBlock = environment.blockSize;
}

void CPlugin::Prepare() {
    const CExclusive exclusive(*this);
    RememberFormat();
    Restart();
}

bool CPlugin::SelectProgram(int program) {
    if (program < 0 || program >= ProgramCount()) return false;
    if (CurrentProgram() == program) return true;
    const CExclusive exclusive(*this);
    CountEdit();
    ChangeProgram(program);
    return true;
}

bool CPlugin::TakeFaultReport() noexcept {
    return faulty.load(std::memory_order_relaxed) && !faultTold.exchange(true, std::memory_order_relaxed);
}

EPluginCall CPlugin::TakeThrown() noexcept {
    const EPluginCall call = thrown.load(std::memory_order_relaxed);
    if (call == EPluginCall::kNone || thrownTold.exchange(true, std::memory_order_relaxed)) return EPluginCall::kNone;
    return call;
}

// The first one is told; what comes after it may be its doing.
void CPlugin::ReportThrown(EPluginCall call) noexcept {
    auto none = EPluginCall::kNone;
    thrown.compare_exchange_strong(none, call, std::memory_order_relaxed);
}

EBankResult CPlugin::LoadBank(std::span<const std::byte> image) {
    CountEdit();
    const EBankResult result = TakeBank(image);
    if (result != EBankResult::kDone) return result;
    KeepState({std::make_shared<const StateImage>(image.begin(), image.end()), CurrentProgram()});
    return result;
}

StateImage CPlugin::SaveBank() {
    StateImage image = MakeBank();
    KeepState({std::make_shared<const StateImage>(image), CurrentProgram()});
    return image;
}

CPlugin::StoredState CPlugin::LastState() const {
    const std::lock_guard lock(storedMutex);
    return stored;
}

void CPlugin::KeepState(StoredState state) {
    const std::lock_guard lock(storedMutex);
    std::swap(stored, state);
    keptEdits.store(Edits(), std::memory_order_relaxed);
}

CPlugin::CExclusive::CExclusive(CPlugin& owner) noexcept : plugin(owner) {
    while (plugin.busy.exchange(true, std::memory_order_acquire)) std::this_thread::yield();
}

CPlugin::CExclusive::~CExclusive() { plugin.busy.store(false, std::memory_order_release); }

// A render thread's call into the plug-in, unless the editing thread keeps it out.
class CPlugin::CRenderCall {
public:
    CRenderCall(CPlugin& owner, EPluginCall call) noexcept
        : plugin(owner),
          entered(!owner.busy.exchange(true, std::memory_order_acquire)),
          inside(&owner, owner.marked, call) {}
    ~CRenderCall() {
        if (entered) plugin.busy.store(false, std::memory_order_release);
    }
    CRenderCall(const CRenderCall&) = delete;
    CRenderCall& operator=(const CRenderCall&) = delete;

    bool Entered() const noexcept { return entered; }

private:
    CPlugin& plugin;
    bool entered;
    CPluginCallScope inside;
};

bool CPlugin::SendEvents(std::span<const BlockEvent> events) noexcept {
    if (events.empty()) return true;
    const CRenderCall call(*this, EPluginCall::kEvents);
    if (!call.Entered()) return false;
    const auto taken = events.first(std::min(events.size(), kMaximumBlockEvents));
    TakeEvents(taken);
    for (const BlockEvent& event : taken) {
        keysDown.Follow(event);
        if ((event.status & 0xf0) == kProgramChange) CountEdit();
    }
    return true;
}

float CPlugin::Parameter(int index) noexcept {
    return index >= 0 && index < static_cast<int>(parameters.size()) ? ReadParameter(index) : 0.0F;
}

void CPlugin::SetParameter(int index, float value) noexcept {
    if (index < 0 || index >= static_cast<int>(parameters.size()) || std::isnan(value)) return;
    const CPluginCallScope inside(this, marked, EPluginCall::kParameter);
    CountEdit();
    WriteParameter(index, std::clamp(value, 0.0F, 1.0F));
}

void CPlugin::SendInternalCode(std::int32_t code, float value) noexcept {
    if (!identity.effectName.starts_with("QUIB ")) return;
    const CPluginCallScope inside(this, marked, EPluginCall::kParameter);
    WriteParameter(code, value);
}

bool CPlugin::PlayUncounted(int index, float value) noexcept {
    const CRenderCall call(*this, EPluginCall::kParameter);
    const bool has = index >= 0 && index < static_cast<int>(parameters.size()) && !std::isnan(value);
    if (call.Entered() && has) WriteParameter(index, std::clamp(value, 0.0F, 1.0F));
    return call.Entered();
}

bool CPlugin::PlayParameter(int index, float value) noexcept {
    CountEdit();
    return PlayUncounted(index, value);
}

std::optional<float> CPlugin::PlayedParameter(int index) noexcept {
    if (index < 0 || index >= static_cast<int>(parameters.size())) return std::nullopt;
    const CRenderCall call(*this, EPluginCall::kParameter);
    return call.Entered() ? std::optional(ReadParameter(index)) : std::nullopt;
}

void CPlugin::Hold(int index, bool on) noexcept {
    if (index >= 0 && index < static_cast<int>(parameters.size()))
        heldParameters[static_cast<std::size_t>(index)].Set(on);
}

void CPlugin::AutomateParameter(int index, float value) noexcept {
    if (!WouldAutomate(index, value)) return;
    float& last = lastAutomation[static_cast<std::size_t>(index)];
    if (IsHeld(index)) {
        last = std::numeric_limits<float>::quiet_NaN();  // comes back when it is let go
    } else if (PlayUncounted(index, value)) {
        last = value;
    }
}

void CPlugin::ForgetAutomation() noexcept {
    std::fill(lastAutomation.begin(), lastAutomation.end(), std::numeric_limits<float>::quiet_NaN());
}

void CPlugin::Process(int frames, int first) noexcept {
    if (inputCount == 1) return Process(inputs.Channel(0), inputs.Channel(1), frames, first);
    CallRender(inputs.Pointers(), frames, first);
}

void CPlugin::Process(const float* left, const float* right, int frames, int first) noexcept {
    if (inputCount == 1) {
        float* const mono = inputs.Channel(0);
        for (int i = first; i < first + frames; ++i) mono[i] = 0.5F * (left[i] + right[i]);
        return CallRender(inputs.Pointers(), frames, first);
    }
    foreignInputs[0] = left;
    foreignInputs[1] = right;
    CallRender(foreignInputs.data(), frames, first);
}

void CPlugin::CallRender(const float* const* from, int frames, int first) noexcept {
    const CRenderCall call(*this, EPluginCall::kRender);
    if (!call.Entered()) return outputs.Clear(frames, first);
    float* const* to = outputs.Pointers();
    if (first > 0) {
        const auto further = [first](auto* samples) { return samples + first; };
        std::transform(from, from + pieceInputs.size(), pieceInputs.begin(), further);
        std::transform(to, to + pieceOutputs.size(), pieceOutputs.begin(), further);
        from = pieceInputs.data();
        to = pieceOutputs.data();
    }
    const unsigned mode = ReadFloatingPointMode();
    Render(from, to, frames);
    if (ReadFloatingPointMode() != mode) WriteFloatingPointMode(mode);
    if (!OutputsAreSane(frames, first)) {
        outputs.Clear(frames, first);
        faulty.store(true, std::memory_order_relaxed);
    }
    if (fade.load(std::memory_order_relaxed) != EFade::kNone) ApplyFade(frames, first);
}

// The editing thread may ask for the other direction at any time: then its wish stands, not the end of
// the fade that was made here.
void CPlugin::ApplyFade(int frames, int first) noexcept {
    EFade wanted = fade.load();
    if (wanted == EFade::kSilent) return outputs.Clear(frames, first);
    const int length = std::min(frames, kFadeFrames);
    const float step = 1.0F / static_cast<float>(length);
    for (int channel = 0; channel < outputs.Channels(); ++channel) {
        float* const samples = outputs.Channel(channel) + first;
        for (int i = 0; i < length; ++i) {
            const float rising = static_cast<float>(i + 1) * step;
            samples[i] *= wanted == EFade::kIn ? rising : 1.0F - rising;
        }
        if (wanted == EFade::kOut) std::fill(samples + length, samples + frames, 0.0F);
    }
    fade.compare_exchange_strong(wanted, wanted == EFade::kIn ? EFade::kNone : EFade::kSilent);
}

bool CPlugin::OutputsAreSane(int frames, int first) const noexcept {
    // As integers, the absolute values of floats keep their order, and what is no number lies above all.
    constexpr auto limit = std::bit_cast<std::int32_t>(kLoudest);
    const int channels = std::min(outputCount, kCheckedOutputs);
    for (int channel = 0; channel < channels; ++channel) {
        const float* const samples = outputs.Channel(channel) + first;
        std::int32_t beyond = 0;
        for (int i = 0; i < frames; ++i) {
            beyond |= static_cast<std::int32_t>((std::bit_cast<std::int32_t>(samples[i]) & 0x7fffffff) > limit);
        }
        if (beyond != 0) return false;
    }
    return true;
}

void CPlugin::ReportParameter(int index, float value) {
    // Reports from inside a call of ours (a whole bank may send a thousand) are not the user's doing.
    if (CPluginCallScope::IsInside(this) || editingThread != std::this_thread::get_id()) return;
    if (index < 0 || index >= static_cast<int>(parameters.size())) return;
    CountEdit();
    if (environment.parameterChanged) environment.parameterChanged(*this, index, value);
}

void CPlugin::ReportTouch(int index, bool touched) {
    if (CPluginCallScope::IsInside(this) || editingThread != std::this_thread::get_id()) return;
    if (index < 0 || index >= static_cast<int>(parameters.size())) return;
    if (environment.parameterTouched) environment.parameterTouched(*this, index, touched);
}

void CPlugin::RunApplicationIdle() {
    if (environment.idle && editingThread == std::this_thread::get_id()) environment.idle();
}

bool CPlugin::RequestEditorSize(std::intptr_t width, std::intptr_t height) {
    constexpr int kLargest = 1 << 14;  // pixels
    if (!environment.sizeWindow || editingThread != std::this_thread::get_id()) return false;
    if (width < 1 || width > kLargest || height < 1 || height > kLargest) return false;
    return environment.sizeWindow(*this, static_cast<int>(width), static_cast<int>(height));
}

const PlayTime* CPlugin::AskTime() {
    if (IsRenderThread()) return &blockTime;
    if (editingThread != std::this_thread::get_id()) return nullptr;
    if (environment.currentTime) environment.currentTime(editingTime);
    return &editingTime;
}

}  // namespace quib
