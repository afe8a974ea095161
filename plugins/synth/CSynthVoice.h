// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One note of the synthesiser: two oscillators in up to seven copies, sub and noise, saturation,
// filter and envelopes. Belongs to the render thread. Slow things move once per control tick and in
// straight lines between; the rest goes sample by sample, so the output does not depend on how a
// tick is cut into calls.

#include <cstdint>

#include "dsp/CEnvelope.h"
#include "dsp/CRandom.h"
#include "dsp/CStateVariableFilter.h"
#include "dsp/CWaveTables.h"
#include "dsp/Ramp.h"
#include "synth/CLfo.h"
#include "synth/SynthControls.h"

namespace quibplug {

class CSynthVoice {
public:
    static constexpr int kMostCopies = 7;
    static constexpr int kMostFrames = 64;

    // `velocity` 1..127; `fromPitch` in semitones is where a glide begins; `seed` differs from note
    // to note.
    void Start(int key, int velocity, float fromPitch, std::uint32_t seed, const SynthControls& controls) noexcept;
    // A new key for a voice that sounds: glides there; `retrigger` starts its envelopes anew.
    void Retune(int key, int velocity, bool retrigger) noexcept;
    void Release() noexcept;
    // Falls silent within a few milliseconds.
    void Fade() noexcept;
    void Kill() noexcept { m_active = false; }

    void Tick(const SynthControls& controls) noexcept;
    // Adds `frames` frames, from frame `offset` of the tick on.
    void Render(float* left, float* right, int offset, int frames, const SynthControls& controls) noexcept;

    bool Active() const noexcept { return m_active; }
    bool Fading() const noexcept { return m_fadeFrames > 0; }
    bool Releasing() const noexcept { return m_ampEnvelope.Releasing(); }
    float Level() const noexcept { return m_ampEnvelope.Level(); }
    int Key() const noexcept { return m_key; }
    float Pitch() const noexcept { return m_pitch; }
    std::uint32_t Order() const noexcept { return m_order; }

    // The key is up but the pedal holds the note; kept here for the owner.
    bool pedalHeld = false;

private:
    struct Selection {
        int waves[2];
        int subWave;
        int filterType;
        bool operator==(const Selection&) const = default;
    };
    // Of the filter's coefficients: the same throughout a piece, or different from frame to frame, by the ramps
    // alone or by the filter's own amplitude too.
    enum class Motion { kStill, kRamped, kSaturating };
    struct Piece;
    struct FilterRows;

    static Selection SelectionOf(const SynthControls& controls) noexcept;
    template <typename Move>
    void UpdateTargets(const SynthControls& controls, Move move) noexcept;
    void UpdatePitches(const SynthControls& controls, float semitones) noexcept;
    void UpdateCopies(const SynthControls& controls) noexcept;
    void UpdateSelection(const SynthControls& controls) noexcept;
    float CutoffTangent(const SynthControls& controls) const noexcept;
    void AddOscillators(Piece& piece) noexcept;
    void RenderWave(int oscillator, int copy, const Piece& piece, const float* phaseSwing, float* wave) noexcept;
    void AddSubAndNoise(Piece& piece) noexcept;
    void Saturation(Piece& piece) const noexcept;
    void TakeMeanAway(Piece& piece) noexcept;
    void StartOscillation() noexcept;
    void WakeOscillation() noexcept;
    void Filter(Piece& piece) noexcept;
    template <int type, Motion motion>
    void FilterChannel(const FilterRows& rows, float* samples, int frames, int channel) noexcept;
    template <Motion motion>
    void FilterAs(const FilterRows& rows, Piece& piece, int channel) noexcept;
    void Amplify(Piece& piece) noexcept;

    bool m_active = false;
    int m_key = 0;
    float m_velocity = 0.0f;  // 0..1
    std::uint32_t m_order = 0;
    float m_pitch = 0.0f;
    float m_targetPitch = 0.0f;
    int m_fadeFrames = 0;  // left until silence; 0 when not fading
    int m_fadeLength = 1;

    int m_copies = 1;
    float m_copyDetune = -1.0f;  // what the three rows below were computed for
    float m_copySpread = -1.0f;
    float m_ratios[kMostCopies] = {1.0f};
    float m_copyLeft[kMostCopies] = {1.0f};
    float m_copyRight[kMostCopies] = {1.0f};
    std::uint32_t m_phases[2][kMostCopies] = {};
    std::uint32_t m_increments[2][kMostCopies] = {};
    std::uint32_t m_subPhase = 0;
    std::uint32_t m_subIncrement = 0;

    Selection m_selection{};
    float m_selectionGain = 1.0f;

    CEnvelope m_ampEnvelope;
    CEnvelope m_modEnvelope;
    CLfo m_lfo1;
    CLfo m_lfo2;
    float m_lfo1Fade = 0.0f;
    CRandom m_random;
    CStateVariableFilter m_noiseFilter;
    float m_means[2] = {};
    CStateVariableFilter m_filters[2][2];  // channel, stage
    FilterCoefficients m_noiseCoefficients{};
    float m_noiseGain = 1.0f;

    Ramp m_levels[2];
    Ramp m_widths[2];
    Ramp m_subLevel;
    Ramp m_noiseLevel;
    Ramp m_fmTurns;
    Ramp m_drive;
    Ramp m_tangent;
    Ramp m_damping;
    Ramp m_saturation;
    Ramp m_gainLeft;
    Ramp m_gainRight;
};

}  // namespace quibplug
