// SPDX-License-Identifier: GPL-3.0-or-later
// The sample-rate half of CSynthVoice: oscillators, saturation, filter and amplifier.
#include <algorithm>
#include <cmath>

#include "synth/CSynthVoice.h"

namespace quibplug {

// What one call of Render works on. Channel 1 is used by voices of several copies only.
struct CSynthVoice::Piece {
    Piece(const SynthControls& shared, int from, int count, int used, float* outLeft, float* outRight) noexcept
        : controls(shared), offset(from), frames(count), channels(used), left(outLeft), right(outRight) {
        for (int channel = 0; channel < channels; ++channel) std::fill_n(mix[channel], frames, 0.0f);
    }

    const SynthControls& controls;
    const CWaveTables& tables = CWaveTables::Shared();
    int offset;
    int frames;
    int channels;
    float* left;
    float* right;
    float mix[2][kMostFrames];  // starts as zeros
    float ramps[2][kMostFrames];

    void Fill(const Ramp& ramp, float* values) const noexcept {
        ramp.Fill(values, offset, frames, controls.tickFrames);
    }
};

void CSynthVoice::Render(float* left, float* right, int offset, int frames, const SynthControls& controls) noexcept {
    Piece piece(controls, offset, frames, m_copies > 1 ? 2 : 1, left, right);
    AddOscillators(piece);
    AddSubAndNoise(piece);
    Saturation(piece);
    TakeMeanAway(piece);
    Filter(piece);
    Amplify(piece);
}

// Oscillator 2 comes first: it may swing the phase of oscillator 1.
void CSynthVoice::AddOscillators(Piece& piece) noexcept {
    float levels[2][kMostFrames];
    float wave[kMostFrames];
    float swing[kMostFrames];
    for (int i = 0; i < 2; ++i) {
        piece.Fill(m_levels[i], levels[i]);
        piece.Fill(m_widths[i], piece.ramps[i]);
    }
    const bool modulated = !m_fmTurns.Zero();
    for (int copy = 0; copy < m_copies; ++copy) {
        const float gains[2] = {m_copyLeft[copy], m_copyRight[copy]};
        for (int oscillator = 1; oscillator >= 0; --oscillator) {
            const bool heard = !m_levels[oscillator].Zero();
            if (!heard && !(oscillator == 1 && modulated)) {
                m_phases[oscillator][copy] += m_increments[oscillator][copy] * static_cast<std::uint32_t>(piece.frames);
                continue;
            }
            RenderWave(oscillator, copy, piece, oscillator == 0 && modulated ? swing : nullptr, wave);
            if (oscillator == 1 && modulated) {
                piece.Fill(m_fmTurns, swing);
                for (int i = 0; i < piece.frames; ++i) swing[i] *= wave[i];
            }
            if (!heard) continue;
            for (int channel = 0; channel < piece.channels; ++channel) {
                float* mix = piece.mix[channel];
                for (int i = 0; i < piece.frames; ++i) mix[i] += wave[i] * levels[oscillator][i] * gains[channel];
            }
        }
    }
}

void CSynthVoice::RenderWave(int oscillator, int copy, const Piece& piece, const float* phaseSwing,
                             float* wave) noexcept {
    constexpr float kPeriod = 4294967296.0f;
    const std::uint32_t increment = m_increments[oscillator][copy];
    std::uint32_t phases[kMostFrames];
    const std::uint32_t start = m_phases[oscillator][copy];
    for (int i = 0; i < piece.frames; ++i) phases[i] = start + increment * static_cast<std::uint32_t>(i);
    m_phases[oscillator][copy] = start + increment * static_cast<std::uint32_t>(piece.frames);
    if (phaseSwing != nullptr) {
        for (int i = 0; i < piece.frames; ++i) {
            phases[i] += static_cast<std::uint32_t>(static_cast<std::int64_t>(phaseSwing[i] * kPeriod));
        }
    }
    const int kind = m_selection.waves[oscillator];
    if (kind == kWavePulse) {
        // A pulse is the difference of two saws; its mean is zero at any width.
        const WaveTable& saw = piece.tables.Saw(increment);
        const float* widths = piece.ramps[oscillator];
        for (int i = 0; i < piece.frames; ++i) {
            const auto width = static_cast<std::uint32_t>(static_cast<std::int64_t>(widths[i] * kPeriod));
            wave[i] = saw.At(phases[i]) - saw.At(phases[i] + width);
        }
        return;
    }
    const WaveTable& table = kind == kWaveSaw        ? piece.tables.Saw(increment)
                             : kind == kWaveTriangle ? piece.tables.Triangle(increment)
                                                     : piece.tables.Sine();
    for (int i = 0; i < piece.frames; ++i) wave[i] = table.At(phases[i]);
}

void CSynthVoice::AddSubAndNoise(Piece& piece) noexcept {
    float levels[kMostFrames];
    float both[kMostFrames];
    std::fill_n(both, piece.frames, 0.0f);
    if (!m_subLevel.Zero()) {
        piece.Fill(m_subLevel, levels);
        const WaveTable& table =
            m_selection.subWave == kSubSine ? piece.tables.Sine() : piece.tables.Saw(m_subIncrement);
        for (int i = 0; i < piece.frames; ++i) {
            const std::uint32_t phase = m_subPhase + m_subIncrement * static_cast<std::uint32_t>(i);
            const float opposite = m_selection.subWave == kSubSine ? 0.0f : table.At(phase + 0x80000000u);
            both[i] += levels[i] * (table.At(phase) - opposite);
        }
    }
    m_subPhase += m_subIncrement * static_cast<std::uint32_t>(piece.frames);
    if (!m_noiseLevel.Zero()) {
        piece.Fill(m_noiseLevel, levels);
        for (int i = 0; i < piece.frames; ++i) {
            const float white = m_random.NextSigned() * m_noiseGain;
            both[i] += levels[i] * m_noiseFilter.Process(white, m_noiseCoefficients).lowPass;
        }
    }
    for (int channel = 0; channel < piece.channels; ++channel) {
        for (int i = 0; i < piece.frames; ++i) piece.mix[channel][i] += both[i];
    }
}

// Blends into a saturation of up to 24 dB; quiet passages keep their level.
void CSynthVoice::Saturation(Piece& piece) const noexcept {
    if (m_drive.Zero()) return;
    float drive[kMostFrames];
    piece.Fill(m_drive, drive);
    for (int channel = 0; channel < piece.channels; ++channel) {
        float* mix = piece.mix[channel];
        for (int i = 0; i < piece.frames; ++i) {
            const float blend = std::min(1.0f, 4.0f * drive[i]);
            const float gain = 1.0f + 15.0f * drive[i] * drive[i];
            const float share = 1.0f / (1.0f + 2.0f * drive[i]);
            mix[i] += blend * (Saturate(gain * mix[i]) * share - mix[i]);
        }
    }
}

// Saturation of a crooked wave and phase modulation shift the mean, which would thump when the note
// ends and eat headroom.
void CSynthVoice::TakeMeanAway(Piece& piece) noexcept {
    if (m_drive.Zero() && m_fmTurns.Zero()) {
        m_means[0] = m_means[1] = 0.0f;
        return;
    }
    for (int channel = 0; channel < piece.channels; ++channel) {
        float* mix = piece.mix[channel];
        float mean = m_means[channel];
        for (int i = 0; i < piece.frames; ++i) {
            mean += piece.controls.meanShare * (mix[i] - mean);
            mix[i] -= mean;
        }
        m_means[channel] = mean;
    }
}

// Rows of coefficients, one column a frame, computed side by side.
struct CSynthVoice::FilterRows {
    static constexpr float kSecondDamping = 1.6f;  // of the stage that makes 12 dB into 24

