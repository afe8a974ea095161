// SPDX-License-Identifier: GPL-3.0-or-later
#include "loops/CLoopsPlugin.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <mutex>

#include "loops/LoopExports.h"

namespace quibplug {

namespace {

constexpr std::int32_t kUniqueId = vst2::FourCharacters('Q', 'b', 'L', 'p');
constexpr float kButterworth = 1.41421356f;
constexpr float kPercent = 0.01f;
constexpr float kMilli = 0.001f;
constexpr float kRepeatFadeSeconds = 0.004f;
constexpr float kFilterMemorySeconds = 0.15f;
constexpr float kNoDecay = 9900.0f;       // milliseconds from which on a stroke keeps its level
constexpr float kOpenLowCut = 10.01f;     // hertz
constexpr float kOpenHighCut = 19980.0f;  // hertz
constexpr int kAllSoundOff = 120;
constexpr int kAllNotesOff = 123;

std::mutex instancesMutex;
std::vector<CLoopsPlugin*> instances;

PluginDescription Description() {
    return {"QUIB Loops", kUniqueId, 1000, vst2::kPlugCategSynth, 0, 2, LoopParameters(), LoopPrograms()};
}

}  // namespace

CLoopsPlugin::CLoopsPlugin(vst2::HostCallback host) : CPluginBase(Description()), m_time(host) {
    SincTable::Shared();
    SampleRateChanged();
    Reset();
    ParametersSnapped();
    const std::lock_guard lock(instancesMutex);
    instances.push_back(this);
}

CLoopsPlugin::~CLoopsPlugin() {
    const std::lock_guard lock(instancesMutex);
    std::erase(instances, this);
}

void CLoopsPlugin::FollowFolders() {
    const std::lock_guard lock(instancesMutex);
    for (CLoopsPlugin* const instance : instances) instance->FollowFolder();
}

// What is not played any more is freed here, not by the render thread.
void CLoopsPlugin::FollowFolder() {
    auto next = SharedLoops(static_cast<double>(SampleRate()));
    if (next == m_loops) return;
    if (m_taken.load(std::memory_order_acquire) == m_loops.get() && m_quiet.load(std::memory_order_acquire)) {
        m_former.clear();
    }
    if (m_loops) m_former.push_back(m_loops);
    m_loops = std::move(next);
    m_offered.store(m_loops.get(), std::memory_order_release);
}

void CLoopsPlugin::Take(const LoopSet& loops) noexcept {
    m_keys = {};
    for (const auto& loop : loops) m_keys[static_cast<std::size_t>(loop->key)] = loop.get();
    m_taken.store(&loops, std::memory_order_release);
}

void CLoopsPlugin::BeginBlock() noexcept {
    m_time.Read(Effect());
    m_quiet.store(!m_sounding, std::memory_order_release);
    const LoopSet* const offered = m_offered.load(std::memory_order_acquire);
    if (offered != nullptr && offered != m_taken.load(std::memory_order_relaxed)) Take(*offered);
}

void CLoopsPlugin::SampleRateChanged() noexcept {
    for (CLoopVoice& voice : m_voices) voice.Kill();
    m_keys = {};
    m_former.clear();
    try {
        m_loops = SharedLoops(static_cast<double>(SampleRate()));
        Take(*m_loops);
    } catch (const std::exception&) {
        m_loops = nullptr;  // no memory for the loops: silent
    }
    m_offered.store(m_loops.get(), std::memory_order_release);
}

void CLoopsPlugin::Reset() noexcept {
    for (CLoopVoice& voice : m_voices) {
        if (voice.Active()) TellLoopFrame(voice.Playing()->key, -1);
        voice.Kill();
    }
    for (auto* filters : {&m_lowCuts, &m_highCuts}) {
        for (CStateVariableFilter& filter : *filters) filter.Reset();
    }
    m_started = 0;
    m_silentFrames = 0;
    m_sounding = false;
}

void CLoopsPlugin::Tick(bool) noexcept {
    if (static_cast<float>(m_silentFrames) > kFilterMemorySeconds * SampleRate()) Reset();
    UpdateControls([](Ramp& ramp, float value) { ramp.Aim(value); });
    for (const CLoopVoice& voice : m_voices) {
        if (voice.Active() && !voice.Ending()) TellLoopFrame(voice.Playing()->key, voice.Frame());
    }
}

void CLoopsPlugin::ParametersSnapped() noexcept {
    UpdateControls([](Ramp& ramp, float value) { ramp.Set(value); });
}

template <typename Move>
void CLoopsPlugin::UpdateControls(Move move) noexcept {
    const CSmoothedParameters& p = Parameters();
    const float pan = kPercent * p.Real(kLoopPan);
    move(m_left, p.Real(kLoopVolume) * std::sqrt(1.0f - pan));
    move(m_right, p.Real(kLoopVolume) * std::sqrt(1.0f + pan));
    const bool cutting = p.Real(kLoopLowCut) > kOpenLowCut || p.Real(kLoopHighCut) < kOpenHighCut;
    move(m_filtered, cutting ? 1.0f : 0.0f);
    m_lowCut = FilterCoefficients::FromFrequency(p.Real(kLoopLowCut), kButterworth, SampleRate());
    m_highCut = FilterCoefficients::FromFrequency(p.Real(kLoopHighCut), kButterworth, SampleRate());
}

LoopMotion CLoopsPlugin::Motion() const noexcept {
    constexpr double kSpeeds[] = {0.5, 1.0, 2.0};
    const CSmoothedParameters& p = Parameters();
    const float decay = p.Real(kLoopSliceDecay);
    const float tune = p.Real(kLoopTune);
    return {
        p.Step(kLoopSync) != 0 ? m_time.Tempo() / 60.0 / static_cast<double>(SampleRate()) : 0.0,
        kSpeeds[p.Step(kLoopSpeed)],
        std::fabs(tune) < 1e-3f ? 1.0 : static_cast<double>(Exp2(tune / 12.0f)),
        static_cast<LoopStretch>(p.Step(kLoopStretch)),
        decay < kNoDecay && p.Step(kLoopStretch) == 0 ? OnePoleShare(kMilli * decay / 6.9077553f, SampleRate()) : 0.0f,
        SampleRate()};
}

void CLoopsPlugin::Render(const float* const*, float* const* outputs, int frames) noexcept {
    float left[kMaximumTickFrames]{};
    float right[kMaximumTickFrames]{};
    const LoopMotion motion = Motion();
    bool playing = false;
    for (CLoopVoice& voice : m_voices) {
        if (!voice.Active()) continue;
        const int key = voice.Playing()->key;
        voice.Add(motion, left, right, frames);
        if (!voice.Active()) TellLoopFrame(key, -1);
        playing = playing || voice.Active();
    }
    Filter(left, right, frames);
    float gains[kMaximumTickFrames];
    m_left.Fill(gains, TickOffset(), frames, TickFrames());
    for (int i = 0; i < frames; ++i) outputs[0][i] = left[i] * gains[i];
    m_right.Fill(gains, TickOffset(), frames, TickFrames());
    for (int i = 0; i < frames; ++i) outputs[1][i] = right[i] * gains[i];
    m_silentFrames = playing ? 0 : m_silentFrames + frames;
}

// The cuts ring on for a while after the last voice.
void CLoopsPlugin::Filter(float* left, float* right, int frames) noexcept {
    float shares[kMaximumTickFrames];
    m_filtered.Fill(shares, TickOffset(), frames, TickFrames());
    const auto cut = [&](std::size_t side, float& sample, float share) {
        const float high = m_lowCuts[side].Process(sample, m_lowCut).highPass;
        sample += share * (m_highCuts[side].Process(high, m_highCut).lowPass - sample);
    };
    for (int i = 0; i < frames; ++i) {
        cut(0, left[i], shares[i]);
        cut(1, right[i], shares[i]);
    }
}

void CLoopsPlugin::NoteOn(int key, int velocity) noexcept {
    const Loop* loop = m_keys[static_cast<std::size_t>(key)];
    if (loop == nullptr) return;
    const auto play = static_cast<LoopPlay>(Parameters().Step(kLoopPlay));
    const bool wasPlaying = EndKey(key, kRepeatFadeSeconds);
    if (play == LoopPlay::kToggle && wasPlaying) return;
    const float sensitivity = kPercent * Parameters().Real(kLoopVelocity);
    const float gain = 1.0f - sensitivity * (1.0f - static_cast<float>(velocity) / 127.0f);
    FreeVoice().Start(*loop, gain, play == LoopPlay::kOneShot, ++m_started);
    m_sounding = true;
    m_silentFrames = 0;
}

void CLoopsPlugin::NoteOff(int key) noexcept {
    if (static_cast<LoopPlay>(Parameters().Step(kLoopPlay)) != LoopPlay::kGate) return;
    EndKey(key, kMilli * Parameters().Real(kLoopFade));
}

bool CLoopsPlugin::EndKey(int key, float seconds) noexcept {
    bool any = false;
    for (CLoopVoice& voice : m_voices) {
        if (!voice.Active() || voice.Ending() || voice.Playing()->key != key) continue;
        voice.End(seconds, SampleRate());
        any = true;
    }
    return any;
}

// One that is free, or the one that ends, or the oldest.
CLoopVoice& CLoopsPlugin::FreeVoice() noexcept {
    CLoopVoice* best = &m_voices[0];
    for (CLoopVoice& voice : m_voices) {
        if (!voice.Active()) return voice;
        if (voice.Ending() != best->Ending() ? voice.Ending() : voice.Order() < best->Order()) best = &voice;
    }
    return *best;
}

void CLoopsPlugin::ControlChange(int controller, int) noexcept {
    if (controller != kAllSoundOff && controller != kAllNotesOff) return;
    for (CLoopVoice& voice : m_voices) {
        if (voice.Active() && !voice.Ending()) voice.End(kRepeatFadeSeconds, SampleRate());
    }
}

}  // namespace quibplug

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    if (host == nullptr) return nullptr;
    try {
        auto plugin = std::make_unique<quibplug::CLoopsPlugin>(host);
        return plugin.release()->Effect();
    } catch (...) {
        return nullptr;
    }
}
