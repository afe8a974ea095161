// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the host calls a plug-in for, as far as it matters to whoever is told which call went wrong.

#include <array>
#include <cstddef>
#include <cstdint>

namespace quib {

enum class EPluginCall : std::uint8_t {
    kNone,
    kLoad,
    kSwitch,  // on, off, rate, block size
    kAsk,     // names, texts
    kState,
    kProgram,
    kParameter,
    kOpenEditor,
    kEditor,
    kCloseEditor,
    kIdle,
    kClose,
    kEvents,
    kRender
};
// What each is, in English, "while ...".
inline constexpr std::array<const char*, 14> kPluginCallNames = {"",
                                                                 "being loaded",
                                                                 "being switched on or off",
                                                                 "answering a question",
                                                                 "giving or taking its state",
                                                                 "changing its program",
                                                                 "setting a parameter",
                                                                 "opening its editor",
                                                                 "working in its editor",
                                                                 "closing its editor",
                                                                 "using its idle time",
                                                                 "being closed",
                                                                 "taking notes",
                                                                 "rendering"};
constexpr const char* Describe(EPluginCall call) noexcept {
    const auto index = static_cast<std::size_t>(call);
    return index < kPluginCallNames.size() ? kPluginCallNames[index] : "";
}

}  // namespace quib
