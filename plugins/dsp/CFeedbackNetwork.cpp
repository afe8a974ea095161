// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/CFeedbackNetwork.h"

#include <algorithm>

#include "dsp/CPluginBase.h"

namespace quibplug {

namespace {

constexpr float kLongestLineTime = 1.6f;  // of the time along the room
constexpr float kWidestAngle = 0.25f;     // of a full turn
constexpr float kTapGain = 0.25f;         // 1 / sqrt(lines)

// Of each pair's angle: how fast it swings beside the others, and where it starts.
constexpr std::array<float, 8> kPaces = {0.71f, 1.13f, 0.83f, 1.31f, 0.59f, 0.97f, 1.21f, 0.67f};
constexpr std::array<float, 8> kStarts = {0.00f, 0.37f, 0.61f, 0.13f, 0.83f, 0.29f, 0.53f, 0.91f};

// Which lines are heard with their signs turned. The two sides are orthogonal, so that their sum
// has no holes, and neither is a row of the matrix.
constexpr std::array<float, kNetworkLines> kLeftTaps = {1, 1, -1, 1, -1, 1, 1, 1, -1, -1, 1, -1, 1, 1, -1, 1};
constexpr std::array<float, kNetworkLines> kRightTaps = {1, -1, 1, 1, -1, -1, 1, -1, 1, -1, -1, -1, -1, 1, 1, 1};

// Sums and differences, in place: the Hadamard matrix times sqrt(lines).
void Mix(float (&rows)[kNetworkLines][64], int frames) noexcept {
    for (int half = 1; half < kNetworkLines; half *= 2) {
        for (int first = 0; first < kNetworkLines; ++first) {
            if ((first & half) != 0) continue;
            float* a = rows[first];
            float* b = rows[first + half];
            for (int i = 0; i < frames; ++i) {
                const float sum = a[i] + b[i];
                b[i] = a[i] - b[i];
                a[i] = sum;
            }
        }
    }
}

}  // namespace

void CFeedbackNetwork::Allocate(float largestMetres, float sampleRate) noexcept {
    m_sampleRate = sampleRate;
    for (CDelayLine& line : m_lines) {
        line.Allocate(
            static_cast<int>(kLongestLineTime * Room::LineMetres(largestMetres) / kSpeedOfSound * sampleRate) + 1);
    }
}

void CFeedbackNetwork::Clear() noexcept {
    for (CDelayLine& line : m_lines) line.Clear();
    m_lowPasses.fill(0.0f);
    m_turns = kStarts;
}

void CFeedbackNetwork::Snap(const Room& room, const NetworkSetting& setting) noexcept {
    for (int twice = 0; twice < 2; ++twice) {
        AimGains(room, room, 0.0f, setting);
        Swing(setting, 0);
    }
    m_gainsMoving = false;
}

void CFeedbackNetwork::Tick(const Room& from, const Room& to, float share, const NetworkSetting& setting, bool changed,
                            int tickFrames) noexcept {
    if (changed || share > 0.0f || m_gainsMoving) AimGains(from, to, share, setting);
    m_gainsMoving = changed || share > 0.0f;
    Swing(setting, tickFrames);
}

void CFeedbackNetwork::AimGains(const Room& from, const Room& to, float share, const NetworkSetting& setting) noexcept {
    const auto between = [&](std::size_t line, float seconds) {
        const float first = FallOf60Decibels(from.lines[line], seconds, m_sampleRate);
        return share == 0.0f ? first
                             : first + share * (FallOf60Decibels(to.lines[line], seconds, m_sampleRate) - first);
    };
    for (std::size_t line = 0; line < kNetworkLines; ++line) {
        m_lowGains[line].Aim(between(line, setting.decaySeconds));
        m_highGains[line].Aim(between(line, setting.highDecaySeconds));
    }
    const float tangent = Tangent(kPi * std::min(setting.dampingHertz / m_sampleRate, 0.45f));
    m_lowPassShare = tangent / (1.0f + tangent);
}

void CFeedbackNetwork::Swing(const NetworkSetting& setting, int tickFrames) noexcept {
    const float step = setting.modulationHertz * static_cast<float>(tickFrames) / m_sampleRate;
    for (std::size_t pair = 0; pair < kPairs; ++pair) {
        m_turns[pair] += kPaces[pair] * step;
        if (m_turns[pair] >= 1.0f) m_turns[pair] -= 1.0f;
        const float angle = setting.modulation * kWidestAngle * SineOfTurns(m_turns[pair]);
        m_sines[pair].Aim(SineOfTurns(angle));
        m_cosines[pair].Aim(SineOfTurns(angle + 0.25f));
    }
}

// One-pole low-pass (trapezoidal) at the damping frequency, common to all lines: what it passes gets
// the low gain, the rest the high one.
void CFeedbackNetwork::Absorb(Rows& rows, TickSpan span) noexcept {
    float low[CPluginBase::kMaximumTickFrames];
    float high[CPluginBase::kMaximumTickFrames];
    const float share = m_lowPassShare;
    for (std::size_t line = 0; line < kNetworkLines; ++line) {
        m_lowGains[line].Fill(low, span.offset, span.frames, span.tickFrames);
        m_highGains[line].Fill(high, span.offset, span.frames, span.tickFrames);
        float state = m_lowPasses[line];
        float* row = rows[line];
        for (int i = 0; i < span.frames; ++i) {
            const float step = share * (row[i] - state);
            const float passed = state + step;
            state = passed + step;
            row[i] = high[i] * row[i] + (low[i] - high[i]) * passed;
        }
        m_lowPasses[line] = state;
    }
}

void CFeedbackNetwork::Turn(Rows& rows, TickSpan span) const noexcept {
    float cosines[CPluginBase::kMaximumTickFrames];
    float sines[CPluginBase::kMaximumTickFrames];
    for (std::size_t pair = 0; pair < kPairs; ++pair) {
        m_cosines[pair].Fill(cosines, span.offset, span.frames, span.tickFrames);
        m_sines[pair].Fill(sines, span.offset, span.frames, span.tickFrames);
        float* a = rows[pair];
        float* b = rows[pair + kPairs];
        for (int i = 0; i < span.frames; ++i) {
            const float turned = cosines[i] * a[i] - sines[i] * b[i];
            b[i] = sines[i] * a[i] + cosines[i] * b[i];
            a[i] = turned;
        }
    }
}

void CFeedbackNetwork::Render(const Room& from, const Room& to, const float* shares, float* left, float* right,
                              TickSpan span) noexcept {
    Rows rows;
    float tapsLeft[CPluginBase::kMaximumTickFrames] = {};
    float tapsRight[CPluginBase::kMaximumTickFrames] = {};
    for (std::size_t line = 0; line < kNetworkLines; ++line) {
        m_lines[line].ReadBetween(rows[line], from.lines[line], to.lines[line], shares, span.frames);
        for (int i = 0; i < span.frames; ++i) {
            tapsLeft[i] += kLeftTaps[line] * rows[line][i];
            tapsRight[i] += kRightTaps[line] * rows[line][i];
        }
    }
    Absorb(rows, span);
    Turn(rows, span);
    Mix(rows, span.frames);
    for (std::size_t line = 0; line < kNetworkLines; ++line) {
        const float* input = line % 2 == 0 ? left : right;
        for (int i = 0; i < span.frames; ++i) rows[line][i] = kTapGain * rows[line][i] + input[i];
        m_lines[line].Write(rows[line], span.frames);
    }
    for (int i = 0; i < span.frames; ++i) {
        left[i] = kTapGain * tapsLeft[i];
        right[i] = kTapGain * tapsRight[i];
    }
}

}  // namespace quibplug
