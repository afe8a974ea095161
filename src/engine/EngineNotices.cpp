// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EngineNotices.h"

#include <map>

namespace quib {

namespace {

std::shared_ptr<CInstrument> Find(const CAudio& audio, std::uint32_t id) {
    for (const auto& instrument : *audio.instruments.ForEdit()) {
        if (instrument->Id() == id) return instrument;
    }
    return nullptr;
}

void SetProgram(const CAudio& audio, std::uint32_t id, int program) {
    const auto instrument = Find(audio, id);
    if (!instrument) return;
    if (const auto& plugin = instrument->plugin.ForEdit()->plugin) plugin->SelectProgram(program);
}

}  // namespace

void FollowNotices(CAudio& audio, const std::function<void(const EngineNotice&)>& show) {
    std::map<std::uint32_t, int> programs;  // the newest of each instrument
    std::vector<EngineNotice> notices;
    for (EngineNotice notice; audio.Fetch(notice);) {
        notices.push_back(notice);
        if (notice.kind == EngineNotice::EKind::kProgramSelected) programs[notice.instrument] = notice.value;
    }
    for (const auto& [id, program] : programs) SetProgram(audio, id, program);
    if (!show) return;
    for (const EngineNotice& notice : notices) show(notice);
}

}  // namespace quib
