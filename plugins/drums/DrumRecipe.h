// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What one stroke of a drum is made of. A recipe is drawn up from the drum's parameters when it is
// struck and holds for that stroke, so that turning a knob never cuts into a sound.

#include "drums/DrumParameters.h"

namespace quibplug {

// Decays are those of a fall by 60 dB, in seconds.
struct BodyPartial {
    float hertz = 0.0f;
    float level = 0.0f;
    float decay = 0.1f;
};

enum class LayerFilter { kLowPass, kBandPass, kHighPass };

// Noise and the metal cluster through a filter of their own.
struct DrumLayer {
    float noise = 0.0f;
    float metal = 0.0f;
    LayerFilter filter = LayerFilter::kHighPass;
    float hertz = 8000.0f;
    float damping = 1.0f;
    float decay = 0.1f;
    float attack = 0.0f;  // seconds
    int bursts = 1;       // strokes in a row; all but the last are short
    float burstSpacing = 0.01f;
};

struct DrumRecipe {
    static constexpr int kPartials = 3;
    static constexpr int kLayers = 3;

    BodyPartial partials[kPartials];
    bool squareBody = false;
    float bodyBandHertz = 0.0f;  // 0: no filter
    float sweepOctaves = 0.0f;   // above the partials' frequency, falling with sweepSeconds (1/e)
    float sweepSeconds = 0.03f;
    float snapOctaves = 0.0f;  // a second, faster sweep on top
    float snapSeconds = 0.004f;
    float metalHertz = 320.0f;  // lowest of the six squares
    DrumLayer layers[kLayers];
    float drive = 0.0f;      // 0..1
    float dullHertz = 0.0f;  // low-pass of the whole stroke; 0: none
    float gain = 1.0f;
};

// How the drum's parameters shape its recipe.
struct DrumSetting {
    float tune = 0.0f;      // semitones
    float decay = 1.0f;     // of the recipe's own
    float tone = 0.5f;      // 0 dark .. 1 bright
    float snap = 0.5f;      // 0 no transient .. 1 hard
    float colour = 0.5f;    // 0..1: what the drum is made of
    float drive = 0.0f;     // 0..1
    float crush = 0.0f;     // 0..1
    float velocity = 1.0f;  // 0..1, as loud
    float softness = 0.0f;  // 0 as the drum is .. 1 as dull as a stroke may be
};

DrumRecipe RecipeOf(int drum, const DrumSetting& setting) noexcept;

}  // namespace quibplug
