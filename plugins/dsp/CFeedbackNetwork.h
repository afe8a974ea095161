// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The late reverberation: sixteen delay lines that feed each other through a Hadamard matrix (J.-M.
// Jot, A. Chaigne, "Digital delay networks for designing artificial reverberators", 1991). Before the
// matrix, pairs of lines turn about each other by slowly swinging angles (S. Schlecht, E. Habets,
// "Time-varying feedback matrices", 2015): that moves the modes, and costs no energy and bends no
// delay, so the decay time stays exact. Belongs to one render thread; only Allocate() allocates.

#include <array>

#include "dsp/CCrossFade.h"
#include "dsp/CDelayLine.h"
#include "dsp/Ramp.h"
#include "dsp/Room.h"

namespace quibplug {

struct NetworkSetting {
    float decaySeconds;      // RT60 of low and middle frequencies
    float highDecaySeconds;  // RT60 of high ones
    float dampingHertz;      // where the one goes over into the other
    float modulation;        // 0..1
    float modulationHertz;
};

class CFeedbackNetwork {
public:
    void Allocate(float largestMetres, float sampleRate) noexcept;
    void Clear() noexcept;

    // At once to this room and setting.
    void Snap(const Room& room, const NetworkSetting& setting) noexcept;
    // One tick further. `share` is how far the cross-fade from room to room will be at its end.
    void Tick(const Room& from, const Room& to, float share, const NetworkSetting& setting, bool changed,
              int tickFrames) noexcept;

    // `shares` as in CDelayLine::ReadBetween. Writes `left` and `right`, which hold the input.
    void Render(const Room& from, const Room& to, const float* shares, float* left, float* right,
                TickSpan span) noexcept;

private:
    static constexpr std::size_t kPairs = kNetworkLines / 2;
    using Rows = float[kNetworkLines][64];

    void AimGains(const Room& from, const Room& to, float share, const NetworkSetting& setting) noexcept;
    void Swing(const NetworkSetting& setting, int tickFrames) noexcept;
    void Absorb(Rows& rows, TickSpan span) noexcept;
    void Turn(Rows& rows, TickSpan span) const noexcept;

    std::array<CDelayLine, kNetworkLines> m_lines;
    std::array<float, kNetworkLines> m_lowPasses{};  // states
    std::array<Ramp, kNetworkLines> m_lowGains;
    std::array<Ramp, kNetworkLines> m_highGains;
    std::array<Ramp, kPairs> m_cosines;
    std::array<Ramp, kPairs> m_sines;
    std::array<float, kPairs> m_turns{};  // phases of the angles, 0..1
    float m_lowPassShare = 1.0f;
    float m_sampleRate = 44100.0f;
    bool m_gainsMoving = false;
};

}  // namespace quibplug
