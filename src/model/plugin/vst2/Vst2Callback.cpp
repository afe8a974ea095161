// SPDX-License-Identifier: GPL-3.0-or-later
// What plug-ins may ask of the program, and what they are told.
#include <cstring>

#include "model/plugin/PluginCalls.h"
#include "model/plugin/vst2/CVst2Plugin.h"
#include "model/plugin/vst2/Vst2Calls.h"

namespace quib {

using namespace vst2;

namespace {

constexpr std::int32_t kLastKnownOpcode = audioMasterEndEdit;
constexpr std::intptr_t kInterfaceVersion = 2400;
constexpr char kProduct[] = "QUIB Sequencer";

}  // namespace

std::intptr_t VST2_CALL CVst2Plugin::HostCallback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                                  std::intptr_t value, void* pointer, float option) noexcept {
    if (opcode > kLastKnownOpcode) return 0;
    CVst2Plugin* const plugin = OwnerOf(effect);
    switch (opcode) {
        case audioMasterAutomate:
            if (plugin != nullptr) plugin->ReportParameter(index, option);
            return 0;
        case audioMasterBeginEdit:
        case audioMasterEndEdit:
            if (plugin != nullptr) plugin->ReportTouch(index, opcode == audioMasterBeginEdit);
            return 0;
        case audioMasterVersion:
            return kInterfaceVersion;
        case audioMasterCurrentId:
            return FourCharacters('q', 'u', 'i', 'b');
        case audioMasterIdle:
            if (plugin != nullptr) plugin->RunApplicationIdle();
            return 0;
        case audioMasterWantMidi:
        case audioMasterGetVendorVersion:
        case audioMasterUpdateDisplay:
            return 1;
        case audioMasterGetTime:
            return plugin != nullptr ? plugin->AnswerTime() : 0;
        case audioMasterNeedIdle:
            if (plugin != nullptr) plugin->ReportIdleWanted();
            return 0;
        case audioMasterSizeWindow:
            return plugin != nullptr && plugin->RequestEditorSize(index, value) ? 1 : 0;
        case audioMasterGetProductString:
            if (pointer == nullptr) return 0;
            std::memcpy(pointer, kProduct, sizeof kProduct);
            return 1;
        default:
            return 0;
    }
}

std::intptr_t CVst2Plugin::AnswerTime() {
    const PlayTime* const time = AskTime();
    if (time == nullptr) return 0;
    VstTimeInfo& told = IsRenderThread() ? blockTime : editingTime;
    told = ToTimeInfo(*time);
    return reinterpret_cast<std::intptr_t>(&told);
}

}  // namespace quib
