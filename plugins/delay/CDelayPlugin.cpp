// SPDX-License-Identifier: GPL-3.0-or-later
#include "delay/CDelayPlugin.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "delay/DelayParameters.h"

namespace quibplug {

namespace {

constexpr std::int32_t kUniqueId = vst2::FourCharacters('Q', 'b', 'D', 'l');
constexpr float kPercent = 0.01f;
constexpr double kLongestSeconds = 10.0;
constexpr float kButterworth = 1.41421356f;  // damping, 1 / Q
constexpr float kFilterMemorySeconds = 0.1f;
constexpr float kHottestDrive = 8.0f;

PluginDescription Description() {
    return {"QUIB delay", kUniqueId, 1000, vst2::kPlugCategEffect, 2, 2, DelayParameters(), DelayPrograms()};
}

}  // namespace

CDelayPlugin::CDelayPlugin(vst2::HostCallback host) : CEffectBase(Description()), m_time(host) {
    SampleRateChanged();
    Clear();
    SnapEffect();
}

void CDelayPlugin::SampleRateChanged() noexcept {
    const auto longest = static_cast<int>(kLongestSeconds * static_cast<double>(SampleRate())) + 1;
    m_left.line.Allocate(longest);
    m_right.line.Allocate(longest);
}

void CDelayPlugin::BeginBlock() noexcept { m_time.Read(Effect()); }

void CDelayPlugin::Clear() noexcept {
    for (Channel* channel : {&m_left, &m_right}) {
        channel->line.Clear();
        channel->lowCut.Reset();
        channel->highCut.Reset();
    }
}

// A note too long for the memory is halved until it fits, so that it stays on the beat.
double CDelayPlugin::SecondsOf(bool synchronised, int note, double milliseconds) const noexcept {
    if (!synchronised) return 0.001 * milliseconds;
    double seconds = QuartersOf(note) * 60.0 / m_time.Tempo();
    while (seconds > kLongestSeconds) seconds *= 0.5;
    return seconds;
}

int CDelayPlugin::FramesOf(double seconds) const noexcept {
    const auto frames = static_cast<int>(std::lround(seconds * static_cast<double>(SampleRate())));
    return std::clamp(frames, TickFrames() + 4, std::min(m_left.line.LongestDelay(), m_right.line.LongestDelay()));
}

int CDelayPlugin::LeftFrames() const noexcept {
    const CSmoothedParameters& p = Parameters();
    return FramesOf(SecondsOf(p.Step(kDelaySync) != 0, p.Step(kDelayLeftNote), SetTo(kDelayLeftTime)));
}

int CDelayPlugin::RightFrames() const noexcept {
    const CSmoothedParameters& p = Parameters();
    if (p.Step(kDelayLink) != 0) return LeftFrames();
    return FramesOf(SecondsOf(p.Step(kDelaySync) != 0, p.Step(kDelayRightNote), SetTo(kDelayRightTime)));
}

std::int32_t CDelayPlugin::TailFrames() const noexcept {
    const bool synchronised = SetTo(kDelaySync) > 0.5f;
    const double left = SecondsOf(synchronised, static_cast<int>(SetTo(kDelayLeftNote)), SetTo(kDelayLeftTime));
    const double right = SecondsOf(synchronised, static_cast<int>(SetTo(kDelayRightNote)), SetTo(kDelayRightTime));
    const double longest = SetTo(kDelayLink) > 0.5f ? left : std::max(left, right);
    const double feedback = std::max(0.01 * static_cast<double>(SetTo(kDelayFeedback)), 1e-6);
    const double repeats = 2.0 + std::ceil(std::log(1e-5) / std::log(feedback));  // down by 100 dB
    return static_cast<std::int32_t>(std::min(repeats * longest * static_cast<double>(SampleRate()), 2e9));
}

int CDelayPlugin::InEffect(int parameter) const noexcept {
    const bool linked = SetTo(kDelayLink) > 0.5f;
    if (linked && parameter == kDelayRightNote) return kDelayLeftNote;
    return linked && parameter == kDelayRightTime ? kDelayLeftTime : parameter;
}

int CDelayPlugin::MemoryFrames() const noexcept {
    return std::max(m_left.tap.Longest(), m_right.tap.Longest()) +
           static_cast<int>(kFilterMemorySeconds * SampleRate());
}

void CDelayPlugin::TickEffect(bool) noexcept {
    const auto change = static_cast<TimeChange>(Parameters().Step(kDelayTimeChange));
    m_left.tap.Aim(LeftFrames(), change, SampleRate());
    m_right.tap.Aim(RightFrames(), change, SampleRate());
    UpdateControls([](Ramp& ramp, float value) { ramp.Aim(value); });
}

void CDelayPlugin::SnapEffect() noexcept {
    m_left.tap.Snap(LeftFrames());
    m_right.tap.Snap(RightFrames());
    UpdateControls([](Ramp& ramp, float value) { ramp.Set(value); });
}

template <typename Move>
void CDelayPlugin::UpdateControls(Move move) noexcept {
    const CSmoothedParameters& p = Parameters();
    move(m_feedback, kPercent * p.Real(kDelayFeedback));
    move(m_pingPong, kPercent * p.Real(kDelayPingPong));
    move(m_drive, kPercent * p.Real(kDelayDrive));
    m_lowCut = FilterCoefficients::FromFrequency(p.Real(kDelayLowCut), kButterworth, SampleRate());
    m_highCut = FilterCoefficients::FromFrequency(p.Real(kDelayHighCut), kButterworth, SampleRate());
}

// Filters `samples`, saturates and weakens them. No stage is louder than what it gets, so repeats
// never grow.
void CDelayPlugin::FeedBack(Channel& channel, float* samples, int frames) const noexcept {
    float feedback[kMaximumTickFrames];
    float drive[kMaximumTickFrames];
    m_feedback.Fill(feedback, TickOffset(), frames, TickFrames());
    m_drive.Fill(drive, TickOffset(), frames, TickFrames());
    for (int i = 0; i < frames; ++i) {
        const float high = channel.lowCut.Process(samples[i], m_lowCut).highPass;
        const float clean = channel.highCut.Process(high, m_highCut).lowPass;
        const float gain = 1.0f + (kHottestDrive - 1.0f) * drive[i];
        const float driven = Saturate(clean * gain) / gain;
        samples[i] = feedback[i] * (clean + drive[i] * (driven - clean));
    }
}

float CDelayPlugin::RenderWet(StereoInput input, float* left, float* right, int frames) noexcept {
    m_left.tap.Read(m_left.line, left, frames);
    m_right.tap.Read(m_right.line, right, frames);
    float fromLeft[kMaximumTickFrames];
    float fromRight[kMaximumTickFrames];
    std::copy_n(left, frames, fromLeft);
    std::copy_n(right, frames, fromRight);
    FeedBack(m_left, fromLeft, frames);
    FeedBack(m_right, fromRight, frames);

    // Ping-pong: both inputs enter on the left, and the sides feed each other.
    float across[kMaximumTickFrames];
    m_pingPong.Fill(across, TickOffset(), frames, TickFrames());
    float peak = 0.0f;
    float toLeft[kMaximumTickFrames];
    float toRight[kMaximumTickFrames];
    for (int i = 0; i < frames; ++i) {
        const float p = across[i];
        const float middle = 0.5f * (input.left[i] + input.right[i]);
        toLeft[i] = input.left[i] + p * (middle - input.left[i]) + fromLeft[i] + p * (fromRight[i] - fromLeft[i]);
        toRight[i] = (1.0f - p) * input.right[i] + fromRight[i] + p * (fromLeft[i] - fromRight[i]);
        peak = std::max(peak, std::max(std::fabs(toLeft[i]), std::fabs(toRight[i])));
    }
    m_left.line.Write(toLeft, frames);
    m_right.line.Write(toRight, frames);
    return peak;
}

}  // namespace quibplug

VST2_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    if (host == nullptr) return nullptr;
    try {
        auto plugin = std::make_unique<quibplug::CDelayPlugin>(host);
        return plugin.release()->Effect();
    } catch (...) {
        return nullptr;
    }
}
