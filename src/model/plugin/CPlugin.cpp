// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/CPlugin.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "model/plugin/PluginCalls.h"
#include "platform/FloatingPointMode.h"

namespace quib {

using namespace vst2;

namespace {

constexpr int kMaximumChannels = 512;
constexpr int kMaximumPrograms = 1 << 16;
// Longest fade around a change of state, in samples.
constexpr int kFadeFrames = 256;
// Largest sample that counts as sound: +24 dBFS.
constexpr float kLoudest = 15.848932F;
// Outputs that the strip can use: a main pair and one pair for each send.
constexpr int kCheckedOutputs = 10;

bool Sane(const AEffect& effect) {
    return effect.dispatcher != nullptr && effect.setParameter != nullptr && effect.getParameter != nullptr &&
           effect.numInputs >= 0 && effect.numInputs <= kMaximumChannels && effect.numOutputs >= 0 &&
           effect.numOutputs <= kMaximumChannels && effect.numParams >= 0 &&
           effect.numParams <= CPlugin::kMaximumParameters &&
           ((effect.flags & effFlagsCanReplacing) == 0 || effect.processReplacing != nullptr);
}

}  // namespace

CPlugin::CPlugin(PluginEnvironment& pluginEnvironment) : environment(pluginEnvironment) {}

CPlugin::~CPlugin() {
    if (effect == nullptr) return;
    if (opened) Dispatch(effMainsChanged, 0, 0);
    Dispatch(effClose);
}

std::shared_ptr<CPlugin> CPlugin::Load(const std::filesystem::path& path, SlotKind kind, PluginEnvironment& environment,
                                       std::string& error) {
    std::shared_ptr<CPlugin> plugin(new CPlugin(environment));
    if (!plugin->LoadLibrary(path, error) || !plugin->CheckCategory(kind, error)) return nullptr;
    plugin->Open();
    return plugin;
}

std::shared_ptr<CPlugin> CPlugin::LoadAny(const std::filesystem::path& path, PluginEnvironment& environment,
                                          std::string& error) {
    std::shared_ptr<CPlugin> plugin(new CPlugin(environment));
    if (!plugin->LoadLibrary(path, error)) return nullptr;
    plugin->identity.category = plugin->Dispatch(effGetPlugCategory);
    plugin->Open();
    return plugin;
}

bool CPlugin::LoadLibrary(const std::filesystem::path& path, std::string& error) {
    const CFloatingPointScope keepMode;
    identity.fileName = path.filename().string();
    if (!environment.applicationFolder.empty()) {
        std::error_code ignored;
        std::filesystem::current_path(environment.applicationFolder, ignored);
    }
    if (!library.Open(path, error)) return false;
    auto entry = library.Get<EntryProc>("VSTPluginMain");
    if (entry == nullptr) entry = library.Get<EntryProc>("main");
    if (entry == nullptr) {
        error = "no plug-in entry point";
        return false;
    }
    AEffect* const made = CallEntry(entry, &CPlugin::HostCallback);
    if (made == nullptr || made->magic != kEffectMagic || !Sane(*made)) {
        error = made == nullptr ? "the plug-in refused to start" : "not a VST 2 plug-in";
        return false;
    }
    effect = made;
    SetOwner(*effect, this);
    return true;
}

bool CPlugin::CheckCategory(SlotKind kind, std::string& error) {
    identity.category = Dispatch(effGetPlugCategory);
    const bool synthesiser = identity.category == kPlugCategSynth;
    if (synthesiser == (kind == SlotKind::Instrument)) return true;
    error = synthesiser ? "This plugin is not a compatible category !" : "This plugin is not a synth category !";
    environment.Message(error, "QUIB");
    return false;
}

void CPlugin::Open() {
    Dispatch(effOpen);
    SendFormat();
    identity.vendor = Text(effGetVendorString);
    identity.product = Text(effGetProductString);
    identity.vendorVersion = Dispatch(effGetVendorVersion);
    identity.effectName = Text(effGetEffectName);
    if (identity.effectName.empty()) identity.effectName = Text(effGetEffectName);
    identity.displayName = identity.effectName;
    RecogniseBuiltIn();

    identity.programCount = std::clamp(effect->numPrograms, 0, kMaximumPrograms);
    inputCount = effect->numInputs;
    outputCount = effect->numOutputs;
    inputs = CPluginBuffers(std::max(2, inputCount));
    outputs = CPluginBuffers(std::max(2, outputCount));
    foreignInputs.assign(inputs.Pointers(), inputs.Pointers() + inputs.Channels());
    eventMemory = CGuardedMemory(EventBlockBytes(kMaximumBlockEvents));

    char midiEvents[] = "receiveVstMidiEvent";
    char events[] = "receiveVstEvents";
    char programNames[] = "midiProgramNames";
    identity.acceptsMidi = Dispatch(effCanDo, 0, 0, midiEvents) == 1;
    Dispatch(effCanDo, 0, 0, events);
    Dispatch(effCanDo, 0, 0, programNames);

    Dispatch(effMainsChanged, 0, 1);
    BuildParameters();
    latency.store(effect->initialDelay, std::memory_order_relaxed);
    opened = true;
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
    if (!identity.isLoopPlayer) return;
    loops.waveBegin = library.Symbol("GetWaveBegin");
    loops.waveInfos = library.Symbol("GetWaveInfos");
    loops.waveCounter = library.Symbol("GetWaveCompter");
    if (const auto count = library.Get<std::intptr_t (*)()>("GetWaveNumber")) loops.waveNumber = count();
}

void CPlugin::BuildParameters() {
    const auto count = static_cast<std::size_t>(effect->numParams);
    parameters.resize(count);
    for (std::size_t index = 0; index < count; ++index) {
        parameters[index].name = Text(effGetParamName, static_cast<std::int32_t>(index));
    }
    lastAutomation.assign(count, std::numeric_limits<float>::quiet_NaN());
}

std::intptr_t CPlugin::Dispatch(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer,
                                float option) {
    if (effect == nullptr) return 0;
    const CFloatingPointScope keepMode;
    // What its window does while idling is the user's doing.
    const CPluginCallScope inside(opcode == effEditIdle ? nullptr : this);
    return effect->dispatcher(effect, opcode, index, value, pointer, option);
}

std::string CPlugin::Text(std::int32_t opcode, std::int32_t index) {
    std::array<char, kTextSize> buffer{};
    Dispatch(opcode, index, 0, buffer.data());
    buffer.back() = '\0';
    return buffer.data();
}

void CPlugin::SendFormat() {
    preparedRate = environment.sampleRate;
    preparedBlock = environment.blockSize;
    Dispatch(effSetSampleRate, 0, 0, nullptr, static_cast<float>(preparedRate));
    Dispatch(effSetBlockSize, 0, preparedBlock);
}

void CPlugin::Prepare() {
    const CExclusive exclusive(*this);
    Dispatch(effMainsChanged, 0, 0);
    SendFormat();
    Dispatch(effMainsChanged, 0, 1);
    latency.store(effect->initialDelay, std::memory_order_relaxed);
}

bool CPlugin::TakeFaultReport() noexcept {
    return faulty.load(std::memory_order_relaxed) && !faultTold.exchange(true, std::memory_order_relaxed);
}

CPlugin::CExclusive::CExclusive(CPlugin& owner) noexcept : plugin(owner) {
    while (plugin.busy.exchange(true, std::memory_order_acquire)) std::this_thread::yield();
}

CPlugin::CExclusive::~CExclusive() { plugin.busy.store(false, std::memory_order_release); }

// A render thread's call into the plug-in, unless the editing thread keeps it out.
class CPlugin::CRenderCall {
public:
    explicit CRenderCall(CPlugin& owner) noexcept
        : plugin(owner), entered(!owner.busy.exchange(true, std::memory_order_acquire)), inside(&owner) {}
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
    const CRenderCall call(*this);
    if (!call.Entered()) return false;
    VstEvents* const block =
        FillEventBlock(eventMemory.Data(), events.first(std::min(events.size(), kMaximumBlockEvents)));
    effect->dispatcher(effect, effProcessEvents, 0, 0, block, 0.0F);
    return true;
}

void CPlugin::SetParameter(int index, float value) noexcept {
    if (index < 0 || index >= static_cast<int>(parameters.size()) || std::isnan(value)) return;
    const CPluginCallScope inside(this);
    effect->setParameter(effect, index, std::clamp(value, 0.0F, 1.0F));
}

void CPlugin::SendInternalCode(std::int32_t code, float value) noexcept {
    if (!identity.effectName.starts_with("QUIB ")) return;
    const CPluginCallScope inside(this);
    effect->setParameter(effect, code, value);
}

bool CPlugin::PlayParameter(int index, float value) noexcept {
    const CRenderCall call(*this);
    if (call.Entered()) SetParameter(index, value);
    return call.Entered();
}

void CPlugin::AutomateParameter(int index, float value) noexcept {
    if (index < 0 || index >= static_cast<int>(lastAutomation.size())) return;
    float& last = lastAutomation[static_cast<std::size_t>(index)];
    if (last != value && PlayParameter(index, value)) last = value;
}

void CPlugin::ForgetAutomation() noexcept {
    std::fill(lastAutomation.begin(), lastAutomation.end(), std::numeric_limits<float>::quiet_NaN());
}

void CPlugin::Process(int frames) noexcept {
    if (inputCount == 1) return Process(inputs.Channel(0), inputs.Channel(1), frames);
    CallProcess(inputs.Pointers(), frames);
}

void CPlugin::Process(const float* left, const float* right, int frames) noexcept {
    if (inputCount == 1) {
        float* const mono = inputs.Channel(0);
        for (int i = 0; i < frames; ++i) mono[i] = 0.5F * (left[i] + right[i]);
        return CallProcess(inputs.Pointers(), frames);
    }
    // The interface has no const; a plug-in that writes its inputs changes what nobody reads again.
    foreignInputs[0] = const_cast<float*>(left);
    foreignInputs[1] = const_cast<float*>(right);
    CallProcess(foreignInputs.data(), frames);
}

void CPlugin::CallProcess(float** in, int frames) noexcept {
    const CRenderCall call(*this);
    if (!call.Entered()) return outputs.Clear(frames);
    const unsigned mode = ReadFloatingPointMode();
    effect->processReplacing(effect, in, outputs.Pointers(), frames);
    if (ReadFloatingPointMode() != mode) WriteFloatingPointMode(mode);
    if (!OutputsAreSane(frames)) {
        outputs.Clear(frames);
        faulty.store(true, std::memory_order_relaxed);
    }
    if (fade.load(std::memory_order_relaxed) != Fade::None) ApplyFade(frames);
    if (effect->initialDelay != latency.load(std::memory_order_relaxed)) {
        latency.store(effect->initialDelay, std::memory_order_relaxed);
    }
}

// The editing thread may ask for the other direction at any time: then its wish stands, not the end of
// the fade that was made here.
void CPlugin::ApplyFade(int frames) noexcept {
    Fade wanted = fade.load();
    if (wanted == Fade::Silent) return outputs.Clear(frames);
    const int length = std::min(frames, kFadeFrames);
    const float step = 1.0F / static_cast<float>(length);
    for (int channel = 0; channel < outputs.Channels(); ++channel) {
        float* const samples = outputs.Channel(channel);
        for (int i = 0; i < length; ++i) {
            const float rising = static_cast<float>(i + 1) * step;
            samples[i] *= wanted == Fade::In ? rising : 1.0F - rising;
        }
        if (wanted == Fade::Out) std::fill(samples + length, samples + frames, 0.0F);
    }
    fade.compare_exchange_strong(wanted, wanted == Fade::In ? Fade::None : Fade::Silent);
}

bool CPlugin::OutputsAreSane(int frames) const noexcept {
    // As integers, the absolute values of floats keep their order, and what is no number lies above all.
    constexpr auto limit = std::bit_cast<std::int32_t>(kLoudest);
    const int channels = std::min(outputCount, kCheckedOutputs);
    for (int channel = 0; channel < channels; ++channel) {
        const float* const samples = outputs.Channel(channel);
        std::int32_t beyond = 0;
        for (int i = 0; i < frames; ++i) {
            beyond |= static_cast<std::int32_t>((std::bit_cast<std::int32_t>(samples[i]) & 0x7fffffff) > limit);
        }
        if (beyond != 0) return false;
    }
    return true;
}

}  // namespace quib
