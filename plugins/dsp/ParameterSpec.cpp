// SPDX-License-Identifier: GPL-3.0-or-later
#include "dsp/ParameterSpec.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "dsp/FastMath.h"

namespace quibplug {

float ParameterSpec::ToReal(float normalised) const noexcept {
    switch (curve) {
        case Curve::kExponential:
            return minimum * Exp2(normalised * Log2(maximum / minimum));
        case Curve::kGain:
            return maximum * normalised * normalised;
        case Curve::kStepped:
            return std::floor(minimum + normalised * (maximum - minimum) + 0.5f);
        case Curve::kLinear:
            break;
    }
    return minimum + normalised * (maximum - minimum);
}

float ParameterSpec::ToNormalised(float real) const noexcept {
    float normalised = 0.0f;
    switch (curve) {
        case Curve::kExponential:
            normalised = real > minimum ? Log2(real / minimum) / Log2(maximum / minimum) : 0.0f;
            break;
        case Curve::kGain:
            normalised = real > 0.0f ? std::sqrt(real / maximum) : 0.0f;
            break;
        case Curve::kStepped:
        case Curve::kLinear:
            normalised = (real - minimum) / (maximum - minimum);
            break;
    }
    return normalised > 0.0f ? std::min(normalised, 1.0f) : 0.0f;
}

std::string ParameterSpec::Display(float normalised) const {
    const float real = ToReal(normalised);
    if (curve == Curve::kStepped) {
        const auto step = static_cast<std::size_t>(real - minimum);
        if (step < stepNames.size()) return stepNames[step];
        char number[16];
        std::snprintf(number, sizeof number, "%d", static_cast<int>(real));
        return number;
    }
    if (curve == Curve::kGain && real <= 0.0f) return "-oo";
    const float shown = curve == Curve::kGain ? 20.0f * std::log10(real) : real;
    const float size = std::fabs(shown);
    char text[16];
    std::snprintf(text, sizeof text, "%.*f", size < 10.0f ? 2 : (size < 100.0f ? 1 : 0), static_cast<double>(shown));
    // What is rounded to nothing has no sign.
    return std::strpbrk(text, "123456789") == nullptr && text[0] == '-' ? text + 1 : text;
}

bool ParameterSpec::Parse(const char* text, float& normalised) const {
    for (std::size_t step = 0; step < stepNames.size(); ++step) {
        if (std::strcmp(stepNames[step], text) == 0) {
            normalised = ToNormalised(minimum + static_cast<float>(step));
            return true;
        }
    }
    if (curve == Curve::kGain && std::strncmp(text, "-oo", 3) == 0) {
        normalised = 0.0f;
        return true;
    }
    char* end = nullptr;
    const float number = std::strtof(text, &end);
    if (end == text || !std::isfinite(number)) return false;
    normalised = ToNormalised(curve == Curve::kGain ? std::pow(10.0f, number / 20.0f) : number);
    return true;
}

}  // namespace quibplug
