// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a parameter is: its name, its unit and range, and how the host's 0..1 maps to the real value.
// Constant tables of these describe a plug-in; any thread may read them.

#include <cstddef>
#include <span>
#include <string>

namespace quibplug {

enum class Curve {
    kLinear,       // minimum..maximum
    kExponential,  // minimum * (maximum / minimum)^x, minimum > 0
    kGain,         // maximum * x^2, shown in decibels; minimum is 0
    kStepped,      // whole numbers minimum..maximum, shown by name if there are step names
};

struct ParameterSpec {
    const char* name;   // up to 23 characters
    const char* label;  // the unit, up to 7 characters
    Curve curve;
    float minimum;
    float maximum;
    float initial;  // real value
    std::span<const char* const> stepNames = {};

    // `normalised` within 0..1.
    float ToReal(float normalised) const noexcept;
    // Any real value; the answer is within 0..1.
    float ToNormalised(float real) const noexcept;
    // The value as a musician reads it, without its unit, up to 15 characters.
    std::string Display(float normalised) const;
    // The opposite of Display: a number, or a step's name. False, and `normalised` as it was, when
    // the text is neither.
    bool Parse(const char* text, float& normalised) const;
};

struct ParameterValue {
    int index;
    float real;
};

// A built-in program: what differs from the parameters' initial values.
struct ProgramSpec {
    const char* name;  // up to 23 characters
    std::span<const ParameterValue> values;
};

}  // namespace quibplug
