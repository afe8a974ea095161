// SPDX-License-Identifier: GPL-3.0-or-later
#include "drums/CDrumVoice.h"

#include <algorithm>
#include <cmath>

namespace quibplug {

namespace {

constexpr float kSilence = 1e-5f;
constexpr float kFallConstants = 6.9077553f;  // ln(1000): decays are given to -60 dB
constexpr float kBurstDecay = 0.022f;
constexpr float kNoiseBandHertz = 18000.0f;
constexpr float kMetalBandHertz = 16000.0f;
constexpr float kNoiseReferenceRate = 44100.0f;
// Frequencies of the metal cluster, inharmonic to each other.
constexpr float kMetalRatios[6] = {1.0f, 1.4471f, 1.6818f, 1.9307f, 2.5424f, 2.7313f};

float FallFor(float decaySeconds, float sampleRate) noexcept {
    return 1.0f - OnePoleShare(decaySeconds / kFallConstants, sampleRate);
}

}  // namespace

void CDrumVoice::Start(int drum, int stroke, const DrumSetting& setting, std::uint32_t seed,
                       float sampleRate) noexcept {
    *this = CDrumVoice();
    m_active = true;
    m_drum = drum;
    m_stroke = stroke;
    m_order = seed;
    m_sampleRate = sampleRate;
    m_recipe = RecipeOf(drum, setting);
    m_gain = m_recipe.gain * setting.velocity * setting.velocity;
    m_random.Seed(seed);
    m_noiseGain = std::sqrt(sampleRate / kNoiseReferenceRate);
    m_noiseCoefficients = FilterCoefficients::FromFrequency(kNoiseBandHertz, 1.41421356f, sampleRate);
    m_sweep = m_recipe.sweepOctaves;
    m_sweepFall = 1.0f - OnePoleShare(m_recipe.sweepSeconds, sampleRate);
    m_snap = m_recipe.snapOctaves;
    m_snapFall = 1.0f - OnePoleShare(m_recipe.snapSeconds, sampleRate);
    for (int i = 0; i < DrumRecipe::kPartials; ++i) {
        m_partialLevels[i] = m_recipe.partials[i].level;
        m_partialFalls[i] = FallFor(m_recipe.partials[i].decay, sampleRate);
    }
    if (m_recipe.bodyBandHertz > 0.0f) {
        m_bodyCoefficients = FilterCoefficients::FromFrequency(m_recipe.bodyBandHertz, 1.0f, sampleRate);
    }
    for (int i = 0; i < kSquares; ++i) {
        m_metalIncrements[i] = CWaveTables::Increment(m_recipe.metalHertz * kMetalRatios[i], sampleRate);
        m_metalPhases[i] = static_cast<std::uint32_t>(i) * 0x9e3779b9u;
    }
    for (int i = 0; i < DrumRecipe::kLayers; ++i) StartLayer(i);
    m_dullCoefficients = FilterCoefficients::FromFrequency(m_recipe.dullHertz, 1.41421356f, sampleRate);
    if (setting.crush > 0.0f) {
        const float holdHertz = 24000.0f * Exp2(-3.5f * setting.crush);
        m_holdFrames = std::max(1, static_cast<int>(std::lround(sampleRate / holdHertz)));
        m_crushSteps = Exp2(11.0f - 6.0f * setting.crush);
    }
}

void CDrumVoice::StartLayer(int layer) noexcept {
    const DrumLayer& made = m_recipe.layers[layer];
    LayerState& state = m_layers[layer];
    if (made.noise <= 0.0f && made.metal <= 0.0f) return;
    m_metal = m_metal || made.metal > 0.0f;
    m_noise = m_noise || made.noise > 0.0f;
    state.heard = true;
    state.level = 1.0f;
    state.fall = FallFor(made.decay, m_sampleRate);
    state.burstFall = FallFor(kBurstDecay, m_sampleRate);
    state.riseStep = 1.0f / std::max(1.0f, made.attack * m_sampleRate);
    state.rise = made.attack > 0.0f ? 0.0f : 1.0f;
    state.burstsLeft = made.bursts - 1;
    state.burstFrames = std::max(1, static_cast<int>(made.burstSpacing * m_sampleRate));
    state.framesToBurst = state.burstFrames;
    state.coefficients = FilterCoefficients::FromFrequency(made.hertz, made.damping, m_sampleRate);
}

void CDrumVoice::Fade(float seconds) noexcept {
    if (m_fadeFrames > 0) return;
    m_fadeLength = m_fadeFrames = std::max(1, static_cast<int>(seconds * m_sampleRate));
}

float CDrumVoice::LayerState::NextEnvelope() noexcept {
    const float present = level * rise;
    rise = std::min(1.0f, rise + riseStep);
    if (burstsLeft > 0) {
        level *= burstFall;
        if (--framesToBurst == 0) {
            --burstsLeft;
            framesToBurst = burstFrames;
            level = 1.0f;
        }
    } else {
        level *= fall;
    }
    return present;
}

void CDrumVoice::Tick() noexcept {
    const auto sounds = [](float level) { return level > kSilence; };
    m_bodyHeard = std::any_of(std::begin(m_partialLevels), std::end(m_partialLevels), sounds);
    m_noise = m_metal = false;
    for (int i = 0; i < DrumRecipe::kLayers; ++i) {
        LayerState& state = m_layers[i];
        state.heard = state.heard && (sounds(state.level) || state.burstsLeft > 0);
        m_noise = m_noise || (state.heard && m_recipe.layers[i].noise > 0.0f);
        m_metal = m_metal || (state.heard && m_recipe.layers[i].metal > 0.0f);
    }
    m_active = m_active && (m_bodyHeard || m_noise || m_metal);
}

void CDrumVoice::Render(float* samples, int frames) noexcept {
    std::fill_n(samples, frames, 0.0f);
    if (m_bodyHeard) AddBody(samples, frames);
    float noise[kMostFrames];
    float metal[kMostFrames];
    if (m_noise) RenderNoise(noise, frames);
    if (m_metal) RenderMetal(metal, frames);
    for (int i = 0; i < DrumRecipe::kLayers; ++i) {
        if (m_layers[i].heard) AddLayer(i, noise, metal, samples, frames);
    }
    Shape(samples, frames);
    if (m_fadeFrames == 0) return;
    const float step = 1.0f / static_cast<float>(m_fadeLength);
    for (int i = 0; i < frames; ++i) samples[i] *= step * static_cast<float>(std::max(0, m_fadeFrames - i));
    m_fadeFrames = std::max(0, m_fadeFrames - frames);
    m_active = m_fadeFrames > 0;
}

void CDrumVoice::AddBody(float* samples, int frames) noexcept {
    const CWaveTables& tables = CWaveTables::Shared();
    float ratios[kMostFrames];
    for (int i = 0; i < frames; ++i) {
        const float octaves = m_sweep + m_snap;
        ratios[i] = octaves > 1e-5f ? Exp2(octaves) : 1.0f;
        m_sweep *= m_sweepFall;
        m_snap *= m_snapFall;
    }
    float body[kMostFrames] = {};
    for (int partial = 0; partial < DrumRecipe::kPartials; ++partial) {
        if (m_recipe.partials[partial].level <= 0.0f) continue;
        const float periods = std::min(m_recipe.partials[partial].hertz / m_sampleRate, 0.45f);
        const auto base = static_cast<std::uint32_t>(periods * 4294967296.0f);
        const WaveTable& table = m_recipe.squareBody ? tables.Saw(base) : tables.Sine();
        for (int i = 0; i < frames; ++i) {
            const std::uint32_t phase = m_phases[partial];
            const float opposite = m_recipe.squareBody ? table.At(phase + 0x80000000u) : 0.0f;
            body[i] += (table.At(phase) - opposite) * m_partialLevels[partial];
            m_partialLevels[partial] *= m_partialFalls[partial];
            m_phases[partial] += static_cast<std::uint32_t>(std::min(periods * ratios[i], 0.45f) * 4294967296.0f);
        }
    }
    if (m_recipe.bodyBandHertz > 0.0f) {
        for (int i = 0; i < frames; ++i) body[i] = m_bodyFilter.Process(body[i], m_bodyCoefficients).bandPass;
    }
    for (int i = 0; i < frames; ++i) samples[i] += body[i];
}

void CDrumVoice::RenderMetal(float* metal, int frames) noexcept {
    const CWaveTables& tables = CWaveTables::Shared();
    std::fill_n(metal, frames, 0.0f);
    // The tables of a lower rate: partials end at one place whatever the rate, and no single one of
    // them whistles above the others.
    const float narrower = std::max(1.0f, 0.5f * m_sampleRate / kMetalBandHertz);
    const auto tableIncrement = [&](std::uint32_t increment) {
        return static_cast<std::uint32_t>(narrower * static_cast<float>(increment));
    };
    for (int square = 0; square < kSquares; ++square) {
        const std::uint32_t increment = m_metalIncrements[square];
        const WaveTable& saw = tables.Saw(tableIncrement(increment));
        for (int i = 0; i < frames; ++i) {
            const std::uint32_t phase = m_metalPhases[square] + increment * static_cast<std::uint32_t>(i);
            metal[i] += saw.At(phase) - saw.At(phase + 0x80000000u);
        }
        m_metalPhases[square] += increment * static_cast<std::uint32_t>(frames);
    }
    for (int i = 0; i < frames; ++i) metal[i] *= 1.0f / kSquares;
}

void CDrumVoice::RenderNoise(float* noise, int frames) noexcept {
    for (int i = 0; i < frames; ++i) {
        noise[i] = m_noiseFilter.Process(m_random.NextSigned() * m_noiseGain, m_noiseCoefficients).lowPass;
    }
}

void CDrumVoice::AddLayer(int layer, const float* noise, const float* metal, float* samples, int frames) noexcept {
    LayerState& state = m_layers[layer];
    const DrumLayer& made = m_recipe.layers[layer];
    for (int i = 0; i < frames; ++i) {
        const float hiss = made.noise > 0.0f ? made.noise * noise[i] : 0.0f;
        const float ring = made.metal > 0.0f ? made.metal * metal[i] : 0.0f;
        const FilterOutput output = state.filter.Process((hiss + ring) * state.NextEnvelope(), state.coefficients);
        samples[i] += made.filter == LayerFilter::kLowPass    ? output.lowPass
                      : made.filter == LayerFilter::kBandPass ? output.bandPass * made.damping
                                                              : output.highPass;
    }
}

// Saturation, gain and the crusher.
void CDrumVoice::Shape(float* samples, int frames) noexcept {
    const float drive = m_recipe.drive;
    const float push = 1.0f + 5.0f * drive * drive + 2.0f * drive;
    const float share = 1.0f / (1.0f + 1.2f * drive);
    for (int i = 0; i < frames; ++i) {
        if (drive > 0.0f) samples[i] = Saturate(push * samples[i]) * share;
        if (m_recipe.dullHertz > 0.0f) samples[i] = m_dullFilter.Process(samples[i], m_dullCoefficients).lowPass;
        samples[i] *= m_gain;
        if (m_crushSteps <= 0.0f) continue;
        if (m_holdLeft == 0) {
            m_holdLeft = m_holdFrames;
            m_held = static_cast<float>(static_cast<int>(std::floor(samples[i] * m_crushSteps + 0.5f))) / m_crushSteps;
        }
        --m_holdLeft;
        samples[i] = m_held;
    }
}

}  // namespace quibplug
