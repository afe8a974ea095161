// SPDX-License-Identifier: GPL-3.0-or-later
#include "drums/DrumRecipe.h"

#include "dsp/FastMath.h"

namespace quibplug {

namespace {

float Between(float low, float high, float share) noexcept { return low + (high - low) * share; }

// Twice as much at 1, half at 0.
float Octave(float share) noexcept { return Exp2(2.0f * share - 1.0f); }

// A sweep of depth `colour` into a sine with a harder one of depth `snap`, and the beater's noise.
DrumRecipe Kick(const DrumSetting& s) noexcept {
    DrumRecipe r;
    r.partials[0] = {49.0f, 1.0f, 0.62f};
    r.partials[1] = {98.0f, 0.10f + 0.10f * s.tone, 0.16f};
    r.sweepOctaves = Between(0.3f, 2.2f, s.colour);
    r.sweepSeconds = 0.024f;
    r.snapOctaves = 2.4f * s.snap;
    r.snapSeconds = 0.0035f;
    r.layers[0] = {.noise = 0.55f * s.snap,
                   .filter = LayerFilter::kLowPass,
                   .hertz = 2600.0f * Octave(s.tone),
                   .damping = 1.2f,
                   .decay = 0.02f};
    r.layers[1] = {.noise = 0.5f * s.snap * s.tone,
                   .filter = LayerFilter::kHighPass,
                   .hertz = 4500.0f,
                   .damping = 1.4f,
                   .decay = 0.008f};
    r.drive = 0.10f + 0.35f * s.tone;
    r.gain = 0.95f;
    return r;
}

// Two modes of the skin and the wires; `colour` goes from skin to wires.
DrumRecipe Snare(const DrumSetting& s) noexcept {
    DrumRecipe r;
    const float skin = Between(1.0f, 0.35f, s.colour);
    r.partials[0] = {186.0f, 0.75f * skin, 0.24f};
    r.partials[1] = {331.0f, 0.45f * skin, 0.13f};
    r.partials[2] = {520.0f, 0.12f * skin, 0.07f};
    r.sweepOctaves = 0.35f;
    r.sweepSeconds = 0.012f;
    r.snapOctaves = 1.0f * s.snap;
    const float wires = Between(0.35f, 1.0f, s.colour);
    r.layers[0] = {.noise = 0.85f * wires,
                   .filter = LayerFilter::kHighPass,
                   .hertz = 1300.0f * Octave(s.tone),
                   .damping = 1.3f,
                   .decay = 0.32f};
    r.layers[1] = {.noise = 1.5f * wires,
                   .filter = LayerFilter::kBandPass,
                   .hertz = 3100.0f * Octave(s.tone),
                   .damping = 0.9f,
                   .decay = 0.19f};
    r.layers[2] = {
        .noise = 1.3f * s.snap, .filter = LayerFilter::kHighPass, .hertz = 4000.0f, .damping = 1.4f, .decay = 0.022f};
    r.drive = 0.22f;
    r.gain = 0.72f;
    return r;
}

// Several hands: bursts `colour` apart, then the room.
DrumRecipe Clap(const DrumSetting& s) noexcept {
    DrumRecipe r;
    const float spacing = Between(0.007f, 0.014f, s.colour);
    const float band = 1250.0f * Octave(s.tone * 0.6f + 0.2f);
    r.layers[0] = {.noise = 2.6f,
                   .filter = LayerFilter::kBandPass,
                   .hertz = band,
                   .damping = 0.55f,
                   .decay = 0.20f,
                   .bursts = 4,
                   .burstSpacing = spacing};
    r.layers[1] = {.noise = 0.35f + 0.4f * s.snap,
                   .filter = LayerFilter::kHighPass,
                   .hertz = 2.6f * band,
                   .damping = 1.2f,
                   .decay = 0.09f,
                   .bursts = 4,
                   .burstSpacing = spacing};
    r.layers[2] = {.noise = 0.55f,
                   .filter = LayerFilter::kBandPass,
                   .hertz = 1.3f * band,
                   .damping = 0.8f,
                   .decay = 0.45f,
                   .attack = 0.02f};
    r.drive = 0.2f;
    r.gain = 0.75f;
    return r;
}

// `colour` goes from noise to metal.
DrumRecipe Hat(const DrumSetting& s, float decay) noexcept {
    DrumRecipe r;
    const float high = 7000.0f * Octave(s.tone * 0.5f + 0.25f);
    r.metalHertz = 420.0f;
    r.layers[0] = {.metal = 2.4f * Between(0.25f, 1.0f, s.colour),
                   .filter = LayerFilter::kHighPass,
                   .hertz = high,
                   .damping = 0.9f,
                   .decay = decay};
    r.layers[1] = {.noise = 0.75f * Between(1.0f, 0.25f, s.colour),
                   .filter = LayerFilter::kHighPass,
                   .hertz = 1.15f * high,
                   .damping = 1.0f,
                   .decay = 0.9f * decay};
    r.layers[2] = {.noise = 0.8f * s.snap,
                   .filter = LayerFilter::kBandPass,
                   .hertz = 1.3f * high,
                   .damping = 0.8f,
                   .decay = 0.012f};
    r.gain = 0.42f;
    return r;
}

DrumRecipe Tom(const DrumSetting& s, float hertz) noexcept {
    DrumRecipe r;
    r.partials[0] = {hertz, 0.95f, 0.75f};
    r.partials[1] = {1.59f * hertz, 0.22f, 0.28f};
    r.partials[2] = {2.14f * hertz, 0.10f, 0.16f};
    r.sweepOctaves = Between(0.1f, 1.1f, s.colour);
    r.sweepSeconds = 0.045f;
    r.snapOctaves = 1.0f * s.snap;
    r.layers[0] = {.noise = 0.5f * s.snap,
                   .filter = LayerFilter::kLowPass,
                   .hertz = 2400.0f * Octave(s.tone),
                   .damping = 1.0f,
                   .decay = 0.035f};
    r.layers[1] = {.noise = 0.10f * s.tone,
                   .filter = LayerFilter::kBandPass,
                   .hertz = 6.0f * hertz,
                   .damping = 1.0f,
                   .decay = 0.3f};
    r.drive = 0.12f;
    r.gain = 0.75f;
    return r;
}

DrumRecipe Crash(const DrumSetting& s) noexcept {
    DrumRecipe r;
    const float bright = Octave(s.tone * 0.6f + 0.2f);
    r.metalHertz = 317.0f;
    r.layers[0] = {.metal = 1.5f * Between(0.4f, 1.0f, s.colour),
                   .filter = LayerFilter::kHighPass,
                   .hertz = 4300.0f * bright,
                   .damping = 1.0f,
                   .decay = 2.6f,
                   .attack = 0.002f};
    r.layers[1] = {.noise = 0.85f,
                   .filter = LayerFilter::kHighPass,
                   .hertz = 5200.0f * bright,
                   .damping = 1.2f,
                   .decay = 3.2f,
                   .attack = 0.003f};
    r.layers[2] = {.noise = 0.9f * s.snap,
                   .metal = 0.5f,
                   .filter = LayerFilter::kBandPass,
                   .hertz = 3300.0f * bright,
                   .damping = 1.2f,
                   .decay = 0.35f};
    r.gain = 0.42f;
    return r;
}

// The stick's ping (`snap`) above a quiet wash.
DrumRecipe Ride(const DrumSetting& s) noexcept {
    DrumRecipe r;
    const float bright = Octave(s.tone * 0.6f + 0.2f);
    r.partials[0] = {2933.0f, 0.16f * s.snap, 1.8f};
    r.partials[1] = {4387.0f, 0.14f * s.snap, 1.4f};
    r.partials[2] = {6241.0f, 0.10f * s.snap, 1.0f};
    r.metalHertz = 437.0f;
    r.layers[0] = {.metal = 1.4f * Between(0.4f, 1.0f, s.colour),
                   .filter = LayerFilter::kHighPass,
                   .hertz = 4600.0f * bright,
                   .damping = 1.0f,
                   .decay = 3.0f};
    r.layers[1] = {.noise = 0.4f,
                   .filter = LayerFilter::kHighPass,
                   .hertz = 8200.0f * bright,
                   .damping = 1.2f,
                   .decay = 2.2f,
                   .attack = 0.002f};
    r.layers[2] = {
        .noise = 0.7f * s.snap, .filter = LayerFilter::kBandPass, .hertz = 7500.0f, .damping = 0.9f, .decay = 0.016f};
    r.gain = 0.38f;
    return r;
}

DrumRecipe Rim(const DrumSetting& s) noexcept {
    DrumRecipe r;
    r.partials[0] = {468.0f, 0.7f * Between(1.2f, 0.6f, s.colour), 0.055f};
    r.partials[1] = {1667.0f, 0.8f, 0.045f};
    r.partials[2] = {2610.0f, 0.3f * s.tone, 0.03f};
    r.layers[0] = {.noise = 1.6f * s.snap,
                   .filter = LayerFilter::kBandPass,
                   .hertz = 3400.0f * Octave(s.tone),
                   .damping = 0.8f,
                   .decay = 0.016f};
    r.drive = 0.35f;
    r.gain = 0.6f;
    return r;
}

DrumRecipe Cowbell(const DrumSetting& s) noexcept {
    DrumRecipe r;
    r.squareBody = true;
    r.partials[0] = {549.0f, 0.55f, 0.38f};
    r.partials[1] = {832.0f, 0.60f, 0.34f};
    r.partials[2] = {832.0f * Between(1.2f, 1.6f, s.colour), 0.25f * s.snap, 0.05f};
    r.bodyBandHertz = 1150.0f * Octave(s.tone * 0.6f + 0.2f);
    r.drive = 0.15f;
    r.gain = 0.62f;
    return r;
}

DrumRecipe Tambourine(const DrumSetting& s) noexcept {
    DrumRecipe r;
    const float high = 7600.0f * Octave(s.tone * 0.4f + 0.3f);
    r.metalHertz = 873.0f;
    r.layers[0] = {.metal = 1.7f * Between(0.3f, 1.0f, s.colour),
                   .filter = LayerFilter::kHighPass,
                   .hertz = high,
                   .damping = 0.8f,
                   .decay = 0.20f,
                   .bursts = 2,
                   .burstSpacing = 0.026f};
    r.layers[1] = {.noise = 0.7f,
                   .filter = LayerFilter::kHighPass,
                   .hertz = 1.1f * high,
                   .damping = 1.0f,
                   .decay = 0.16f,
                   .bursts = 2,
                   .burstSpacing = 0.026f};
    r.layers[2] = {
        .noise = 0.6f * s.snap, .filter = LayerFilter::kBandPass, .hertz = 2400.0f, .damping = 0.9f, .decay = 0.02f};
    r.gain = 0.45f;
    return r;
}

DrumRecipe Shaker(const DrumSetting& s) noexcept {
    DrumRecipe r;
    r.layers[0] = {.noise = 1.5f,
                   .filter = LayerFilter::kBandPass,
                   .hertz = 6400.0f * Octave(s.tone * 0.6f + 0.2f),
                   .damping = Between(1.2f, 0.4f, s.colour),
                   .decay = 0.11f,
                   .attack = Between(0.028f, 0.004f, s.snap)};
    r.gain = 0.5f;
    return r;
}

DrumRecipe Claves(const DrumSetting& s) noexcept {
    DrumRecipe r;
    r.partials[0] = {2480.0f, 1.0f, 0.085f};
    r.partials[1] = {2480.0f * Between(1.45f, 1.9f, s.colour), 0.22f * s.tone, 0.05f};
    r.layers[0] = {
        .noise = 0.7f * s.snap, .filter = LayerFilter::kBandPass, .hertz = 3800.0f, .damping = 0.8f, .decay = 0.006f};
    r.gain = 0.5f;
    return r;
}

DrumRecipe BaseRecipe(int drum, const DrumSetting& setting) noexcept {
    switch (drum) {
        case kKick:
            return Kick(setting);
        case kSnare:
            return Snare(setting);
        case kClap:
            return Clap(setting);
        case kClosedHat:
            return Hat(setting, 0.13f);
        case kPedalHat:
            return Hat(setting, 0.18f);
        case kOpenHat:
            return Hat(setting, 0.85f);
        case kLowTom:
            return Tom(setting, 84.0f);
        case kMidTom:
            return Tom(setting, 121.0f);
        case kHighTom:
            return Tom(setting, 168.0f);
        case kCrash:
            return Crash(setting);
        case kRide:
            return Ride(setting);
        case kRim:
            return Rim(setting);
        case kCowbell:
            return Cowbell(setting);
        case kTambourine:
            return Tambourine(setting);
        case kShaker:
            return Shaker(setting);
        default:
            return Claves(setting);
    }
}

// Where the softest stroke of each drum ends, in hertz.
constexpr float kDullest[kDrumCount] = {700, 1500, 2200, 5500, 5000, 5000, 700,  800,
                                        900, 3500, 4500, 2200, 1600, 5500, 5000, 2600};
constexpr float kBrightest = 20000.0f;

// A soft stroke moves the low modes alone: less noise and metal, and a low-pass over all.
void Soften(DrumRecipe& recipe, int drum, float softness) noexcept {
    if (softness <= 0.0f) return;
    const float share = 1.0f - 0.6f * softness;
    for (DrumLayer& layer : recipe.layers) {
        layer.noise *= share;
        layer.decay *= 1.0f - 0.35f * softness;
    }
    recipe.snapOctaves *= share;
    recipe.dullHertz = kBrightest * Exp2(softness * Log2(kDullest[drum] / kBrightest));
}

}  // namespace

DrumRecipe RecipeOf(int drum, const DrumSetting& setting) noexcept {
    // A soft stroke has less of a transient.
    DrumSetting played = setting;
    played.snap *= 0.4f + 0.6f * setting.velocity;
    DrumRecipe recipe = BaseRecipe(drum, played);
    const float ratio = Exp2(setting.tune * (1.0f / 12.0f));
    for (BodyPartial& partial : recipe.partials) {
        partial.hertz *= ratio;
        partial.decay *= setting.decay;
    }
    recipe.metalHertz *= ratio;
    recipe.bodyBandHertz *= ratio;
    for (DrumLayer& layer : recipe.layers) {
        layer.hertz *= Exp2(setting.tune * (0.5f / 12.0f));
        layer.decay *= setting.decay;
    }
    recipe.drive = std::min(1.0f, recipe.drive + setting.drive);
    Soften(recipe, drum, setting.softness);
    return recipe;
}

}  // namespace quibplug
