// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CTransportControl.h"

#include <algorithm>
#include <cmath>

#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr std::uint64_t kLongestTap = 3'000'000'000;  // nanoseconds
constexpr std::size_t kMostTaps = 8;
constexpr float kSlowest = 20.0F;
constexpr float kFastest = 300.0F;
constexpr const char* kLaunchName = "PatternLaunch";

}  // namespace

CTransportControl::CTransportControl(const DocumentContext& document) : context(document) {
    const int kept = context.settings.ReadSettingInt(kSettingsSection, QLatin1String(kLaunchName), 0);
    context.audio.settings.launch.Set(std::clamp(kept, 0, static_cast<int>(ELaunch::kBar)));
}

void CTransportControl::SetLaunch(ELaunch launch) {
    context.audio.settings.launch.Set(static_cast<int>(launch));
    context.settings.WriteSettingInt(kSettingsSection, QLatin1String(kLaunchName), static_cast<int>(launch));
    context.changes.Tell({EChange::kValue});
}

bool CTransportControl::IsPlaying() const {
    const PlayPicture& picture = context.audio.Picture();
    return picture.playing || picture.beatsToStart > 0;
}

void CTransportControl::Stop() {
    if (!IsPlaying()) return Panic();
    context.audio.Post({EngineCommand::EKind::kStop});
    ++releases.stops;
}

void CTransportControl::Panic() {
    context.audio.Post({EngineCommand::EKind::kPanic});
    ++releases.panics;
}

void CTransportControl::Locate(int step) {
    context.audio.Post({EngineCommand::EKind::kLocate, 0, std::clamp(step, 0, kMaximumSongStep)});
}

void CTransportControl::PlayKey(std::uint32_t instrument, int key, int velocity) {
    EngineCommand command{EngineCommand::EKind::kPlayNote, instrument, key, static_cast<float>(velocity)};
    command.time = Nanoseconds();
    context.audio.Post(command);
}

void CTransportControl::TapTempo() {
    const std::uint64_t now = Nanoseconds();
    if (!taps.empty() && now - taps.back() > kLongestTap) taps.clear();
    taps.push_back(now);
    if (taps.size() > kMostTaps) taps.erase(taps.begin());
    if (taps.size() < 2) return;
    const double beat = static_cast<double>(now - taps.front()) * 1e-9 / static_cast<double>(taps.size() - 1);
    const float before = context.audio.settings.tempo.Get();
    const float tempo = std::clamp(std::round(static_cast<float>(600.0 / beat)) / 10.0F, kSlowest, kFastest);
    context.audio.settings.tempo.Set(tempo);
    context.changes.ValueEdited(EnginePart(context.audio.settings.tempo), before, tempo, Text("Tempo"));
}

}  // namespace quib
