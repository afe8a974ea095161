// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One stroke of a drum: up to three sines or squares with a falling pitch, and three layers of
// filtered noise and metal. Mono, belongs to the render thread. Every envelope goes sample by sample
// from the stroke on, so the sound does not depend on block sizes.

#include <cstdint>

#include "drums/DrumRecipe.h"
#include "dsp/CRandom.h"
#include "dsp/CStateVariableFilter.h"
#include "dsp/CWaveTables.h"

namespace quibplug {

class CDrumVoice {
public:
    static constexpr int kMostFrames = 64;

    // `stroke` is what Stroke() tells, for the owner.
    void Start(int drum, int stroke, const DrumSetting& setting, std::uint32_t seed, float sampleRate) noexcept;
    // Falls silent within `seconds`.
    void Fade(float seconds) noexcept;
    void Kill() noexcept { m_active = false; }

    bool Active() const noexcept { return m_active; }
    bool Fading() const noexcept { return m_fadeFrames > 0; }
    int DrumIndex() const noexcept { return m_drum; }
    int Stroke() const noexcept { return m_stroke; }
    std::uint32_t Order() const noexcept { return m_order; }

    // Once per control tick: drops what has died away, so that this does not depend on block sizes.
    void Tick() noexcept;
    // Writes the next `frames` samples.
    void Render(float* samples, int frames) noexcept;

private:
    static constexpr int kSquares = 6;

    // A falling exponential with an optional straight rise and repeated strokes before it.
    struct LayerState {
        bool heard = false;
        float level = 0.0f;
        float fall = 0.0f;
        float burstFall = 0.0f;
        float rise = 1.0f;
        float riseStep = 1.0f;
        int burstsLeft = 0;
        int framesToBurst = 0;
        int burstFrames = 1;
        FilterCoefficients coefficients{};
        CStateVariableFilter filter;

        float NextEnvelope() noexcept;
    };

    void StartLayer(int layer) noexcept;
    void AddBody(float* samples, int frames) noexcept;
    void RenderMetal(float* metal, int frames) noexcept;
    void RenderNoise(float* noise, int frames) noexcept;
    void AddLayer(int layer, const float* noise, const float* metal, float* samples, int frames) noexcept;
    void Shape(float* samples, int frames) noexcept;

    bool m_active = false;
    int m_drum = 0;
    int m_stroke = 0;
    std::uint32_t m_order = 0;
    float m_sampleRate = 44100.0f;
    float m_gain = 1.0f;
    int m_fadeFrames = 0;
    int m_fadeLength = 1;
    DrumRecipe m_recipe;
    CRandom m_random;
    float m_noiseGain = 1.0f;

    std::uint32_t m_phases[DrumRecipe::kPartials] = {};
    float m_partialLevels[DrumRecipe::kPartials] = {};
    float m_partialFalls[DrumRecipe::kPartials] = {};
    bool m_bodyHeard = true;
    float m_sweep = 0.0f;
    float m_sweepFall = 0.0f;
    float m_snap = 0.0f;
    float m_snapFall = 0.0f;
    FilterCoefficients m_bodyCoefficients{};
    CStateVariableFilter m_bodyFilter;

    bool m_metal = false;
    std::uint32_t m_metalPhases[kSquares] = {};
    std::uint32_t m_metalIncrements[kSquares] = {};
    bool m_noise = false;
    FilterCoefficients m_noiseCoefficients{};
    CStateVariableFilter m_noiseFilter;
    LayerState m_layers[DrumRecipe::kLayers];

    FilterCoefficients m_dullCoefficients{};
    CStateVariableFilter m_dullFilter;

    int m_holdFrames = 1;  // the crusher keeps a sample that long
    int m_holdLeft = 0;
    float m_held = 0.0f;
    float m_crushSteps = 0.0f;  // per unit of amplitude; 0 for no crusher
};

}  // namespace quibplug
