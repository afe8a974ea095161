// SPDX-License-Identifier: GPL-3.0-or-later
// What plug-ins may ask of the program, and what they are told.
#include <cstring>
#include <thread>

#include "model/plugin/CPlugin.h"
#include "model/plugin/PluginCalls.h"

namespace quib {

using namespace vst2;

namespace {

constexpr std::int32_t kLastKnownOpcode = audioMasterBeginEdit;
constexpr std::intptr_t kInterfaceVersion = 2400;
constexpr char kProduct[] = "QUIB Sequencer";

}  // namespace

std::intptr_t VST2_CALL CPlugin::HostCallback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                              std::intptr_t value, void* pointer, float option) noexcept {
    if (opcode > kLastKnownOpcode) return 0;
    CPlugin* const plugin = OwnerOf(effect);
    switch (opcode) {
        case audioMasterAutomate:
        case audioMasterBeginEdit:
            if (plugin != nullptr) plugin->OnParameterReport(opcode, index, option);
            return 0;
        case audioMasterVersion:
            return kInterfaceVersion;
        case audioMasterCurrentId:
            return FourCharacters('q', 'u', 'i', 'b');
        case audioMasterIdle:
            if (plugin != nullptr && plugin->environment.idle && plugin->editingThread == std::this_thread::get_id()) {
                plugin->environment.idle();
            }
            return 0;
        case audioMasterWantMidi:
        case audioMasterGetVendorVersion:
        case audioMasterUpdateDisplay:
            return 1;
        case audioMasterGetTime:
            return plugin != nullptr ? plugin->OnTimeRequest() : 0;
        case audioMasterNeedIdle:
            if (plugin != nullptr) plugin->needsIdle.store(true, std::memory_order_relaxed);
            return 0;
        case audioMasterSizeWindow:
            return plugin != nullptr && plugin->OnSizeRequest(index, value) ? 1 : 0;
        case audioMasterGetProductString:
            if (pointer == nullptr) return 0;
            std::memcpy(pointer, kProduct, sizeof kProduct);
            return 1;
        default:
            return 0;
    }
}

bool CPlugin::OnSizeRequest(std::int32_t width, std::intptr_t height) {
    constexpr int kLargest = 1 << 14;  // pixels
    if (!environment.sizeWindow || editingThread != std::this_thread::get_id()) return false;
    if (width < 1 || width > kLargest || height < 1 || height > kLargest) return false;
    return environment.sizeWindow(*this, width, static_cast<int>(height));
}

void CPlugin::OnParameterReport(std::int32_t opcode, std::int32_t index, float value) {
    // Reports from inside a call of ours (a whole bank may send a thousand) are not the user's doing.
    if (CPluginCallScope::IsInside(this) || editingThread != std::this_thread::get_id()) return;
    if (index < 0 || index >= static_cast<int>(parameters.size())) return;
    if (opcode == audioMasterAutomate) {
        if (environment.parameterChanged) environment.parameterChanged(*this, index, value);
    } else if (environment.parameterTouched) {
        environment.parameterTouched(*this, index);
    }
}

std::intptr_t CPlugin::OnTimeRequest() {
    if (IsRenderThread()) return reinterpret_cast<std::intptr_t>(&blockTime);
    // A thread of the plug-in's own gets no answer: nothing could keep it from changing meanwhile.
    if (editingThread != std::this_thread::get_id()) return 0;
    if (environment.currentTime) environment.currentTime(editingTime);
    return reinterpret_cast<std::intptr_t>(&editingTime);
}

}  // namespace quib
