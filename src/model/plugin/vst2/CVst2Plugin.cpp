// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/vst2/CVst2Plugin.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <utility>

#include "model/plugin/PluginCalls.h"
#include "model/plugin/vst2/Vst2Calls.h"
#include "platform/FloatingPointMode.h"
#include "platform/XErrors.h"

namespace quib {

using namespace vst2;

namespace {

constexpr int kMaximumChannels = 512;
constexpr int kMaximumPrograms = 1 << 16;

bool Sane(const AEffect& effect) {
    return effect.dispatcher != nullptr && effect.setParameter != nullptr && effect.getParameter != nullptr &&
           effect.numInputs >= 0 && effect.numInputs <= kMaximumChannels && effect.numOutputs >= 0 &&
           effect.numOutputs <= kMaximumChannels && effect.numParams >= 0 &&
           effect.numParams <= CPlugin::kMaximumParameters &&
           ((effect.flags & effFlagsCanReplacing) == 0 || effect.processReplacing != nullptr);
}

std::string Hexadecimal(std::int32_t number) {
    std::array<char, 9> text{};
    std::snprintf(text.data(), text.size(), "%08x", static_cast<unsigned>(number));
    return text.data();
}

// Calls that may put a handler of a toolkit into the process.
class CXErrorScope {
public:
    explicit CXErrorScope(std::int32_t opcode)
        : needed(opcode == effOpen || opcode == effClose || opcode == effEditOpen || opcode == effEditClose ||
                 opcode == effEditIdle || opcode == effEditGetRect) {
        if (needed) KeepXErrorsHarmless();
    }
    ~CXErrorScope() {
        if (needed) KeepXErrorsHarmless();
    }
    CXErrorScope(const CXErrorScope&) = delete;
    CXErrorScope& operator=(const CXErrorScope&) = delete;

private:
    bool needed;
};

}  // namespace

CVst2Plugin::~CVst2Plugin() {
    const CPluginCallScope inside(this, MarkedAs(), EPluginCall::kClose);
    if (effect != nullptr && opened) Dispatch(effMainsChanged, 0, 0);
    if (effect != nullptr) Dispatch(effClose);
    library.Close();
}

std::shared_ptr<CPlugin> CVst2Plugin::Load(const std::filesystem::path& path, PluginEnvironment& environment,
                                           std::string& error) {
    auto plugin = std::make_shared<CVst2Plugin>(environment);
    if (!plugin->LoadEffect(path, error)) return nullptr;
    return plugin;
}

bool CVst2Plugin::LoadEffect(const std::filesystem::path& path, std::string& error) {
    if (!library.Open(path, error)) return false;
    auto entry = library.Get<EntryProc>("VSTPluginMain");
    if (entry == nullptr) entry = library.Get<EntryProc>("main");
    if (entry == nullptr) {
        error = "no plug-in entry point";
        return false;
    }
    AEffect* made = nullptr;
    try {
        made = CallEntry(entry, &CVst2Plugin::HostCallback);
    } catch (...) {
        error = std::string("the plug-in threw an exception while ") + Describe(EPluginCall::kLoad);
        return false;
    }
    KeepXErrorsHarmless();
    if (made == nullptr || made->magic != kEffectMagic || !Sane(*made)) {
        error = made == nullptr ? "the plug-in refused to start" : "not a VST 2 plug-in";
        return false;
    }
    effect = made;
    SetOwner(*effect, this);
    return true;
}

bool CVst2Plugin::IsInstrument() {
    category = Dispatch(effGetPlugCategory);
    return category == kPlugCategSynth;
}

void CVst2Plugin::Open(PluginIdentity& described) {
    Dispatch(effOpen);
    SendFormat();
    described.vendor = Text(effGetVendorString);
    described.product = Text(effGetProductString);
    described.vendorVersion = Dispatch(effGetVendorVersion);
    described.effectName = Text(effGetEffectName);
    if (described.effectName.empty()) described.effectName = Text(effGetEffectName);
    described.id = Hexadecimal(effect->uniqueId);
    described.version = effect->version;
    described.category = category;
    described.programCount = std::clamp(effect->numPrograms, 0, kMaximumPrograms);
}

CPlugin::Ports CVst2Plugin::AskPorts() {
    return {effect->numInputs, effect->numOutputs, (effect->flags & effFlagsCanReplacing) != 0};
}

void CVst2Plugin::Start(PluginIdentity& described) {
    eventMemory = CGuardedMemory(EventBlockBytes(kMaximumBlockEvents));
    char midiEvents[] = "receiveVstMidiEvent";
    char events[] = "receiveVstEvents";
    char programNames[] = "midiProgramNames";
    described.acceptsMidi = Dispatch(effCanDo, 0, 0, midiEvents) == 1;
    Dispatch(effCanDo, 0, 0, events);
    Dispatch(effCanDo, 0, 0, programNames);
    Dispatch(effMainsChanged, 0, 1);
    described.flags = effect->flags;
    SetLatency(effect->initialDelay);
    opened = true;
}

// The interface tells neither ranges nor steps; a parameter's default is what it has after loading.
std::vector<PluginParameter> CVst2Plugin::DescribeParameters() {
    std::vector<PluginParameter> found(static_cast<std::size_t>(effect->numParams));
    for (std::size_t index = 0; index < found.size(); ++index) {
        found[index].name = Text(effGetParamName, static_cast<std::int32_t>(index));
        found[index].defaultValue = ReadParameter(static_cast<int>(index));
    }
    return found;
}

float CVst2Plugin::ReadParameter(int index) noexcept {
    const CPluginCallScope inside(this, MarkedAs(), EPluginCall::kParameter);
    try {
        return effect->getParameter(effect, index);
    } catch (...) {
        ReportThrown(EPluginCall::kParameter);
        return 0.0F;
    }
}

void CVst2Plugin::WriteParameter(std::int32_t index, float value) noexcept {
    try {
        effect->setParameter(effect, index, value);
    } catch (...) {
        ReportThrown(EPluginCall::kParameter);
    }
}

void CVst2Plugin::SendFormat() {
    Dispatch(effSetSampleRate, 0, 0, nullptr, static_cast<float>(Environment().sampleRate));
    Dispatch(effSetBlockSize, 0, Environment().blockSize);
}

void CVst2Plugin::Restart() {
    Dispatch(effMainsChanged, 0, 0);
    SendFormat();
    Dispatch(effMainsChanged, 0, 1);
    SetLatency(effect->initialDelay);
}

std::intptr_t CVst2Plugin::Dispatch(std::int32_t opcode, std::int32_t index, std::intptr_t value, void* pointer,
                                    float option) {
    const CFloatingPointScope keepMode;
    // What its window does while idling is the user's doing.
    const CPluginCallScope inside(opcode == effEditIdle ? nullptr : this, MarkedAs(), CallOfOpcode(opcode));
    const CXErrorScope harmless(opcode);
    try {
        return effect->dispatcher(effect, opcode, index, value, pointer, option);
    } catch (const abi::__forced_unwind&) {
        throw;  // the end of a thread
    } catch (...) {
        ReportThrown(CallOfOpcode(opcode));
        return 0;
    }
}

std::string CVst2Plugin::Text(std::int32_t opcode, std::int32_t index) {
    std::array<char, kTextSize> buffer{};
    Dispatch(opcode, index, 0, buffer.data());
    buffer.back() = '\0';
    return buffer.data();
}

ParameterNature CVst2Plugin::AskParameterNature(int index) {
    ParameterProperties told{};
    ParameterNature nature;
    if (Dispatch(effGetParameterProperties, index, 0, &told) != 1) return nature;
    const auto has = [&told](ParameterFlags flag) { return (told.flags & flag) != 0; };
    if (has(kParameterHasCategory) && told.category > 0) {
        told.categoryLabel[sizeof(told.categoryLabel) - 1] = 0;
        nature.group = told.categoryLabel;
    }
    if (has(kParameterIsSwitch)) {
        nature.values = 2;
    } else if (has(kParameterHasWholeRange) && told.highest > told.lowest) {
        const std::int64_t step = has(kParameterHasWholeStep) ? std::max(1, told.wholeStep) : 1;
        const std::int64_t range = std::int64_t{told.highest} - told.lowest;
        nature.values = static_cast<int>(std::min<std::int64_t>(range / step + 1, 1 << 16));
        nature.isWhole = true;
    }
    return nature;
}

std::string CVst2Plugin::KeyName(int key) {
    vst2::MidiKeyName asked{};
    asked.program = static_cast<std::int32_t>(Dispatch(vst2::effGetProgram));
    asked.key = key;
    if (Dispatch(vst2::effGetMidiKeyName, 0, 0, &asked) != 1) return {};
    asked.name[sizeof(asked.name) - 1] = 0;
    return asked.name;
}

bool CVst2Plugin::SetParameterText(int index, const std::string& text) {
    std::string copy = text;  // the interface has no const
    return Dispatch(effString2Parameter, index, 0, copy.data()) != 0;
}

void CVst2Plugin::OpenEditor(std::uintptr_t parentWindow) {
    Dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(parentWindow));
}

std::optional<CPlugin::EditorSize> CVst2Plugin::AskEditorSize() {
    ERect* rectangle = nullptr;
    Dispatch(effEditGetRect, 0, 0, static_cast<void*>(&rectangle));
    if (rectangle == nullptr) return std::nullopt;
    return EditorSize{rectangle->right - rectangle->left, rectangle->bottom - rectangle->top};
}

void CVst2Plugin::TakeEvents(std::span<const BlockEvent> events) noexcept {
    try {
        effect->dispatcher(effect, effProcessEvents, 0, 0, FillEventBlock(eventMemory.Data(), events), 0.0F);
    } catch (...) {
        ReportThrown(EPluginCall::kEvents);
    }
}

void CVst2Plugin::Render(const float* const* from, float* const* to, int frames) noexcept {
    try {
        effect->processReplacing(effect, from, to, frames);
    } catch (...) {
        ReportThrown(EPluginCall::kRender);
        to[0][0] = std::numeric_limits<float>::quiet_NaN();  // no sound: the block is silent
    }
    SetLatency(effect->initialDelay);
}

}  // namespace quib