    float tangent[kMostFrames];
    float damping[kMostFrames];
    float saturation[kMostFrames];  // per square of the states, so divided by 1 + tangent^2
    float stages[2][3][kMostFrames];

    void Compute(int frames) noexcept {
        for (int stage = 0; stage < 2; ++stage) {
            for (int i = 0; i < frames; ++i) {
                const float g = tangent[i];
                const FilterCoefficients c =
                    FilterCoefficients::FromTangent(g, stage == 0 ? damping[i] : kSecondDamping);
                stages[stage][0][i] = c.a1;
                stages[stage][1][i] = c.a2;
                stages[stage][2][i] = c.a3;
            }
        }
    }
    FilterCoefficients At(int stage, int i) const noexcept {
        return {damping[i], stages[stage][0][i], stages[stage][1][i], stages[stage][2][i]};
    }
    // The first stage's, damped by the square of its amplitude as well. A free oscillation, whose amplitude
    // does not change, comes to a damping of exactly zero: a sine without harmonics, at the cutoff itself.
    FilterCoefficients Saturated(const CStateVariableFilter& filter, int i) const noexcept {
        constexpr float kMost = 2.0f;
        const float more = saturation[i] * filter.StateEnergy();
        return FilterCoefficients::FromTangent(tangent[i], std::min(damping[i] + more, kMost));
    }
};

template <int type, CSynthVoice::Motion motion>
void CSynthVoice::FilterChannel(const FilterRows& rows, float* samples, int frames, int channel) noexcept {
    CStateVariableFilter first = m_filters[channel][0];
    CStateVariableFilter second = m_filters[channel][1];
    for (int i = 0; i < frames; ++i) {
        const int column = motion == Motion::kStill ? 0 : i;
        const FilterCoefficients c = motion == Motion::kSaturating ? rows.Saturated(first, i) : rows.At(0, column);
        const FilterOutput output = first.Process(samples[i], c);
        if constexpr (type == kLowPass24) {
            samples[i] = second.Process(output.lowPass, rows.At(1, column)).lowPass;
        } else if constexpr (type == kLowPass12) {
            samples[i] = output.lowPass;
        } else if constexpr (type == kBandPass12) {
            samples[i] = output.bandPass * 0.5f * (1.0f + c.damping);
        } else {
            samples[i] = output.highPass;
        }
    }
    m_filters[channel][0] = first;
    m_filters[channel][1] = second;
}

template <CSynthVoice::Motion motion>
void CSynthVoice::FilterAs(const FilterRows& rows, Piece& piece, int channel) noexcept {
    float* samples = piece.mix[channel];
    switch (m_selection.filterType) {
        case kLowPass12:
            return FilterChannel<kLowPass12, motion>(rows, samples, piece.frames, channel);
        case kBandPass12:
            return FilterChannel<kBandPass12, motion>(rows, samples, piece.frames, channel);
        case kHighPass12:
            return FilterChannel<kHighPass12, motion>(rows, samples, piece.frames, channel);
        default:
            return FilterChannel<kLowPass24, motion>(rows, samples, piece.frames, channel);
    }
}

void CSynthVoice::Filter(Piece& piece) noexcept {
    FilterRows rows;
    const bool saturating = !m_saturation.Zero();
    const bool moving = saturating || m_tangent.Moving() || m_damping.Moving();
    piece.Fill(m_tangent, rows.tangent);
    piece.Fill(m_damping, rows.damping);
    rows.Compute(moving ? piece.frames : 1);
    if (saturating) {
        piece.Fill(m_saturation, rows.saturation);
        for (int i = 0; i < piece.frames; ++i) rows.saturation[i] /= 1.0f + rows.tangent[i] * rows.tangent[i];
    }
    for (int channel = 0; channel < piece.channels; ++channel) {
        // Half of a resonance's gain is taken back before it, so that sweeps stay within bounds.
        float* samples = piece.mix[channel];
        for (int i = 0; i < piece.frames; ++i) {
            const float passive = std::max(rows.damping[i], SynthControls::kHighestResonanceDamping);
            samples[i] *= std::sqrt(passive * 0.70710678f);
        }
        if (saturating) {
            FilterAs<Motion::kSaturating>(rows, piece, channel);
        } else if (moving) {
            FilterAs<Motion::kRamped>(rows, piece, channel);
        } else {
            FilterAs<Motion::kStill>(rows, piece, channel);
        }
    }
}

void CSynthVoice::Amplify(Piece& piece) noexcept {
    float envelope[kMostFrames];
    m_modEnvelope.Fill(piece.controls.modShape, envelope, piece.frames);  // for its level at the next tick
    m_ampEnvelope.Fill(piece.controls.ampShape, envelope, piece.frames);
    if (m_fadeFrames > 0) {
        const float step = 1.0f / static_cast<float>(m_fadeLength);
        for (int i = 0; i < piece.frames; ++i) envelope[i] *= step * static_cast<float>(std::max(0, m_fadeFrames - i));
        m_fadeFrames -= piece.frames;
        if (m_fadeFrames <= 0) m_active = false;
    }
    if (m_ampEnvelope.Idle()) m_active = false;
    float* gains[2] = {piece.ramps[0], piece.ramps[1]};
    piece.Fill(m_gainLeft, gains[0]);
    piece.Fill(m_gainRight, gains[1]);
    const float* right = piece.mix[piece.channels - 1];
    for (int i = 0; i < piece.frames; ++i) {
        piece.left[i] += piece.mix[0][i] * envelope[i] * gains[0][i];
        piece.right[i] += right[i] * envelope[i] * gains[1][i];
    }
}

}  // namespace quibplug
